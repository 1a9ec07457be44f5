#include "Host/Command/RenderOptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

const RenderOption& option(const std::string& name) {
    for (const auto& known : renderOptions()) {
        if (std::string(known.names).ends_with(name)) {
            return known;
        }
    }
    throw std::invalid_argument(name);
}

RenderOptions with(const std::string& name, const std::string& value) {
    RenderOptions options;
    option(name).take(options, value);
    return options;
}

std::string refusal(const std::string& name, const std::string& value) {
    try {
        with(name, value);
    } catch (const HostError& error) {
        return error.status() == ExitStatus::CommandLine ? error.what() : "another status";
    }
    return "accepted";
}

TEST(CommandRenderOptions, StartWithTheDefaults) {
    const RenderOptions options;
    EXPECT_FALSE(options.frames.has_value());
    EXPECT_FALSE(options.depth.has_value());
    EXPECT_EQ(options.downsampleX, (Rational{1, 1}));
    EXPECT_EQ(options.downsampleY, (Rational{1, 1}));
    EXPECT_FALSE(options.region.has_value());
    EXPECT_EQ(options.threads, 1);
    EXPECT_EQ(options.existing, ExistingFiles::Fail);
    EXPECT_EQ(options.onError, AfterFailure::Continue);
    EXPECT_EQ(options.pngLevel, 1);
    EXPECT_FALSE(options.frameTimeout.has_value());
    EXPECT_EQ(options.progress, ProgressMode::Auto);
    EXPECT_FALSE(options.strict);
}

TEST(CommandRenderOptions, TheModuleHasAName) {
    EXPECT_EQ(with("--module", "a.so").module, "a.so");
    EXPECT_EQ(refusal("--module", ""), "--module: \"\" is not a file");
}

TEST(CommandRenderOptions, Depth) {
    EXPECT_EQ(with("--depth", "8").depth, 8);
    EXPECT_EQ(with("--depth", "16").depth, 16);
    EXPECT_EQ(with("--depth", "32").depth, 32);
    EXPECT_EQ(refusal("--depth", "24"), "--depth: \"24\" is not one of 8, 16, 32");
}

TEST(CommandRenderOptions, ResolutionByName) {
    EXPECT_EQ(with("--resolution", "full").downsampleX, (Rational{1, 1}));
    EXPECT_EQ(with("--resolution", "half").downsampleX, (Rational{1, 2}));
    EXPECT_EQ(with("--resolution", "third").downsampleY, (Rational{1, 3}));
    EXPECT_EQ(with("--resolution", "quarter").downsampleY, (Rational{1, 4}));
}

TEST(CommandRenderOptions, ResolutionByFractions) {
    const auto options = with("--resolution", "1/2,3/4");
    EXPECT_EQ(options.downsampleX, (Rational{1, 2}));
    EXPECT_EQ(options.downsampleY, (Rational{3, 4}));
    EXPECT_EQ(with("--resolution", "1,1/7").downsampleX, (Rational{1, 1}));
    for (const std::string value : {"", "1/2", "1/2,", "1/2,1/2,1/2", "0/2,1/2", "1/0,1/2", "3/2,1/2", "-1/2,1/2",
                                    "1/-2,1/2", "0.5,0.5", "Half"}) {
        EXPECT_EQ(refusal("--resolution", value),
                  "--resolution: \"" + value +
                      "\" is not full, half, third, quarter, or two fractions up to 1 such as 1/2,1/4");
    }
}

TEST(CommandRenderOptions, Region) {
    EXPECT_EQ(with("--region", "1,2,30,40").region, (Region{1, 2, 30, 40}));
    for (const std::string value : {"", "1,2,3", "1,2,3,4,5", "-1,0,3,4", "0,0,0,4", "0,0,4,0", "a,0,1,1", "0,,1,1"}) {
        EXPECT_EQ(refusal("--region", value),
                  "--region: \"" + value + "\" is not x,y,w,h in pixels, with x and y from 0 and w and h from 1");
    }
}

TEST(CommandRenderOptions, Threads) {
    EXPECT_EQ(with("--threads", "7").threads, 7);
    EXPECT_EQ(with("--threads", "0").threads, std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
    EXPECT_EQ(refusal("--threads", "-1"), "--threads: \"-1\" is not a number from 0 to 1024");
    EXPECT_EQ(refusal("--threads", "1025"), "--threads: \"1025\" is not a number from 0 to 1024");
    EXPECT_EQ(refusal("--threads", "two"), "--threads: \"two\" is not a number from 0 to 1024");
}

TEST(CommandRenderOptions, SetTakesAllUpToTheFirstEqualsSignAsId) {
    RenderOptions options;
    option("--set").take(options, "CountX=40");
    option("--set").take(options, "Layer.Custom1=a=b");
    option("--set").take(options, "Layer.Custom1=");
    EXPECT_THAT(options.overrides.parameters,
                ElementsAre(Pair("CountX", "40"), Pair("Layer.Custom1", "a=b"), Pair("Layer.Custom1", "")));
    EXPECT_EQ(refusal("--set", "CountX"), "--set: \"CountX\" is not ID=VALUE, such as CountX=40");
    EXPECT_EQ(refusal("--set", "=40"), "--set: \"=40\" is not ID=VALUE, such as CountX=40");
    EXPECT_TRUE(option("--set").repeatable);
}

TEST(CommandRenderOptions, Words) {
    EXPECT_EQ(with("--existing", "overwrite").existing, ExistingFiles::Overwrite);
    EXPECT_EQ(with("--existing", "skip").existing, ExistingFiles::Skip);
    EXPECT_EQ(with("--existing", "fail").existing, ExistingFiles::Fail);
    EXPECT_EQ(refusal("--existing", "keep"), "--existing: \"keep\" is not one of overwrite, skip, fail");
    EXPECT_EQ(with("--on-error", "stop").onError, AfterFailure::Stop);
    EXPECT_EQ(refusal("--on-error", ""), "--on-error: \"\" is not one of continue, stop");
    EXPECT_EQ(with("--progress", "json").progress, ProgressMode::Json);
    EXPECT_EQ(refusal("--progress", "dots"), "--progress: \"dots\" is not one of auto, bar, lines, json, none");
}

TEST(CommandRenderOptions, Numbers) {
    EXPECT_EQ(with("--png-level", "0").pngLevel, 0);
    EXPECT_EQ(with("--png-level", "9").pngLevel, 9);
    EXPECT_EQ(refusal("--png-level", "10"), "--png-level: \"10\" is not a number from 0 to 9");
    EXPECT_EQ(with("--frame-timeout", "2.5").frameTimeout, 2.5);
    for (const std::string value : {"0", "-1", "nan", "inf", "", "5s"}) {
        EXPECT_EQ(refusal("--frame-timeout", value),
                  "--frame-timeout: \"" + value + "\" is not a number of seconds above 0");
    }
}

TEST(CommandRenderOptions, Paths) {
    EXPECT_EQ(with("--script", "a.lua").overrides.script, "a.lua");
    EXPECT_EQ(with("--module", "x/Tessavoy.so").module, "x/Tessavoy.so");
    EXPECT_EQ(with("--output", "a.exr").output->format(), FileFormat::Exr);
    EXPECT_EQ(with("--frames", "0-9").frames, "0-9");
    EXPECT_TRUE(with("--strict", "").strict);
}

TEST(CommandRenderOptions, HelpNamesTheDefault) {
    EXPECT_EQ(optionHelp(option("--png-level")), "how hard PNG files are deflated (default: 1)");
    EXPECT_EQ(optionHelp(option("--script")), "use this script instead of the scene's");
}

}  // namespace
}  // namespace TessavoyHost
