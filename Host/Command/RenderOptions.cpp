#include "Host/Command/RenderOptions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <thread>

#include "Host/HostError.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

constexpr int mostThreads = 1024;

[[noreturn]] void refuse(const std::string& option, const std::string& value, const std::string& wanted) {
    throw HostError(ExitStatus::CommandLine, option + ": \"" + value + "\" is not " + wanted);
}

template <class Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size() && !text.empty();
    return isWhole ? std::optional<Number>(number) : std::nullopt;
}

std::vector<std::string_view> splitAtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

template <class Choice, std::size_t count>
Choice choiceIn(const std::string& option, const std::string& value,
                const std::array<std::pair<std::string_view, Choice>, count>& choices) {
    std::string all;
    for (const auto& [word, choice] : choices) {
        if (word == value) {
            return choice;
        }
        all += (all.empty() ? "" : ", ") + std::string(word);
    }
    refuse(option, value, "one of " + all);
}

void takeOutput(RenderOptions& options, const std::string& value) {
    options.output = OutputPattern(value);
}

// ".png (8 or 16 bits), .exr (float)"
std::string suffixesWithDepths() {
    std::string text;
    for (const auto& known : usualSuffixes()) {
        text += (text.empty() ? "" : ", ") + std::string(known.suffix) + " (" + std::string(known.depths) + ")";
    }
    return text;
}

void takeFrames(RenderOptions& options, const std::string& value) {
    options.frames = value;
}

void takeDepth(RenderOptions& options, const std::string& value) {
    using Depth = std::pair<std::string_view, int>;
    options.depth = choiceIn("--depth", value, std::array<Depth, 3>{{{"8", 8}, {"16", 16}, {"32", 32}}});
}

// "1/2"; above 0 and at most 1.
std::optional<Rational> factorIn(std::string_view text) {
    const auto slash = text.find('/');
    const auto num = numberIn<std::int32_t>(text.substr(0, slash));
    const auto den = slash == std::string_view::npos ? std::optional<std::uint32_t>(1)
                                                     : numberIn<std::uint32_t>(text.substr(slash + 1));
    const bool isFactor = num && den && *num > 0 && static_cast<std::uint32_t>(*num) <= *den;
    return isFactor ? std::optional(Rational{*num, *den}) : std::nullopt;
}

constexpr std::array<std::pair<std::string_view, std::uint32_t>, 4> namedResolutions{
    {{"full", 1}, {"half", 2}, {"third", 3}, {"quarter", 4}}};

void takeResolution(RenderOptions& options, const std::string& value) {
    for (const auto& [name, den] : namedResolutions) {
        if (name == value) {
            options.downsampleX = options.downsampleY = Rational{1, den};
            return;
        }
    }
    const auto parts = splitAtCommas(value);
    const auto x = parts.size() == 2 ? factorIn(parts[0]) : std::nullopt;
    const auto y = parts.size() == 2 ? factorIn(parts[1]) : std::nullopt;
    if (!x || !y) {
        refuse("--resolution", value, "full, half, third, quarter, or two fractions up to 1 such as 1/2,1/4");
    }
    options.downsampleX = *x;
    options.downsampleY = *y;
}

void takeRegion(RenderOptions& options, const std::string& value) {
    std::vector<int> numbers;
    for (const auto part : splitAtCommas(value)) {
        if (const auto number = numberIn<int>(part)) {
            numbers.push_back(*number);
        }
    }
    const bool isRegion = numbers.size() == 4 && splitAtCommas(value).size() == 4 && numbers[0] >= 0 &&
                          numbers[1] >= 0 && numbers[2] > 0 && numbers[3] > 0;
    if (!isRegion) {
        refuse("--region", value, "x,y,w,h in pixels, with x and y from 0 and w and h from 1");
    }
    options.region = Region{numbers[0], numbers[1], numbers[2], numbers[3]};
}

void takeThreads(RenderOptions& options, const std::string& value) {
    const auto threads = numberIn<int>(value);
    if (!threads || *threads < 0 || *threads > mostThreads) {
        refuse("--threads", value, "a number from 0 to " + std::to_string(mostThreads));
    }
    const int cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    options.threads = *threads == 0 ? cores : *threads;
}

void takeSet(RenderOptions& options, const std::string& value) {
    const auto equals = value.find('=');
    if (equals == std::string::npos || equals == 0) {
        refuse("--set", value, "ID=VALUE, such as CountX=40");
    }
    options.overrides.parameters.emplace_back(value.substr(0, equals), value.substr(equals + 1));
}

void takeScript(RenderOptions& options, const std::string& value) {
    options.overrides.script = value;
}

void takeExisting(RenderOptions& options, const std::string& value) {
    using Word = std::pair<std::string_view, ExistingFiles>;
    options.existing = choiceIn(
        "--existing", value,
        std::array<Word, 3>{
            {{"overwrite", ExistingFiles::Overwrite}, {"skip", ExistingFiles::Skip}, {"fail", ExistingFiles::Fail}}});
}

void takeOnError(RenderOptions& options, const std::string& value) {
    using Word = std::pair<std::string_view, AfterFailure>;
    options.onError = choiceIn(
        "--on-error", value, std::array<Word, 2>{{{"continue", AfterFailure::Continue}, {"stop", AfterFailure::Stop}}});
}

void takePngLevel(RenderOptions& options, const std::string& value) {
    const auto level = numberIn<int>(value);
    if (!level || *level < 0 || *level > 9) {
        refuse("--png-level", value, "a number from 0 to 9");
    }
    options.pngLevel = *level;
}

void takeFrameTimeout(RenderOptions& options, const std::string& value) {
    const auto seconds = numberIn<double>(value);
    if (!seconds || !std::isfinite(*seconds) || *seconds <= 0) {
        refuse("--frame-timeout", value, "a number of seconds above 0");
    }
    options.frameTimeout = *seconds;
}

void takeModule(RenderOptions& options, const std::string& value) {
    if (value.empty()) {
        refuse("--module", value, "a file");
    }
    options.module = pathFromUtf8(value);
}

void takeProgress(RenderOptions& options, const std::string& value) {
    using Word = std::pair<std::string_view, ProgressMode>;
    options.progress = choiceIn("--progress", value,
                                std::array<Word, 5>{{{"auto", ProgressMode::Auto},
                                                     {"bar", ProgressMode::Bar},
                                                     {"lines", ProgressMode::Lines},
                                                     {"json", ProgressMode::Json},
                                                     {"none", ProgressMode::None}}});
}

void takeStrict(RenderOptions& options, const std::string&) {
    options.strict = true;
}

}  // namespace

const std::vector<RenderOption>& renderOptions() {
    static const std::vector<RenderOption> options{
        {"-o,--output", "PATTERN",
         "output file; ####, [####] or %04d takes the frame number; " + suffixesWithDepths() +
             "; - writes raw frames (A R G B from the top, little-endian, no padding) to standard output",
         "", false, takeOutput},
        {"--frames", "LIST", "12, 0-99, 0-99x5 (every fifth) or 0-99y5 (the others), joined by commas",
         "all of the composition", false, takeFrames},
        {"--depth", "8|16|32", "bits per channel", "8; 32 for .exr", false, takeDepth},
        {"--resolution", "FACTOR", "full, half, third, quarter, or two fractions such as 1/2,1/4", "full", false,
         takeResolution},
        {"--region", "X,Y,W,H", "render only this part, in pixels of the chosen resolution", "the whole layer", false,
         takeRegion},
        {"--threads", "N", "frames rendered side by side; 0: one for each core", "1", false, takeThreads},
        {"--set", "ID=VALUE", "give a parameter another value, as JSON or plain text; repeatable", "", true, takeSet},
        {"--script", "FILE", "use this script instead of the scene's", "", false, takeScript},
        {"--existing", "overwrite|skip|fail",
         "what happens to files that are there; skip keeps those that read whole at the right size", "fail", false,
         takeExisting},
        {"--on-error", "continue|stop", "after a frame that failed; raw frames always stop there", "continue", false,
         takeOnError},
        {"--png-level", "0..9", "how hard PNG files are deflated", "1", false, takePngLevel},
        {"--frame-timeout", "SECONDS", "end the command when a frame takes longer", "none", false, takeFrameTimeout},
        {"--module", "PATH", "the effect module to load", "the one beside the command", false, takeModule},
        {"--progress", "auto|bar|lines|json|none",
         "auto: a bar on a terminal, else a line a frame; json: one object a line on standard output (standard error "
         "with -o -)",
         "auto", false, takeProgress},
        {"--strict", "", "a message from the effect counts as a failed frame", "", false, takeStrict},
    };
    return options;
}

std::string optionHelp(const RenderOption& option) {
    const std::string initial = option.initial;
    return option.meaning + (initial.empty() ? "" : " (default: " + initial + ")");
}

}  // namespace TessavoyHost
