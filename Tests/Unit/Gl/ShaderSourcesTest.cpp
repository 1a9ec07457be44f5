#include "Source/Gl/ShaderSources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;

struct SourceShape {
    const char* name;
    std::string_view text;
    std::size_t length;
    long lineBreaks;
    std::string_view end;
};

constexpr SourceShape shapes[] = {
    {"instance vertex", instanceVertexSource, 374, 18, "    viewSpacePos = Position;\n}\n"},
    {"textured vertex", texturedVertexSource, 340, 18, "    viewSpacePos = Position;\n}\n"},
    {"quad vertex", quadVertexSource, 253, 14, "\tout_uvs = UVs;\n}\n"},
    {"background vertex", backgroundVertexSource, 110, 8, "    gl_Position = out_pos = Position;\n}\n"},
    {"shape fragment", shapeFragmentSource, 793, 32, "fogOpacity, fog), 0.0, 1.0);\n    }\n}"},
    {"textured fragment", texturedFragmentSource, 918, 34, "fogOpacity, fog), 0.0, 1.0);\n    }\n}"},
    {"shape Z fragment", shapeZFragmentSource, 439, 23, "    colourOut.a = mix(1.0, out_col.a, zAlpha);\n}"},
    {"textured Z fragment", texturedZFragmentSource, 603, 28, "    colourOut.a = mix(1.0, color.a, zAlpha);\n}"},
    {"copy fragment", copyFragmentSource, 151, 9, "\tcolourOut = texture(inputTexture, out_uvs.xy);\n}\n"},
    {"resolve fragment", resolveFragmentSource, 449, 14, "out_uvs.y - px.y))) / 5.f;\n}\n"},
    {"output fragment", outputFragmentSource, 763, 33, "colourOut / multiplier16bit;\n    \n   \n}\n"},
    {"background fragment", backgroundFragmentSource, 96, 5, "    colourOut = vec4(0.0, 0.0, 0.0, 1.0);\n}"},
};

TEST(ShaderSources, haveTheirFixedLengthLinesAndEnds) {
    for (const SourceShape& shape : shapes) {
        SCOPED_TRACE(shape.name);
        EXPECT_EQ(shape.text.size(), shape.length);
        EXPECT_EQ(std::count(shape.text.begin(), shape.text.end(), '\n'), shape.lineBreaks);
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
