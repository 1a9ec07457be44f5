#include "Host/Command/Libraries.h"

#ifdef TESSAVOY_IMAGE_LIBRARIES
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
#endif
#include <CLI/Version.hpp>
#include <nlohmann/json.hpp>

namespace TessavoyHost {
namespace {

std::string jsonVersion() {
    return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + '.' + std::to_string(NLOHMANN_JSON_VERSION_MINOR) + '.' +
           std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

#ifdef TESSAVOY_IMAGE_LIBRARIES

#define TESSAVOY_TEXT_OF(value) #value
#define TESSAVOY_EXPANDED_TEXT_OF(value) TESSAVOY_TEXT_OF(value)

std::string jpegVersion() {
#ifdef LIBJPEG_TURBO_VERSION
    return TESSAVOY_EXPANDED_TEXT_OF(LIBJPEG_TURBO_VERSION);
#else
    return std::to_string(JPEG_LIB_VERSION);
#endif
}

// "LIBTIFF, Version 4.5.0\nCopyright ..."
std::string tiffVersion() {
    const std::string text = TIFFGetVersion();
    const std::string line = text.substr(0, text.find('\n'));
    const auto space = line.rfind(' ');
    return space == std::string::npos ? line : line.substr(space + 1);
}

#endif

}  // namespace

std::vector<std::pair<std::string, std::string>> linkedLibraries() {
    std::vector<std::pair<std::string, std::string>> libraries{{"nlohmann json", jsonVersion()},
                                                               {"CLI11", CLI11_VERSION}};
#ifdef TESSAVOY_IMAGE_LIBRARIES
    libraries.insert(libraries.end(), {{"libpng", png_get_libpng_ver(nullptr)},
                                       {"libjpeg", jpegVersion()},
                                       {"libtiff", tiffVersion()},
                                       {"OpenEXR", OPENEXR_VERSION_STRING}});
#endif
#ifdef TESSAVOY_PANEL_PICTURES
    libraries.emplace_back("cairo", cairo_version_string());
#endif
    return libraries;
}

}  // namespace TessavoyHost
