#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "Host/HostError.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Support/CommandFixture.h"

// The built command, run as its users run it.

namespace TessavoyHost {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Command : public CommandFixture {
protected:
    Command() { std::filesystem::create_directory(folder / "out"); }

    std::vector<std::string> outputFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / "out")) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    // Until the file is there and holds the text.
    bool waitForFile(const std::string& name, const std::string& text = "") const {
        for (int i = 0; i < 6000; ++i) {
            if (std::filesystem::exists(folder / name) &&
                (text.empty() || contents(folder / name).find(text) != std::string::npos)) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    // What a long render leaves that crashes once its first frame is there.
    Outcome crashInAFrame(const std::string& progress) {
        scene["composition"]["duration"] = 4000;
        const pid_t child = start("render scene.json -o 'out/######.png' --progress " + progress);
        EXPECT_TRUE(waitForFile("out/000000.png"));
        ::kill(child, SIGSEGV);
        const Outcome outcome = wait(child);
        EXPECT_EQ(outcome.status, 1) << "signal " << outcome.signal;
        return outcome;
    }

    // Each line of a text is a JSON object with an event.
    static void expectEvents(const std::string& text) {
        for (const auto& line : linesOf(text)) {
            const auto object = nlohmann::json::parse(line, nullptr, false);
            EXPECT_TRUE(object.is_object() && object.contains("event")) << line;
        }
    }

    // The last object of a text.
    static nlohmann::json lastEvent(const std::string& text) {
        const auto lines = linesOf(text);
        return lines.empty() ? nlohmann::json() : nlohmann::json::parse(lines.back(), nullptr, false);
    }

    // More cells than can be computed in the time that the tests with it allow. Their sizes differ, so that how large
    // the buffers must be, which is refused, is known only when all are computed.
    void makeFramesEndless() {
        scene["effect"]["parameters"]["InstanceSize.Noise.Multiplier"] = 1;
        scene["effect"]["parameters"]["CountX"] = 5000;
        scene["effect"]["parameters"]["CountY"] = 2000;
    }
};

TEST_F(Command, RendersAllFrames) {
    const auto outcome = run("render scene.json -o 'out/a.####.png'");
    EXPECT_EQ(outcome.status, 0) << outcome.error;
    EXPECT_EQ(outputFiles().size(), 10u);
    EXPECT_EQ(outputFiles().front(), "a.0000.png");
    EXPECT_EQ(outputFiles().back(), "a.0009.png");
    EXPECT_EQ(lastLine(outcome), "frames: 10 written, 0 skipped, 0 failed");
    EXPECT_EQ(outcome.out, "");
}

TEST_F(Command, RendersTheFramesThatAreNamed) {
    EXPECT_EQ(run("render --frames 0-9x4,3 scene.json -o out/%d.tif --depth 16").status, 0);
    EXPECT_THAT(outputFiles(), ElementsAre("0.tif", "3.tif", "4.tif", "8.tif"));
}

TEST_F(Command, TheOptionsReachTheFrame) {
    EXPECT_EQ(run("render scene.json -o out/half.png --frames 5 --resolution 1/2,1/4").status, 0);
    EXPECT_NO_THROW(verifyImage(folder / "out/half.png", 32, 9));
    EXPECT_EQ(run("render scene.json -o out/part.exr --frames 5 --region 10,20,30,7").status, 0);
    EXPECT_NO_THROW(verifyImage(folder / "out/part.exr", 30, 7));
    EXPECT_EQ(readImage(folder / "out/part.exr").format, SampleFormat::Float32);
}

TEST_F(Command, SetChangesTheParameter) {
    EXPECT_EQ(
        run("render scene.json -o - --frames 0 --set InstanceColor.Color=#ff0000 --set CountX=1 --set CountY=1").status,
        0);
    const std::string red = contents(folder / "stdout");
    EXPECT_EQ(
        run("render scene.json -o - --frames 0 --set InstanceColor.Color=#00ff00 --set CountX=1 --set CountY=1").status,
        0);
    const std::string green = contents(folder / "stdout");
    ASSERT_EQ(red.size(), 64u * 36u * 4u);
    const std::size_t middle = (18 * 64 + 32) * 4;  // A R G B
    EXPECT_EQ(red.substr(middle, 4), std::string("\xff\xff\x00\x00", 4));
    EXPECT_EQ(green.substr(middle, 4), std::string("\xff\x00\xff\x00", 4));
}

// A key makes each frame differ, so that an exchange of frames would show.
TEST_F(Command, RawFramesComeInOrderFromAnyNumberOfThreads) {
    scene["effect"]["parameters"]["CenterPos"]["keys"] = {{{"time", 0}, {"value", {10, 10}}},
                                                          {{"time", 0.4}, {"value", {50, 30}}}};
    const auto one = run("render scene.json -o -");
    EXPECT_EQ(one.status, 0);
    ASSERT_EQ(one.out.size(), 10u * 64u * 36u * 4u);
    const std::size_t frame = 64 * 36 * 4;
    for (std::size_t i = 1; i < 10; ++i) {
        EXPECT_NE(one.out.substr((i - 1) * frame, frame), one.out.substr(i * frame, frame));
    }
    EXPECT_EQ(run("render scene.json -o - --threads 4").out, one.out);
}

TEST_F(Command, RawFramesHaveTheFilesPixels) {
    const auto raw = run("render scene.json -o - --frames 3");
    EXPECT_EQ(run("render scene.json -o out/a.png --frames 3").status, 0);
    const Image image = readImage(folder / "out/a.png");
    ASSERT_EQ(raw.out.size(), image.samples.size());
    for (std::size_t i = 0; i < raw.out.size(); i += 4) {
        const auto sample = [&image, i](std::size_t channel) { return static_cast<char>(image.samples[i + channel]); };
        const std::string argb{sample(3), sample(0), sample(1), sample(2)};
        ASSERT_EQ(raw.out.substr(i, 4), argb) << "pixel " << i / 4;
    }
}

TEST_F(Command, ExistingFilesAreAFailureUnlessTold) {
    std::ofstream(folder / "out/a.04.png") << "mine";
    const auto refused = run("render scene.json -o 'out/a.##.png'");
    EXPECT_EQ(refused.status, 2);
    EXPECT_THAT(refused.error, HasSubstr("1 of 10 files are there already, first out/a.04.png"));
    EXPECT_THAT(outputFiles(), ElementsAre("a.04.png"));
    EXPECT_EQ(contents(folder / "out/a.04.png"), "mine");

    const auto skipped = run("render scene.json -o 'out/a.##.png' --existing skip");
    EXPECT_EQ(skipped.status, 0);
    EXPECT_EQ(lastLine(skipped), "frames: 10 written, 0 skipped, 0 failed");  // it was no picture
    EXPECT_EQ(lastLine(run("render scene.json -o 'out/a.##.png' --existing skip")),
              "frames: 0 written, 10 skipped, 0 failed");
    EXPECT_EQ(lastLine(run("render scene.json -o 'out/a.##.png' --existing skip --resolution half")),
              "frames: 10 written, 0 skipped, 0 failed");
    EXPECT_EQ(lastLine(run("render scene.json -o 'out/a.##.png' --existing overwrite")),
              "frames: 10 written, 0 skipped, 0 failed");
}

TEST_F(Command, NothingIsRenderedWhenTheLineIsWrong) {
    for (const char* arguments :
         {"render scene.json -o 'out/#.png'", "render scene.json -o out/a.png", "render scene.json -o no/a.##.png",
          "render scene.json -o 'out/##.png' --frames 5-12", "render scene.json -o 'out/##.png' --region 60,0,5,5",
          "render scene.json -o 'out/##.png' --set CountX=-1", "render scene.json -o 'out/##.png' --set Count=1",
          "render scene.json -o 'out/##.png' --script no.lua", "render scene.json", "paint scene.json"}) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_THAT(outcome.error, Not(IsEmpty()));
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outputFiles(), IsEmpty()) << arguments;
    }
}

TEST_F(Command, AWrongSceneIsStatus3AndTellsAll) {
    scene["effect"]["parameters"]["InstanceSize.Valu"] = 1;
    scene["composition"]["width"] = 0;
    for (const char* arguments : {"check scene.json", "render scene.json -o 'out/##.png'"}) {
        const auto outcome = run(arguments);
        EXPECT_EQ(outcome.status, 3);
        EXPECT_THAT(outcome.error,
                    AllOf(HasSubstr("scene.json: composition.width: 0 is out of range"),
                          HasSubstr("effect.parameters.\"InstanceSize.Valu\": unknown parameter; did you "
                                    "mean \"InstanceSize.Value\"?")));
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(run("check no-such.json").status, 3);
}

TEST_F(Command, ARightSceneIsChecked) {
    const auto outcome = run("check scene.json");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "scene.json: right, 10 frames of 64 x 36 pixels\n");
    EXPECT_EQ(outcome.error, "");
}

TEST_F(Command, AModuleThatCanNotBeHadIsStatus4) {
    EXPECT_EQ(run("check scene.json --module no-such.so").status, 4);
    std::ofstream(folder / "fake.so") << "no module";
    const auto outcome = run("render scene.json -o 'out/##.png' --module fake.so");
    EXPECT_EQ(outcome.status, 4);
    EXPECT_THAT(outcome.error, HasSubstr("fake.so"));
}

TEST_F(Command, AFailedFrameIsNamedAndTheOthersAreWritten) {
    scene["layers"][0] = {{"name", "Plate"}, {"image", "plate.##.png"}, {"first", 0}, {"count", 10}};
    const std::vector<std::byte> pixels(8 * 8 * 4);
    for (int i = 0; i < 10; ++i) {
        const int side = i == 4 || i == 5 ? 6 : 8;  // all must have the first one's size
        const PixelView view{pixels.data(), side, side, 8 * 4, 8};
        writeImage(folder / ("plate.0" + std::to_string(i) + ".png"), FileFormat::Png, view, {i, "test"}, 1);
    }
    const auto outcome = run("render scene.json -o 'out/##.png'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lastLine(outcome), "frames: 8 written, 0 skipped, 2 failed (4-5)");
    EXPECT_THAT(outcome.error, HasSubstr("frame 4: failed: "));
    EXPECT_THAT(outcome.error, HasSubstr("plate.04.png"));
    EXPECT_EQ(outputFiles().size(), 8u);

    const auto stopped = run("render scene.json -o 'out/##.png' --existing overwrite --on-error stop");
    EXPECT_EQ(stopped.status, 1);
    EXPECT_EQ(lastLine(stopped), "frames: 4 written, 0 skipped, 1 failed (4), 5 not rendered");
}

TEST_F(Command, JsonProgressIsOneObjectALineOnStandardOutput) {
    const auto outcome = run("render scene.json -o 'out/##.png' --frames 2,4 --progress json");
    const auto lines = linesOf(outcome.out);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(nlohmann::json::parse(lines[0])["frame"], 2);
    EXPECT_EQ(nlohmann::json::parse(lines[1])["status"], "written");
    EXPECT_EQ(nlohmann::json::parse(lines[2])["event"], "message");
    EXPECT_EQ(nlohmann::json::parse(lines[3])["event"], "end");
    EXPECT_EQ(nlohmann::json::parse(lines[3])["written"], 2);
}

TEST_F(Command, JsonProgressLeavesTheOutputToRawFrames) {
    const auto outcome = run("render scene.json -o - --frames 2,4 --progress json");
    EXPECT_EQ(outcome.out.size(), 2u * 64u * 36u * 4u);
    const auto lines = linesOf(outcome.error);
    ASSERT_GE(lines.size(), 4u);
    expectEvents(outcome.error);
    EXPECT_THAT(outcome.error, HasSubstr("{\"event\":\"frame\",\"frame\":2"));
    EXPECT_EQ(lastEvent(outcome.error)["event"], "end");
}

// Nothing of the run is missing on the stream, and no line stands on it that is none.
TEST_F(Command, WhatEndsARunBeforeItsFramesIsAnObjectToo) {
    scene["effect"]["parameters"]["InstanceSize.Valu"] = 1;
    const auto beside = run("render scene.json -o out/a.png --frames 0 --progress json");
    EXPECT_EQ(beside.status, 3);
    EXPECT_THAT(beside.error, HasSubstr("tessavoy: scene.json: effect.parameters.\"InstanceSize.Valu\": unknown"));
    expectEvents(beside.out);
    EXPECT_EQ(lastEvent(beside.out)["event"], "error");
    EXPECT_EQ("tessavoy: " + lastEvent(beside.out)["text"].get<std::string>() + '\n', beside.error);

    const auto alone = run("render scene.json -o - --frames 0 --progress json");
    EXPECT_EQ(alone.status, 3);
    EXPECT_EQ(alone.out, "");
    expectEvents(alone.error);
    EXPECT_EQ(lastEvent(alone.error), lastEvent(beside.out));

    const auto noModule = run("render scene.json -o - --progress json --module no-such.so");
    EXPECT_EQ(noModule.status, 4);
    expectEvents(noModule.error);
    EXPECT_EQ(lastEvent(noModule.error)["event"], "error");
}

TEST_F(Command, ACrashBesideRawFramesIsAnObject) {
    scene["composition"]["duration"] = 4000;
    const pid_t child = start("render scene.json -o - --progress json", ">/dev/null");
    EXPECT_TRUE(waitForFile("stderr", R"("event":"frame")"));
    ::kill(child, SIGSEGV);
    const auto outcome = wait(child);
    EXPECT_EQ(outcome.status, 1) << "signal " << outcome.signal;
    expectEvents(outcome.error);
    EXPECT_EQ(lastEvent(outcome.error)["event"], "crash");
}

TEST_F(Command, AFileThatGrowsTooLargeFailsItsFrame) {
    // 64 x 36 pixels take 9 kB; blocks have 512 bytes
    const auto outcome =
        wait(start("render scene.json -o out/a.png --png-level 0 --frames 0", ">stdout", "ulimit -f 4; "));
    EXPECT_EQ(outcome.status, 1) << "signal " << outcome.signal;
    EXPECT_THAT(outcome.error, HasSubstr(std::strerror(EFBIG)));
    EXPECT_EQ(lastLine(outcome), "frames: 0 written, 0 skipped, 1 failed (0)");
    EXPECT_THAT(outputFiles(), IsEmpty());
}

// Opening a pipe that nobody writes to waits, so the crash comes while the module is loaded.
TEST_F(Command, ACrashInSetUpIsStatus4) {
    ASSERT_EQ(::mkfifo((folder / "module.so").c_str(), 0600), 0);
    const pid_t child = start("check scene.json --module module.so");
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    ::kill(child, SIGSEGV);
    const auto outcome = wait(child);
    EXPECT_EQ(outcome.status, 4) << "signal " << outcome.signal;
    EXPECT_EQ(outcome.error, "tessavoy: the module crashed while being set up\n");
}

TEST_F(Command, ACrashOfAFrameIsStatus1) {
    const auto outcome = crashInAFrame("none");
    EXPECT_THAT(lastLine(outcome), AllOf(HasSubstr("frame"), EndsWith(" crashed")));
}

TEST_F(Command, ACrashOfAFrameEndsTheObjects) {
    const auto outcome = crashInAFrame("json");
    EXPECT_THAT(lastLine(outcome), AllOf(HasSubstr("tessavoy: "), EndsWith(" crashed")));
    expectEvents(outcome.out);
    EXPECT_EQ(lastEvent(outcome.out)["event"], "crash");
    EXPECT_EQ("tessavoy: " + lastEvent(outcome.out)["text"].get<std::string>(), lastLine(outcome));
}

// Wider than any driver's textures: the module says out of memory for whatever OpenGL refuses.
TEST_F(Command, AFrameThatOpenGlRefusesSaysWhatHelps) {
    scene["layers"][0] = {{"name", "Plate"}, {"solid", {0, 0, 0, 255}}, {"width", 30000}, {"height", 2}};
    const auto outcome = run("render scene.json -o 'out/##.png' --frames 0-1");
    EXPECT_EQ(outcome.status, 1) << "signal " << outcome.signal;
    EXPECT_THAT(outcome.error, AllOf(HasSubstr("frame 0: failed: "), HasSubstr("(error 4); "),
                                     HasSubstr("--resolution"), HasSubstr("textures")));
    EXPECT_EQ(lastLine(outcome), "frames: 0 written, 0 skipped, 2 failed (0-1)");
    EXPECT_THAT(outputFiles(), IsEmpty());
    // What it says does help.
    EXPECT_EQ(run("render scene.json -o 'out/##.png' --frames 0 --resolution quarter").status, 0);
}

// The signature of a PNG file and nothing behind it; of a whole one, the first half.
TEST_F(Command, APictureThatCantBeReadIsTheScenesMistake) {
    ASSERT_EQ(run("render scene.json -o whole.png --frames 0").status, 0);
    const std::string whole = contents(folder / "whole.png");
    for (const std::string& bytes : {std::string("\x89PNG\r\n\x1a\n"), whole.substr(0, whole.size() - 30)}) {
        std::ofstream(folder / "broken.png", std::ios::binary) << bytes;
        scene["layers"][1] = {{"name", "Logo"}, {"image", "broken.png"}};
        for (const char* command : {"check scene.json", "render scene.json -o 'out/##.png' --frames 0-1"}) {
            const auto outcome = run(command);
            EXPECT_EQ(outcome.status, 3) << command;
            EXPECT_THAT(outcome.error, HasSubstr("scene.json: layers[1].image: ")) << command;
            EXPECT_THAT(outcome.error, HasSubstr("broken.png")) << command;
        }
    }
    EXPECT_THAT(outputFiles(), IsEmpty());
}

// Of a sequence the other frames are rendered; checking finds the picture all the same.
TEST_F(Command, APictureInASequenceFailsTheFramesThatShowIt) {
    ASSERT_EQ(run("render scene.json -o 'walk.##.png' --frames 0-2").status, 0);
    std::ofstream(folder / "walk.01.png", std::ios::trunc) << "no picture";
    scene["layers"][1] = {{"name", "Walk"}, {"image", "walk.##.png"}, {"first", 0}, {"count", 3}};
    scene["effect"]["parameters"]["Layer.Custom1"] = "Walk";
    scene["effect"]["scriptText"] = "r = GetLayer(1, 0, 0)";
    const auto outcome = run("render scene.json -o 'out/##.png' --frames 0-2");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lastLine(outcome), "frames: 2 written, 0 skipped, 1 failed (1)");
    const auto checked = run("check scene.json");
    EXPECT_EQ(checked.status, 3);
    EXPECT_THAT(checked.error, HasSubstr("scene.json: layers[1].image: "));
    EXPECT_THAT(checked.error, HasSubstr("walk.01.png"));
}

TEST_F(Command, SavingNeedsANameInAFolder) {
    for (const char* file : {"''", "-", "no/saved.bin", "."}) {
        const auto outcome = run(std::string("save scene.json -o ") + file);
        EXPECT_EQ(outcome.status, 2) << file;
        EXPECT_THAT(outcome.error, HasSubstr("--output: ")) << file;
    }
    EXPECT_EQ(run("save scene.json -o saved.bin").status, 0);
    EXPECT_GT(std::filesystem::file_size(folder / "saved.bin"), 0U);
}

TEST_F(Command, TooManyFramesAreRefusedAtOnce) {
    scene["composition"]["duration"] = 4e6;
    scene["composition"]["frameRate"] = 100;
    const auto outcome = run("render scene.json -o 'out/########.png' --frames 7,100-29999999");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.error, HasSubstr("--frames: \"100-29999999\": with it the list has more than 10000000 frames"));
    EXPECT_THAT(outputFiles(), IsEmpty());
}

TEST_F(Command, ATooLongCompositionAsksForFrames) {
    scene["composition"]["duration"] = 4e6;
    scene["composition"]["frameRate"] = 100;
    const auto outcome = run("render scene.json -o 'out/##.png'");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.error, HasSubstr("choose with --frames"));
    EXPECT_EQ(run("render scene.json -o 'out/##.png' --frames 5").status, 0);
}

TEST_F(Command, AReaderThatGoesAwayEndsTheRun) {
    scene["composition"]["duration"] = 400;
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);  // the command must not hold the end that is read from
    const pid_t child = start("render scene.json -o -", ">&" + std::to_string(ends[1]));
    ::close(ends[1]);
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 1);
    ::close(ends[0]);
    const auto outcome = wait(child);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.error, HasSubstr("standard output: "));
    EXPECT_THAT(lastLine(outcome), HasSubstr("1 failed"));
}

TEST_F(Command, AClosedStandardOutputIsNoPlaceForFrames) {
    const auto outcome = wait(start("render scene.json -o - --frames 0", ">&-"));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.error, HasSubstr("standard output: it is closed"));
}

TEST_F(Command, AFrameThatTakesTooLongEndsTheCommand) {
    makeFramesEndless();
    const auto outcome = run("render scene.json -o 'out/##.png' --frames 7-9 --frame-timeout 0.2");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.error, HasSubstr("frame 7: failed: took longer than 0.2 seconds"));
    EXPECT_EQ(lastLine(outcome), "frames: 0 written, 0 skipped, 1 failed (7), 2 not rendered");
    EXPECT_THAT(outputFiles(), IsEmpty());
}

TEST_F(Command, InterruptedItEndsCleanly) {
    scene["composition"]["duration"] = 4000;
    for (const int signal : {SIGINT, SIGTERM}) {
        const pid_t child = start("render scene.json -o 'out/######.png' --threads 2 --existing overwrite");
        EXPECT_TRUE(waitForFile("out/000000.png"));
        ::kill(child, signal);
        const auto outcome = wait(child);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(linesOf(outcome.error), ::testing::Contains("interrupted"));
        EXPECT_THAT(lastLine(outcome), AllOf(HasSubstr("0 failed, "), EndsWith(" not rendered")));
        for (const auto& name : outputFiles()) {
            EXPECT_NO_THROW(verifyImage(folder / "out" / name, 64, 36)) << name;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder / "out")) {
            std::filesystem::remove(entry);
        }
    }
}

TEST_F(Command, InterruptedTwiceItDoesNotWaitForTheFrame) {
    makeFramesEndless();
    const pid_t child = start("render scene.json -o 'out/##.png' --frames 0-1");
    std::this_thread::sleep_for(std::chrono::milliseconds(800));  // it is at work on the first frame by now, or soon
    ::kill(child, SIGINT);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    ::kill(child, SIGINT);
    const auto outcome = wait(child);
    // A signal that came before the run began ends the process as signals do.
    EXPECT_TRUE(outcome.status == 1 || outcome.signal == SIGINT) << outcome.status;
    EXPECT_THAT(outputFiles(), IsEmpty());
}

TEST_F(Command, KilledItLeavesNoHalfFrame) {
    scene["composition"]["duration"] = 4000;
    const pid_t child = start("render scene.json -o 'out/######.png' --threads 2");
    EXPECT_TRUE(waitForFile("out/000005.png"));
    ::kill(child, SIGKILL);
    EXPECT_EQ(wait(child).signal, SIGKILL);
    for (const auto& name : outputFiles()) {
        if (name.ends_with(".png")) {
            EXPECT_NO_THROW(verifyImage(folder / "out" / name, 64, 36)) << name;
        }
    }
}

TEST_F(Command, ListsTheModulesParameters) {
    const auto outcome = run("parameters --json");
    EXPECT_EQ(outcome.status, 0);
    const auto list = nlohmann::json::parse(outcome.out);
    ASSERT_EQ(list.size(), 996u);
    EXPECT_EQ(list[0]["id"], "UseCompCamera");
    EXPECT_EQ(list[0]["diskId"], 714);
    EXPECT_EQ(list[7]["id"], "CountX");
    EXPECT_EQ(list[7]["label"], "Horizontal Count");
    EXPECT_EQ(list[7]["validMax"], 100000);
    EXPECT_EQ(list[995]["id"], "RenderSettingsGroupEnd");
    EXPECT_EQ(linesOf(run("parameters").out).size(), 997u);
    EXPECT_EQ(linesOf(run("parameters --markdown").out).size(), 998u);
}

TEST_F(Command, PrintsASchemaThatIsJson) {
    const auto outcome = run("schema");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(nlohmann::json::parse(outcome.out)["title"], "Tessavoy scene");
}

TEST_F(Command, TellsAboutItself) {
    const auto outcome = run("about");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, AllOf(HasSubstr("Tessavoy"), HasSubstr("1.3.1"), HasSubstr("33588308, 411046915"),
                                   HasSubstr("OpenGL Version"), HasSubstr("libpng")));
    EXPECT_EQ(outcome.error, "");
}

}  // namespace
}  // namespace TessavoyHost
