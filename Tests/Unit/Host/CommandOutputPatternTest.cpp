#include "Host/Command/OutputPattern.h"

#include <gtest/gtest.h>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

std::string refusal(const std::string& text) {
    try {
        OutputPattern pattern(text);
    } catch (const HostError& error) {
        return error.status() == ExitStatus::CommandLine ? error.what() : "another status";
    }
    return "accepted";
}

TEST(CommandOutputPattern, AllFormsTakeTheNumber) {
    EXPECT_EQ(OutputPattern("out/a.####.png").file(12), "out/a.0012.png");
    EXPECT_EQ(OutputPattern("out/a.[####].png").file(12), "out/a.0012.png");
    EXPECT_EQ(OutputPattern("out/a.%04d.png").file(12), "out/a.0012.png");
    EXPECT_TRUE(OutputPattern("##.png").isNumbered());
}

TEST(CommandOutputPattern, OneFileHasNoNumber) {
    const OutputPattern pattern("out/still.png");
    EXPECT_FALSE(pattern.isNumbered());
    EXPECT_EQ(pattern.file(12), "out/still.png");
}

TEST(CommandOutputPattern, TheSuffixNamesTheFormat) {
    EXPECT_EQ(OutputPattern("a.png").format(), FileFormat::Png);
    EXPECT_EQ(OutputPattern("a.PNG").format(), FileFormat::Png);
    EXPECT_EQ(OutputPattern("a.tif").format(), FileFormat::Tiff);
    EXPECT_EQ(OutputPattern("a.tiff").format(), FileFormat::Tiff);
    EXPECT_EQ(OutputPattern("a.exr").format(), FileFormat::Exr);
    EXPECT_EQ(OutputPattern("a.pam").format(), FileFormat::Pam);
}

TEST(CommandOutputPattern, EveryFormatHasOneUsualSuffix) {
    std::vector<std::string> suffixes;
    for (const auto& known : usualSuffixes()) {
        suffixes.emplace_back(known.suffix);
        EXPECT_EQ(OutputPattern("a" + suffixes.back()).format(), known.format);
    }
    EXPECT_EQ(suffixes, (std::vector<std::string>{".png", ".tif", ".exr", ".pam"}));
}

TEST(CommandOutputPattern, TheExampleIsAPatternItself) {
    EXPECT_EQ(namePattern(), "out.####.png");
    EXPECT_TRUE(OutputPattern(namePattern()).isNumbered());
}

TEST(CommandOutputPattern, OtherSuffixesAreRefused) {
    for (const std::string text : {"", "a", "a.jpg", "a.png/", "a.png.gz", ".png", "####"}) {
        EXPECT_EQ(refusal(text),
                  "--output: \"" + text + "\" must end in .png, .tif, .exr or .pam, or be - for the standard output");
    }
}

TEST(CommandOutputPattern, ALoneHashIsRefused) {
    const std::string after = "\": a lone # means a number to some tools and not to others; write ## or %d";
    EXPECT_EQ(refusal("take#.png"), "--output: \"take#.png" + after);
    EXPECT_EQ(refusal("[#].png"), "--output: \"[#].png" + after);
    EXPECT_EQ(refusal("a#.####.png"), "--output: \"a#.####.png" + after);
}

TEST(CommandOutputPattern, ThereIsOnePlaceAtMostAndItStandsInTheName) {
    EXPECT_EQ(refusal("a##b##.png"), "--output: \"a##b##.png\" has more than one place for the frame's number");
    EXPECT_EQ(refusal("a%d.####.png"), "--output: \"a%d.####.png\" has more than one place for the frame's number");
}

TEST(CommandOutputPattern, FoldersAreLiteral) {
    EXPECT_EQ(OutputPattern("##/a.png").file(12), "##/a.png");
    EXPECT_FALSE(OutputPattern("##/a.png").isNumbered());
    EXPECT_EQ(OutputPattern("take#/%5d/a%d/x%%/b.##.png").file(7), "take#/%5d/a%d/x%%/b.07.png");
    EXPECT_EQ(OutputPattern("take#/x%%/b.##.png").folder(), "take#/x%%");
}

TEST(CommandOutputPattern, TwoPercentsStandForOne) {
    EXPECT_EQ(OutputPattern("x/50%%.png").file(7), "x/50%.png");
    EXPECT_EQ(OutputPattern("50%%d.%%.%03d.%%.png").file(7), "50%d.%.007.%.png");
    EXPECT_EQ(OutputPattern("%%%%%d.png").file(7), "%%7.png");
    EXPECT_EQ(OutputPattern("50%.png").file(7), "50%.png");
}

TEST(CommandOutputPattern, AWidthIsFilledWithZerosOrRefused) {
    for (const std::string place : {"%5d", "%12d", "%0004d"}) {
        EXPECT_EQ(refusal("a." + place + ".png"),
                  "--output: \"a." + place + ".png\": " + place + " is no place for a number; write such as %04d");
    }
    EXPECT_EQ(refusal("%%5d.png"), "accepted");
}

TEST(CommandOutputPattern, ADashIsTheStandardOutput) {
    const OutputPattern pattern("-");
    EXPECT_TRUE(pattern.isStandardOutput());
    EXPECT_EQ(pattern.usualDepth(), 8);
    EXPECT_FALSE(OutputPattern("-.png").isStandardOutput());
}

TEST(CommandOutputPattern, ExrIsFloatUnlessTold) {
    EXPECT_EQ(OutputPattern("a.exr").usualDepth(), 32);
    EXPECT_EQ(OutputPattern("a.png").usualDepth(), 8);
    EXPECT_EQ(OutputPattern("a.tif").usualDepth(), 8);
}

TEST(CommandOutputPattern, TheFolderIsNeverEmpty) {
    EXPECT_EQ(OutputPattern("a.png").folder(), ".");
    EXPECT_EQ(OutputPattern("x/y/a.png").folder(), "x/y");
    EXPECT_EQ(OutputPattern("/a.png").folder(), "/");
}

}  // namespace
}  // namespace TessavoyHost
