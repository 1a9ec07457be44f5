#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <random>

namespace TessavoyHost {

TestFolder::TestFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ImageFilesTest-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder for the test's files");
    mPath = name;
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

int TestFolder::fileCount() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(mPath), {}));
}

std::string readBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::filesystem::path writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

TestWorld<std::uint8_t> noiseWorld(int width, int height) {
    std::mt19937 random(20240229);
    std::vector<std::uint8_t> argb(static_cast<std::size_t>(width * height * 4));
    for (std::uint8_t& sample : argb)
        sample = static_cast<std::uint8_t>(random() >> 24);
    return {width, height, argb};
}

}  // namespace TessavoyHost
