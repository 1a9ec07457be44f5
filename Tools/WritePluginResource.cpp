// Writes the resource that describes the module to the application on Windows, the plug-in property list: a file with
// its bytes, and a resource script that names it. It is made of the constants that the module itself answers with.

#include "Source/Shell/ProductIdentity.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>

namespace {

using namespace Tessavoy;

/// Little-endian, as Windows keeps them; four-character codes are numbers too and so stand reversed in the file.
std::string number(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xFF);
    }
    return text;
}

std::string number32(std::int64_t value) {
    return number(static_cast<std::uint32_t>(value), 4);
}

std::string numbers16(std::initializer_list<std::int64_t> values) {
    std::string text;
    for (const std::int64_t value : values) {
        text += number(static_cast<std::uint32_t>(value), 2);
    }
    return text;
}

std::string code(std::string_view letters) {
    return {letters.rbegin(), letters.rend()};
}

std::string pascal(std::string_view text) {
    return static_cast<char>(text.size()) + std::string(text);
}

/// The length is that of the data alone; the next property begins at a multiple of four bytes.
std::string property(std::string_view key, const std::string& data) {
    const std::size_t padding = (4 - data.size() % 4) % 4;
    return code("8BIM") + code(key) + number32(0) + number32(static_cast<std::int64_t>(data.size())) + data +
           std::string(padding, '\0');
}

std::string propertyList() {
    constexpr std::int64_t listVersionMajor = 2;
    constexpr std::int64_t listVersionMinor = 0;
    const std::initializer_list<std::string> properties = {
        property("kind", number32(ProductIdentity::kind)),
        property("name", pascal(ProductIdentity::name)),
        property("catg", pascal(ProductIdentity::category)),
        property("8664", ProductIdentity::entryPoint + std::string(1, '\0')),
        property("ePVR", numbers16({listVersionMajor, listVersionMinor})),
        property("eSVR", numbers16({ProductIdentity::apiVersionMajor, ProductIdentity::apiVersionMinor})),
        property("eVER", number32(ProductIdentity::version)),
        property("eINF", numbers16({0})),
        property("eGLO", number32(ProductIdentity::outFlags)),
        property("eGL2", number32(ProductIdentity::outFlags2)),
        property("eMNA", pascal(ProductIdentity::matchName)),
        property("aeFL", number32(ProductIdentity::reservedInfo)),
    };
    std::string list = numbers16({1}) + number32(0) + number32(static_cast<std::int64_t>(properties.size()));
    for (const std::string& one : properties) {
        list += one;
    }
    return list;
}

bool write(const std::string& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    stream.close();
    return static_cast<bool>(stream);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s FILE.bin FILE.rc\n", argv[0]);
        return EXIT_FAILURE;
    }
    const std::string script = "16000 PiPL \"" + std::string(argv[1]) + "\"\n";
    if (!write(argv[1], propertyList()) || !write(argv[2], script)) {
        std::fprintf(stderr, "%s or %s can't be written\n", argv[1], argv[2]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
