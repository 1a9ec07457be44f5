#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/Command/OutputPattern.h"
#include "Host/Rational.h"
#include "Host/Scene/SceneFile.h"
#include "Host/World.h"

namespace TessavoyHost {

enum class ExistingFiles { Overwrite, Skip, Fail };
enum class AfterFailure { Continue, Stop };
enum class ProgressMode { Auto, Bar, Lines, Json, None };

// What `tessavoy render` is asked to do. The initial values are the defaults.
struct RenderOptions {
    std::filesystem::path scene;
    std::optional<OutputPattern> output;  // required
    std::optional<std::string> frames;    // none: all of the composition
    std::optional<int> depth;             // bits per channel; none: what the output calls for
    Rational downsampleX, downsampleY;
    std::optional<Region> region;  // in downsampled pixels; none: the whole layer
    int threads = 1;               // at least 1
    SceneOverrides overrides;
    ExistingFiles existing = ExistingFiles::Fail;
    AfterFailure onError = AfterFailure::Continue;
    int pngLevel = 1;
    std::optional<double> frameTimeout;  // seconds
    std::filesystem::path module;        // empty: the one beside the command
    ProgressMode progress = ProgressMode::Auto;
    bool strict = false;
};

// An option of `tessavoy render`: what help and manual say of it, and what it does.
struct RenderOption {
    const char* names;  // "-o,--output"
    const char* value;  // the value's name; empty for a switch
    std::string meaning;
    const char* initial;  // the default in words; may be empty
    bool repeatable;
    void (*take)(RenderOptions& options, const std::string& value);  // throws HostError(CommandLine)
};

// All options, in the order in which they are shown.
const std::vector<RenderOption>& renderOptions();

// The option's meaning and its default, as help shows it.
std::string optionHelp(const RenderOption& option);

}  // namespace TessavoyHost
