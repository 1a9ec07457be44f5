#include "Host/Command/Libraries.h"

// jpeglib.h uses std::size_t and FILE without including their headers.
#include <cstddef>
#include <cstdio>

#include <OpenEXR/OpenEXRConfig.h>
#ifdef TESSAVOY_PANEL_PICTURES
#include <cairo.h>
#endif
#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>
#include <CLI/Version.hpp>
#include <nlohmann/json.hpp>

namespace TessavoyHost {
namespace {

#define TESSAVOY_TEXT_OF(value) #value
#define TESSAVOY_EXPANDED_TEXT_OF(value) TESSAVOY_TEXT_OF(value)

std::string jpegVersion() {
#ifdef LIBJPEG_TURBO_VERSION
    return TESSAVOY_EXPANDED_TEXT_OF(LIBJPEG_TURBO_VERSION);
#else
    return std::to_string(JPEG_LIB_VERSION);
#endif
}

std::string jsonVersion() {
    return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + '.' + std::to_string(NLOHMANN_JSON_VERSION_MINOR) + '.' +
           std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

// "LIBTIFF, Version 4.5.0\nCopyright ..."
std::string tiffVersion() {
    const std::string text = TIFFGetVersion();
    const std::string line = text.substr(0, text.find('\n'));
    const auto space = line.rfind(' ');
    return space == std::string::npos ? line : line.substr(space + 1);
}

}  // namespace

std::vector<std::pair<std::string, std::string>> linkedLibraries() {
    std::vector<std::pair<std::string, std::string>> libraries = {
        {"nlohmann json", jsonVersion()}, {"CLI11", CLI11_VERSION},   {"libpng", png_get_libpng_ver(nullptr)},
        {"libjpeg", jpegVersion()},       {"libtiff", tiffVersion()}, {"OpenEXR", OPENEXR_VERSION_STRING}};
#ifdef TESSAVOY_PANEL_PICTURES
    libraries.emplace_back("cairo", cairo_version_string());
#endif
    return libraries;
}

}  // namespace TessavoyHost
