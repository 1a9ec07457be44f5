#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <numeric>
#include <sstream>

#include "Host/Command/EffectFrames.h"
#include "Host/Command/OutputChannel.h"
#include "Host/Command/OutputChecks.h"
#include "Host/Command/RawFrames.h"
#include "Host/Command/Version.h"
#include "Host/ErrorTexts.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// A new folder that goes away with the test.
class CommandOutput : public HostFixture {
protected:
    CommandOutput() {
        std::string name = (std::filesystem::temp_directory_path() / "tessavoy-output-XXXXXX").string();
        folder = ::mkdtemp(name.data());
    }
    ~CommandOutput() override { std::filesystem::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).string(); }
    void touch(const std::string& name) const { std::ofstream(folder / name) << "x"; }

    std::filesystem::path folder;
};

std::string refusal(const std::function<void()>& check) {
    try {
        check();
    } catch (const HostError& error) {
        return error.status() == ExitStatus::CommandLine ? error.what() : "another status";
    }
    return "accepted";
}

TEST_F(CommandOutput, SeveralFramesNeedANumber) {
    const auto check = [](const std::string& pattern, const std::vector<int>& frames) {
        return refusal([&] { checkNumbering(OutputPattern(pattern), frames); });
    };
    EXPECT_EQ(check("a.png", {5}), "accepted");
    EXPECT_EQ(check("a##.png", {5, 6}), "accepted");
    EXPECT_EQ(check("-", {5, 6}), "accepted");
    EXPECT_EQ(check("a.png", {5, 6}),
              "--output: \"a.png\" has no place for the number of 2 frames; write such as out.####.png");
}

TEST_F(CommandOutput, TheFolderMustBeThereAndWritable) {
    EXPECT_EQ(refusal([&] { checkFolder(OutputPattern(path("a.png")).folder()); }), "accepted");
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    EXPECT_EQ(refusal([&] { checkFolder(OutputPattern(path("no/a.png")).folder()); }),
              "--output: there is no folder " + path("no") + "; make it first");
    EXPECT_THAT(refusal([&] { checkFolder(OutputPattern("/proc/a.png").folder()); }),
                HasSubstr("--output: files can't be made in /proc: "));
}

TEST_F(CommandOutput, OneFileNeedsANameAFolderAndItsPlace) {
    EXPECT_EQ(refusal([&] { checkFile(path("saved.bin")); }), "accepted");
    EXPECT_EQ(refusal([&] { checkFile("saved.bin"); }), "accepted");
    touch("there.bin");
    EXPECT_EQ(refusal([&] { checkFile(path("there.bin")); }), "accepted");
    EXPECT_EQ(refusal([&] { checkFile(""); }), "--output: \"\" is no name of a file");
    EXPECT_EQ(refusal([&] { checkFile("-"); }), "--output: \"-\" is no name of a file");
    EXPECT_EQ(refusal([&] { checkFile(path("no/a.bin")); }),
              "--output: there is no folder " + path("no") + "; make it first");
    EXPECT_EQ(refusal([&] { checkFile(path("")); }), "--output: " + path("") + " is there and is no file");
}

// This machine's name as it stands in a passing name: letters and digits, anything else as an underscore.
std::string machineName() {
    char host[64] = {};
    ::gethostname(host, sizeof host - 1);
    std::string name = host;
    for (char& letter : name) {
        const bool plain =
            (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
        letter = plain ? letter : '_';
    }
    return name;
}

TEST_F(CommandOutput, PassingFilesOfEndedProcessesOfThisMachineAreRemoved) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    const std::string here = ".tessavoy-" + machineName() + "-";
    const std::string ended = here + std::to_string(child);
    const std::string elsewhere = ".tessavoy-another_" + machineName() + "-" + std::to_string(child);
    const std::vector<std::string> kept{here + std::to_string(::getpid()) + "-1.part",
                                        ended + "-1.png",
                                        ended + "-.part",
                                        "x" + ended + "-1.part",
                                        elsewhere + "-1.part",
                                        "a.part"};
    for (const auto& name : kept) {
        touch(name);
    }
    touch(ended + "-1.part");
    touch(ended + "-23.part");
    EXPECT_EQ(refusal([&] { checkFolder(OutputPattern(path("a.png")).folder()); }), "accepted");
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        left.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(left, ::testing::UnorderedElementsAreArray(kept));
}

TEST_F(CommandOutput, FilesInTheWayAreCounted) {
    touch("a02.png");
    touch("a03.png");
    const OutputPattern pattern(path("a##.png"));
    const auto check = [&](ExistingFiles existing) {
        return refusal([&] { checkExistingFiles(pattern, {1, 2, 3}, existing); });
    };
    EXPECT_EQ(check(ExistingFiles::Fail), "--output: 2 of 3 files are there already, first " + path("a02.png") +
                                              "; say --existing overwrite or --existing skip");
    EXPECT_EQ(check(ExistingFiles::Overwrite), "accepted");
    EXPECT_EQ(check(ExistingFiles::Skip), "accepted");
    std::filesystem::create_directory(folder / "a01.png");
    EXPECT_EQ(check(ExistingFiles::Overwrite), "--output: " + path("a01.png") + " is there and is no file");
}

TEST_F(CommandOutput, TheRegionLiesInTheLayer) {
    EXPECT_EQ(refusal([] { checkRegion({60, 40, 4, 8}, 64, 48); }), "accepted");
    EXPECT_EQ(refusal([] {
                  checkRegion({61, 40, 4, 8}, 64, 48);
              }),
              "--region: reaches outside the layer, which has 64 x 48 pixels at this resolution");
    EXPECT_NE(refusal([] { checkRegion({0, 41, 4, 8}, 64, 48); }), "accepted");
    EXPECT_NE(refusal([] { checkRegion({2147483647, 0, 2147483647, 1}, 64, 48); }), "accepted");
}

TEST(CommandRawFrames, HoldRowsFromTheTopWithoutPadding) {
    std::vector<std::uint8_t> memory(2 * 12);
    std::iota(memory.begin(), memory.end(), std::uint8_t{0});
    const PixelView pixels{reinterpret_cast<const std::byte*>(memory.data()), 2, 2, 12, 8};
    const std::string frame = rawFrame(pixels);
    EXPECT_THAT(std::vector<int>(frame.begin(), frame.end()),
                ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 12, 13, 14, 15, 16, 17, 18, 19));
}

TEST(CommandRawFrames, AreLittleEndian) {
    const std::vector<std::uint16_t> memory{0x8000, 1, 2, 0x1234};
    const PixelView pixels{reinterpret_cast<const std::byte*>(memory.data()), 1, 1, 8, 16};
    EXPECT_EQ(rawFrame(pixels), std::string("\x00\x80\x01\x00\x02\x00\x34\x12", 8));
}

TEST(CommandVersion, IsTakenApart) {
    EXPECT_EQ(versionInWords(626176), "1.3.1");
    EXPECT_EQ(versionInWords(624128 + 5), "1.3.0 release build 5");
    EXPECT_EQ(versionInWords((1U << 26) | (2U << 19) | (2U << 9)), "10.0.0 beta build 0");
}

// Frames of the fake effect, which copies its layer: 100 x 80 pixels of red 200, green 100, blue 50.
class CommandEffectFrames : public CommandOutput {
protected:
    RenderedFrame render(int frame) {
        work.emplace(*instance, options, 8, ImageSize{100, 80}, output);
        return work->render(frame, cancel);
    }

    void writeTo(const std::string& pattern, int frame) {
        options.output = OutputPattern(pattern);
        const auto rendered = render(frame);
        ASSERT_EQ(rendered.failure, "");
        rendered.write();
    }

    OutputChannel output;
    RenderOptions options;
    std::atomic<bool> cancel = false;
    EffectHost host{FakeEffect::entryPoints()};
    std::unique_ptr<EffectInstance> instance = host.createInstance(FakeProject::project());
    std::optional<EffectFrames> work;
};

TEST_F(CommandEffectFrames, AreWrittenToTheirFiles) {
    writeTo(path("a.##.png"), 7);
    const Image image = readImage(path("a.07.png"));
    EXPECT_EQ(image.width, 100);
    EXPECT_EQ(image.height, 80);
    EXPECT_THAT(std::vector<std::byte>(image.samples.begin(), image.samples.begin() + 4),
                ElementsAre(std::byte{200}, std::byte{100}, std::byte{50}, std::byte{255}));
    EXPECT_EQ(work->fileOf(7), path("a.07.png"));
}

TEST_F(CommandEffectFrames, OnlyWholeFilesOfTheRightSizeAreKept) {
    options.existing = ExistingFiles::Skip;
    writeTo(path("a.##.png"), 7);
    EXPECT_TRUE(work->isThere(7));
    EXPECT_FALSE(work->isThere(8));
    std::filesystem::resize_file(path("a.07.png"), std::filesystem::file_size(path("a.07.png")) - 20);
    EXPECT_FALSE(work->isThere(7));
    touch("a.08.png");
    EXPECT_FALSE(work->isThere(8));
}

TEST_F(CommandEffectFrames, OfAnotherSizeAreNotKept) {
    options.existing = ExistingFiles::Skip;
    writeTo(path("a.##.png"), 7);
    work.emplace(*instance, options, 8, ImageSize{50, 40}, output);
    EXPECT_FALSE(work->isThere(7));
}

TEST_F(CommandEffectFrames, AreNotKeptUnlessToldSo) {
    writeTo(path("a.##.png"), 7);
    EXPECT_FALSE(work->isThere(7));
}

TEST_F(CommandEffectFrames, CarryTheModulesFailure) {
    options.output = OutputPattern(path("a.##.png"));
    FakeEffect::hooks().render = [](PF_InData*, PF_OutData*, PF_SmartRenderExtra*) { return PF_Err{512}; };
    EXPECT_EQ(render(1).failure, frameFailure(512, ""));
}

// It has its own remedy.
TEST_F(CommandEffectFrames, CarryTheHostsOwnFailure) {
    options.output = OutputPattern(path("a.##.png"));
    FakeEffect::hooks().render = [this](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        host.faults().exhaustNth("checkout_output", 1);
        FakeEffect::usualRender(in, extra);
        return PF_Err{0};
    };
    EXPECT_EQ(render(1).failure,
              "the host ran out of memory in checkout_output; render fewer frames side by side (--threads), or at a "
              "lower --resolution");
}

TEST_F(CommandEffectFrames, CarryTheModulesMessage) {
    options.output = OutputPattern(path("a.##.png"));
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData* out, PF_SmartRenderExtra* extra) {
        std::snprintf(out->return_msg, sizeof out->return_msg, "odd");
        out->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
        return FakeEffect::usualRender(in, extra);
    };
    const auto rendered = render(1);
    EXPECT_EQ(rendered.failure, "");
    EXPECT_THAT(rendered.messages, ElementsAre("odd"));
    EXPECT_THAT(rendered.remarks, IsEmpty());
}

// Descriptor 1 points to a file while this lives.
class RedirectedOutput {
public:
    explicit RedirectedOutput(const std::string& file) : mFile(file), mBefore(::dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(descriptor, STDOUT_FILENO);
        ::close(descriptor);
    }
    ~RedirectedOutput() { restore(); }

    std::string take() {
        restore();
        std::ifstream stream(mFile, std::ios::binary);
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }

private:
    void restore() {
        if (mBefore != -1) {
            std::fflush(stdout);
            ::dup2(mBefore, STDOUT_FILENO);
            ::close(mBefore);
            mBefore = -1;
        }
    }

    std::string mFile;
    int mBefore;
};

TEST_F(CommandOutput, TheCommandsOutputIsItsOwn) {
    RedirectedOutput redirected(path("out"));
    {
        OutputChannel channel;
        EXPECT_FALSE(channel.isTerminal());
        std::printf("(a module's print, meant for standard error)\n");
        std::fflush(stdout);
        channel.write("mine");
    }
    std::printf("after");
    EXPECT_EQ(redirected.take(), "mineafter");
}

TEST_F(CommandOutput, WritingToNobodyIsAnError) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int before = ::dup(STDOUT_FILENO);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
    ::close(ends[0]);
    std::signal(SIGPIPE, SIG_IGN);
    {
        OutputChannel channel;
        EXPECT_THROW(channel.write("x"), HostError);
    }
    ::dup2(before, STDOUT_FILENO);
    ::close(before);
}

TEST_F(CommandOutput, StrayLinesAreHandedOver) {
    RedirectedOutput redirected(path("out"));
    std::vector<std::string> lines;
    {
        StrayLines stray({STDOUT_FILENO}, [&lines](const std::string& line) { lines.push_back(line); });
        std::printf("one\n");
        std::cout << "tw" << std::flush;
        std::printf("o\n\nlast");
        stray.end();
        std::printf("dropped");
        stray.end();
    }
    std::fflush(stdout);
    EXPECT_EQ(redirected.take(), "");
    EXPECT_THAT(lines, ElementsAre("one", "two", "", "last"));
}

TEST_F(CommandOutput, StrayPrintsAreCaught) {
    StrayOutput stray;
    std::printf("driver ");
    std::cout << "and version";
    EXPECT_EQ(stray.take(), "driver and version");
}

}  // namespace
}  // namespace TessavoyHost
