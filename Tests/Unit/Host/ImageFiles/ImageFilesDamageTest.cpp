#include <map>
#include <random>
#include <thread>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

// A good file of each format that is written, small, of bytes that don't compress.
std::map<std::string, std::string> makeGoodFiles() {
    const TestFolder folder;
    const TestWorld<std::uint8_t> world = noiseWorld(19, 70);
    std::map<std::string, std::string> files;
    for (const auto& [name, format] : {std::pair{"a.png", FileFormat::Png},
                                       {"a.tif", FileFormat::Tiff},
                                       {"a.exr", FileFormat::Exr},
                                       {"a.pam", FileFormat::Pam}}) {
        writeImage(folder / name, format, world.view(), {3, "Tool 1.0"}, 1);
        files[name] = readBytes(folder / name);
    }
    return files;
}

const std::map<std::string, std::string>& goodFiles() {
    static const std::map<std::string, std::string> files = makeGoodFiles();
    return files;
}

// Reads and swallows the one kind of failure that is allowed. What else is thrown, or crashes, fails the test.
void readWhateverItIs(const std::filesystem::path& path) {
    try {
        const ImageSize size = probeImage(path);
        if (size.width * static_cast<std::int64_t>(size.height) > 1'000'000)
            return;  // a lie that reading would serve with a lot of memory first
        const Image image = readImage(path);
        EXPECT_EQ(image.samples.size(), image.rowBytes() * static_cast<std::size_t>(image.height));
    } catch (const HostError& error) {
        const std::string text = error.what();
        EXPECT_EQ(text.find(path.string() + ": "), 0u) << text;
        EXPECT_NE(text.find("; "), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
    }
}

// Whatever is read meanwhile must not print.
class SilentScope {
public:
    SilentScope() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
    }
    ~SilentScope() {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    }
};

TEST(ImageFilesDamage, EveryFileThatIsCutShortIsRefused) {
    const TestFolder folder;
    for (const auto& [name, bytes] : goodFiles()) {
        const SilentScope silent;
        for (std::size_t length = 0; length < bytes.size(); length += length < 600 ? 1 : 97) {
            const auto path = writeBytes(folder / name, bytes.substr(0, length));
            EXPECT_THROW(readImage(path), HostError) << name << " cut to " << length;
            EXPECT_THROW(verifyImage(path, 19, 70), HostError) << name << " cut to " << length;
            readWhateverItIs(path);
        }
        EXPECT_NO_THROW(verifyImage(writeBytes(folder / name, bytes), 19, 70)) << name;
    }
}

TEST(ImageFilesDamage, TheEndIsMissedToo) {
    const TestFolder folder;
    for (const auto& [name, bytes] : goodFiles())
        EXPECT_THROW(readImage(writeBytes(folder / name, bytes.substr(0, bytes.size() - 1))), HostError) << name;
}

TEST(ImageFilesDamage, ChangedBytesNeverDoWorseThanOneMessage) {
    const TestFolder folder;
    std::mt19937 random(7);
    for (const auto& [name, bytes] : goodFiles()) {
        const SilentScope silent;
        for (int round = 0; round < 400; ++round) {
            std::string changed = bytes;
            // Headers are where the mischief is: half of the changes go to the first or last bytes.
            for (int change = 0; change < 1 + round % 4; ++change) {
                const std::size_t anywhere = random() % changed.size();
                const std::size_t near = random() % std::min<std::size_t>(400, changed.size());
                const std::size_t place = round % 3 == 0 ? anywhere : round % 3 == 1 ? near : changed.size() - 1 - near;
                changed[place] = static_cast<char>(random());
            }
            readWhateverItIs(writeBytes(folder / name, changed));
        }
    }
}

TEST(ImageFilesDamage, TellsWhatIsNotAPicture) {
    const TestFolder folder;
    const SilentScope silent;
    const auto empty = writeBytes(folder / "empty.png", "");
    EXPECT_EQ(toldByReading(empty).text, empty.string() + ": is empty; make the file again");
    const auto wrong = writeBytes(folder / "words.png", "these are words");
    EXPECT_EQ(toldByReading(wrong).text,
              wrong.string() + ": isn't a PNG, EXR, TIFF, JPEG or PAM picture; convert it to one of these");
    const auto missing = folder / "missing.png";
    EXPECT_EQ(toldByReading(missing).text, missing.string() + ": there is no such file; check the path");
    EXPECT_EQ(toldByReading(folder.path()).text, folder.path().string() + ": isn't a file; name a picture file");
    EXPECT_EQ(toldByReading("/dev/null").text, "/dev/null: isn't a file; name a picture file");
    EXPECT_EQ(toldByReading(empty).status, ExitStatus::Scene);
}

TEST(ImageFilesDamage, ContentCountsAndNotTheSuffix) {
    const TestFolder folder;
    for (const auto& [name, bytes] : goodFiles()) {
        const auto path = writeBytes(folder / "misnamed.jpg", bytes);
        EXPECT_EQ(readImage(path).width, 19) << name;
        EXPECT_EQ(probeImage(path).height, 70) << name;
    }
}

TEST(ImageFilesDamage, VerifyingComparesTheSize) {
    const TestFolder folder;
    for (const auto& [name, bytes] : goodFiles()) {
        const auto path = writeBytes(folder / name, bytes);
        const Told told = toldBy([&] { verifyImage(path, 70, 19); });
        EXPECT_EQ(told.text, path.string() + ": has 19 x 70 pixels instead of 70 x 19; render it again");
        EXPECT_EQ(told.status, ExitStatus::FrameFailed);
    }
}

TEST(ImageFilesDamage, ThreadsGetTheirOwnMessages) {
    const TestFolder folder;
    const SilentScope silent;
    std::vector<std::filesystem::path> good, bad;
    for (const auto& [name, bytes] : goodFiles()) {
        good.push_back(writeBytes(folder / name, bytes));
        bad.push_back(writeBytes(folder / ("cut" + name), bytes.substr(0, bytes.size() - 40)));
    }
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                const std::size_t file = static_cast<std::size_t>(round) % good.size();
                EXPECT_EQ(readImage(good[file]).height, 70);
                EXPECT_EQ(toldByReading(bad[file]).text.find(bad[file].string() + ": "), 0u);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
}  // namespace TessavoyHost
