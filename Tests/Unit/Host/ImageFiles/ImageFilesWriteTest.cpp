#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <thread>

#include "Host/ImageFiles/AtomicFile.h"
#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

struct Output {
    FileFormat format;
    const char* name;
};

constexpr Output outputs[] = {{FileFormat::Png, "frame.png"},
                              {FileFormat::Tiff, "frame.tif"},
                              {FileFormat::Exr, "frame.exr"},
                              {FileFormat::Pam, "frame.pam"}};

void write(const std::filesystem::path& path, FileFormat format) {
    writeImage(path, format, noiseWorld(150, 100).view(), {}, 1);
}

TEST(ImageFilesWrite, LeavesTheFileAloneInTheFolder) {
    for (const auto& [format, name] : outputs) {
        const TestFolder folder;
        write(folder / name, format);
        EXPECT_EQ(folder.fileCount(), 1) << name;
        EXPECT_NO_THROW(verifyImage(folder / name, 150, 100)) << name;
    }
}

TEST(ImageFilesWrite, ReplacesWhatWasThere) {
    for (const auto& [format, name] : outputs) {
        const TestFolder folder;
        writeBytes(folder / name, std::string(1'000'000, 'x'));
        write(folder / name, format);
        EXPECT_EQ(folder.fileCount(), 1) << name;
        EXPECT_NO_THROW(verifyImage(folder / name, 150, 100)) << name;
    }
}

TEST(ImageFilesWrite, SetsTheUsualPermissions) {
    const TestFolder folder;
    write(folder / "a.png", FileFormat::Png);
    writeBytes(folder / "plain", "x");
    EXPECT_EQ(std::filesystem::status(folder / "a.png").permissions(),
              std::filesystem::status(folder / "plain").permissions());
}

TEST(ImageFilesWrite, WritesNamesOfTheGreatestLength) {
    const TestFolder folder;
    const std::string name = std::string(251, 'n') + ".png";
    write(folder / name, FileFormat::Png);
    EXPECT_NO_THROW(verifyImage(folder / name, 150, 100));
    const Told told = toldBy([&] { write(folder / ("n" + name), FileFormat::Png); });
    EXPECT_NE(told.text.find("; choose a shorter name"), std::string::npos) << told.text;
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(ImageFilesWrite, WritesIntoTheCurrentFolderByName) {
    const TestFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    write("here.png", FileFormat::Png);
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.fileCount(), 1);
    EXPECT_NO_THROW(verifyImage(folder / "here.png", 150, 100));
}

TEST(ImageFilesWrite, TellsThatTheFolderIsMissing) {
    const TestFolder folder;
    const auto path = folder / "none" / "a.png";
    const Told told = toldBy([&] { write(path, FileFormat::Png); });
    EXPECT_EQ(told.text, path.string() + ": can't be written: No such file or directory; make the folder first");
    EXPECT_EQ(told.status, ExitStatus::FrameFailed);
}

TEST(ImageFilesWrite, RefusesNamesOfWhatIsNoFile) {
    const TestFolder folder;
    std::filesystem::create_directory(folder / "a.png");
    EXPECT_EQ(toldBy([&] { write(folder / "a.png", FileFormat::Png); }).text,
              (folder / "a.png").string() + ": can't be written: isn't a file; choose another name");
    EXPECT_EQ(toldBy([&] { write("/dev/full", FileFormat::Png); }).text,
              "/dev/full: can't be written: isn't a file; choose another name");
    EXPECT_EQ(folder.fileCount(), 1);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST(ImageFilesWrite, RefusesPicturesWithoutPixelsOrBeyondTheLimit) {
    const TestFolder folder;
    const auto told = [&](int width, int height) {
        return toldBy([&] {
                   writeImage(folder / "a.png", FileFormat::Png, {nullptr, width, height, 0, 8}, {}, 1);
               })
            .text;
    };
    EXPECT_NE(told(0, 5).find("a.png: the picture has no pixels; "), std::string::npos);
    EXPECT_NE(told(5, 0).find("a.png: the picture has no pixels; "), std::string::npos);
    EXPECT_NE(told(30001, 5).find("a.png: the picture is larger than 30000 x 30000 pixels; "), std::string::npos);
    EXPECT_EQ(folder.fileCount(), 0);
}

// The checks below run in a child process, which may give up its rights or limit itself. Each ends it with 0.

struct Failure {
    int files;  // beside what was there
    std::string text;
};

Failure failureOf(const TestFolder& folder, const Output& output) {
    const int before = folder.fileCount();
    try {
        write(folder / output.name, output.format);
        return {folder.fileCount() - before, "nothing was thrown"};
    } catch (const HostError& error) {
        return {folder.fileCount() - before, error.what()};
    }
}

[[noreturn]] void endChild(const Failure& failure, const std::string& expected) {
    if (failure.files == 0 && failure.text == expected)
        std::_Exit(0);
    std::fprintf(stderr, "%d files, %s", failure.files, failure.text.c_str());
    std::_Exit(1);
}

void limitFileSize(rlim_t bytes) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

// The limit is met at the first write, in the middle, and by the last bytes alone.
TEST(ImageFilesWriteDeath, ADiskThatIsFullLeavesNothingAndTellsOnce) {
    for (const Output& output : outputs) {
        const TestFolder folder;
        write(folder / output.name, output.format);
        const auto whole = static_cast<rlim_t>(std::filesystem::file_size(folder / output.name));
        std::filesystem::remove(folder / output.name);
        for (const rlim_t limit : {rlim_t{0}, rlim_t{4096}, whole / 2, whole - 1})
            EXPECT_EXIT(
                {
                    limitFileSize(limit);
                    endChild(failureOf(folder, output),
                             (folder / output.name).string() +
                                 ": can't be written: File too large; raise the limit on file "
                                 "sizes or write to another disk");
                },
                testing::ExitedWithCode(0), "")
                << output.name << " " << limit;
    }
}

TEST(ImageFilesWriteDeath, AFailureKeepsWhatWasThere) {
    for (const Output& output : outputs) {
        const TestFolder folder;
        writeBytes(folder / output.name, "precious");
        EXPECT_EXIT(
            {
                limitFileSize(5000);
                std::_Exit(failureOf(folder, output).files);
            },
            testing::ExitedWithCode(0), "");
        EXPECT_EQ(readBytes(folder / output.name), "precious");
    }
}

TEST(ImageFilesWriteDeath, AFolderThatMustNotBeWrittenIsTold) {
    const TestFolder folder;
    ::chmod(folder.path().c_str(), 0555);
    EXPECT_EXIT(
        {
            const uid_t nobody = 65534;
            if (::geteuid() == 0 && ::setuid(nobody) != 0)
                std::_Exit(2);
            endChild(failureOf(folder, outputs[0]),
                     (folder / "frame.png").string() +
                         ": can't be written: Permission denied; choose a folder that you "
                         "may write to");
        },
        testing::ExitedWithCode(0), "");
    ::chmod(folder.path().c_str(), 0755);
}

TEST(ImageFilesWriteDeath, AFileThatMustNotBeReadIsTold) {
    const TestFolder folder;
    const auto path = writeBytes(folder / "secret.png", "x");
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(path.c_str(), 0);
    EXPECT_EXIT(
        {
            if (::geteuid() == 0 && ::setuid(65534) != 0)
                std::_Exit(2);
            endChild({0, toldByReading(path).text},
                     path.string() + ": can't be opened: Permission denied; check your permissions");
        },
        testing::ExitedWithCode(0), "");
}

TEST(ImageFilesWrite, AlternativesAreNamedInWords) {
    EXPECT_EQ(alternatives({"PAM"}), "PAM");
    EXPECT_EQ(alternatives({"PNG", "PAM"}), "PNG or PAM");
    EXPECT_EQ(alternatives({"PNG", "EXR", "PAM"}), "PNG, EXR or PAM");
}

TEST(ImageFilesWrite, ThreadsWriteSideBySide) {
    const TestFolder folder;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&, thread] {
            for (const auto& [format, name] : outputs)
                write(folder / (std::to_string(thread) + name), format);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(folder.fileCount(), 16);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_NO_THROW(verifyImage(entry.path(), 150, 100));
}

TEST(AtomicFile, AppearsAtTheCommitOnly) {
    const TestFolder folder;
    {
        AtomicFile file(folder / "a");
        EXPECT_TRUE(file.write("abc", 3));
        EXPECT_FALSE(std::filesystem::exists(folder / "a"));
        file.commit();
        EXPECT_EQ(readBytes(folder / "a"), "abc");
    }
    EXPECT_EQ(folder.fileCount(), 1);
}

TEST(AtomicFile, IsGoneWithoutCommit) {
    const TestFolder folder;
    {
        AtomicFile file(folder / "a");
        file.write("abc", 3);
        EXPECT_EQ(folder.fileCount(), 1);
    }
    EXPECT_EQ(folder.fileCount(), 0);
}

TEST(AtomicFile, TellsWhyAFolderTakesNoFiles) {
    const TestFolder folder;
    EXPECT_EQ(reasonAgainstFiles(folder.path()), std::nullopt);
    EXPECT_EQ(folder.fileCount(), 0);
    EXPECT_EQ(reasonAgainstFiles(folder / "none"), "No such file or directory");
}

TEST(AtomicFile, SeeksOverwritesAndReadsBack) {
    const TestFolder folder;
    AtomicFile file(folder / "a");
    const std::string large(600'000, 'l');  // more than it holds back
    file.write("0123456789", 10);
    file.write(large.data(), large.size());
    EXPECT_EQ(file.position(), 600'010u);
    file.seek(2);
    file.write("xy", 2);
    EXPECT_EQ(file.position(), 4u);
    EXPECT_EQ(file.size(), 600'010u);
    file.seek(1);
    char read[4] = {};
    EXPECT_EQ(file.read(read, 4), 4u);
    EXPECT_EQ(std::string(read, 4), "1xy4");
    file.seek(600'008);
    EXPECT_EQ(file.read(read, 4), 2u);
    file.commit();
    EXPECT_EQ(readBytes(folder / "a"), "01xy456789" + large);
}

}  // namespace
}  // namespace TessavoyHost
