#include "Source/Gl/ShaderSources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;

struct SourceShape {
    const char* name;
    std::string_view text;
    std::size_t length;
    long lineBreaks;
    std::uint64_t digest;
    std::string_view end;
};

constexpr SourceShape shapes[] = {
    {"instance vertex", instanceVertexSource, 374, 18, 0xa4f03cbe01d6b065, "    viewSpacePos = Position;\n}\n"},
    {"textured vertex", texturedVertexSource, 340, 18, 0xe5645d9163d7da12, "    viewSpacePos = Position;\n}\n"},
    {"quad vertex", quadVertexSource, 253, 14, 0xcf5580c6c02c3ad0, "\tout_uvs = UVs;\n}\n"},
    {"background vertex", backgroundVertexSource, 110, 8, 0x7fa9f52bbe84a699,
     "    gl_Position = out_pos = Position;\n}\n"},
    {"shape fragment", shapeFragmentSource, 793, 32, 0x9a3db2688b63d9f3, "fogOpacity, fog), 0.0, 1.0);\n    }\n}"},
    {"textured fragment", texturedFragmentSource, 918, 34, 0xc0ffca6d49ce1fe5,
     "fogOpacity, fog), 0.0, 1.0);\n    }\n}"},
    {"shape Z fragment", shapeZFragmentSource, 439, 23, 0xd6b057218af38e99,
     "    colourOut.a = mix(1.0, out_col.a, zAlpha);\n}"},
    {"textured Z fragment", texturedZFragmentSource, 603, 28, 0x0cb1c7ca007ead01,
     "    colourOut.a = mix(1.0, color.a, zAlpha);\n}"},
    {"copy fragment", copyFragmentSource, 151, 9, 0x56bd937e9f40277c,
     "\tcolourOut = texture(inputTexture, out_uvs.xy);\n}\n"},
    {"resolve fragment", resolveFragmentSource, 449, 14, 0x1dcf88c021da93da, "out_uvs.y - px.y))) / 5.f;\n}\n"},
    {"output fragment", outputFragmentSource, 763, 33, 0xebd0033073136372,
     "colourOut / multiplier16bit;\n    \n   \n}\n"},
    {"background fragment", backgroundFragmentSource, 96, 5, 0x9682cc169da3b11b,
     "    colourOut = vec4(0.0, 0.0, 0.0, 1.0);\n}"},
};

/// FNV-1a of 64 bits, by its published constants.
std::uint64_t digestOf(std::string_view text) {
    std::uint64_t digest = 0xcbf29ce484222325;
    for (const char letter : text) {
        digest = (digest ^ static_cast<unsigned char>(letter)) * 0x100000001b3;
    }
    return digest;
}

// The digests are of the texts as they were first given, taken by another program.
TEST(ShaderSources, haveTheirFixedLengthLinesAndEnds) {
    for (const SourceShape& shape : shapes) {
        SCOPED_TRACE(shape.name);
        EXPECT_EQ(shape.text.size(), shape.length);
        EXPECT_EQ(std::count(shape.text.begin(), shape.text.end(), '\n'), shape.lineBreaks);
        EXPECT_EQ(digestOf(shape.text), shape.digest);
        EXPECT_TRUE(shape.text.starts_with("#version 330\n"));
        EXPECT_TRUE(shape.text.ends_with(shape.end));
        EXPECT_EQ(shape.text.find('\r'), std::string_view::npos);
    }
}

TEST(ShaderSources, keepTheirOddities) {
    const auto holds = [](std::string_view text, std::string_view part) { return text.find(part) != text.npos; };
    EXPECT_TRUE(holds(texturedFragmentSource, "texture(inputTexture, out_uv3).gbar * multiplier16bit;;\n"));
    EXPECT_TRUE(holds(texturedZFragmentSource, "texture(inputTexture, out_uv3).gbar * multiplier16bit;\n"));
    EXPECT_TRUE(holds(instanceVertexSource, "    //gl_PointSize = 1.0f;\n\tout_uvs = out_pos.xy / 2.f + 0.5f;\n"));
    EXPECT_TRUE(holds(quadVertexSource, "    //gl_PointSize = 1.0f;\n"));
    EXPECT_TRUE(holds(resolveFragmentSource, "\tcolourOut = (texture(inputTexture, out_uvs.xy) + \n\t\ttexture("));
    EXPECT_TRUE(holds(outputFragmentSource, "\t// colourOut    format: ARGB (blending will not works properly)\n"));
    EXPECT_TRUE(holds(outputFragmentSource, "//    float n = noise(out_uvs);\n"));
    EXPECT_TRUE(holds(outputFragmentSource, "//    colourOut =  vec4(vec3(n), 1.0);\n    \n"));
    EXPECT_TRUE(holds(outputFragmentSource, "clamp(texture(inputTexture, out_uvs.xy), 0, 1.0);\n"));
}

TEST(ShaderSources, shareTheFogText) {
    constexpr std::string_view fog =
        "float getFogFactor()\n{\n    if (viewSpacePos.z>=fogEnd) return 1.0;\n"
        "    if (viewSpacePos.z<=fogStart) return 0.0;\n\n"
        "    return 1.0 - (fogEnd - viewSpacePos.z) / (fogEnd - fogStart);\n}\n";
    EXPECT_NE(std::string_view(shapeFragmentSource).find(fog), std::string_view::npos);
    EXPECT_NE(std::string_view(texturedFragmentSource).find(fog), std::string_view::npos);
}

}  // namespace
}  // namespace Tessavoy
