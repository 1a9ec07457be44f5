#include "Source/Gl/Programs.h"

#include "Source/Gl/ArrayTexture.h"
#include "Source/Gl/Fault.h"
#include "Source/Gl/ShaderSources.h"
#include "Source/Gl/Textures.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

#include <functional>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using enum VertexAttribute;

std::uint32_t faultCode(const std::function<void()>& work) {
    try {
        work();
    } catch (const AESDK_OpenGL_Fault& fault) {
        return fault.code();
    }
    return 0;
}

class ProgramsTest : public Testing::GlTest {};

TEST_F(ProgramsTest, buildsAllEightAndOnlyTheMissingOnesAgain) {
    buildMissingPrograms(renderData());
    std::array<std::uint32_t, 8> names{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = renderData().*programFields[i];
        EXPECT_NE(names[i], 0U);
    }
    glDeleteProgram(renderData().copyProgram);
    renderData().copyProgram = 0;
    buildMissingPrograms(renderData());
    EXPECT_NE(renderData().copyProgram, 0U);
    EXPECT_EQ(renderData().shapeProgram, names[0]);
    EXPECT_EQ(renderData().backgroundProgram, names[7]);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(ProgramsTest, programsHaveTheirAttributesAtTheFixedLocations) {
    buildMissingPrograms(renderData());
    for (const auto program : programFields) {
        EXPECT_EQ(glGetAttribLocation(renderData().*program, "Position"), 0);
    }
    for (const auto program : {renderData().copyProgram, renderData().multisampleResolveProgram}) {
        EXPECT_EQ(glGetAttribLocation(program, "UVs"), 1);
    }
    EXPECT_EQ(glGetAttribLocation(renderData().outputProgram, "UVs"), 1);
    for (const auto program : {renderData().textureProgram, renderData().textureZProgram}) {
        EXPECT_EQ(glGetAttribLocation(program, "UV3"), 2);
        EXPECT_EQ(glGetAttribLocation(program, "Color"), 3);
    }
    EXPECT_EQ(glGetAttribLocation(renderData().shapeProgram, "Color"), 3);
    EXPECT_EQ(glGetAttribLocation(renderData().shapeZProgram, "Color"), 3);
}

TEST_F(ProgramsTest, leavesNoShaderBehind) {
    const std::array attributes = {Position, UVs};
    const int before = Testing::liveObjects();
    const GLuint program = BuildProgram(quadVertexSource, copyFragmentSource, attributes);
    EXPECT_EQ(Testing::liveObjects(), before + 1);
    GLint attached = -1;
    glGetProgramiv(program, GL_ATTACHED_SHADERS, &attached);
    EXPECT_EQ(attached, 0);
    glDeleteProgram(program);
}

TEST_F(ProgramsTest, aSourceThatDoesNotCompileIsFaultSix) {
    const std::array attributes = {Position};
    EXPECT_EQ(faultCode([&] { BuildProgram("#version 330\nnonsense", backgroundFragmentSource, attributes); }), 6U);
    EXPECT_EQ(
        faultCode([&] { BuildProgram(backgroundVertexSource, "#version 330\nvoid main() { x = 1; }", attributes); }),
        6U);
}

TEST_F(ProgramsTest, aProgramThatDoesNotLinkIsFaultSix) {
    constexpr const char* fragment =
        "#version 330\nin vec2 out_pos;\nout vec4 colour;\nvoid main() { colour = vec4(out_pos, out_pos); }\n";
    const std::array attributes = {Position};
    EXPECT_EQ(faultCode([&] { BuildProgram(backgroundVertexSource, fragment, attributes); }), 6U);
}

TEST_F(ProgramsTest, bindsATextureToEitherUnit) {
    buildMissingPrograms(renderData());
    const std::uint32_t texture = makeFloatTexture(2, 2);
    const GLuint program = renderData().shapeProgram;
    glUseProgram(program);
    for (const GLint unit : {1, 0}) {
        BindTextureUniform(program, texture, "fogTexture", unit);
        GLint value = -1;
        glGetUniformiv(program, glGetUniformLocation(program, "fogTexture"), &value);
        EXPECT_EQ(Testing::glState(GL_ACTIVE_TEXTURE), static_cast<GLint>(GL_TEXTURE0) + unit);
        EXPECT_EQ(Testing::glState(GL_TEXTURE_BINDING_2D), static_cast<GLint>(texture));
        EXPECT_EQ(value, unit);
    }
    deleteTexture(texture);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(ProgramsTest, refusesAnInvalidTextureAndOtherUnits) {
    EXPECT_EQ(faultCode([] { BindTextureUniform(1, 0xFFFFFFFF, "inputTexture", 0); }), 6U);
    EXPECT_EQ(faultCode([] { BindTextureUniform(1, 1, "inputTexture", 2); }), 6U);
    EXPECT_EQ(faultCode([] { BindTextureUniform(1, 1, "inputTexture", -1); }), 6U);
}

TEST_F(ProgramsTest, aUniformThatIsNotThereIsLetPass) {
    buildMissingPrograms(renderData());
    glUseProgram(renderData().copyProgram);
    BindTextureUniform(renderData().copyProgram, 0, "noSuchUniform", 0);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(ProgramsTest, theBindOfAnArrayTextureIsRefusedAndLeavesItBoundAsArray) {
    buildMissingPrograms(renderData());
    const std::uint32_t atlas = makeArrayTexture(2, 2, 1);
    glUseProgram(renderData().textureProgram);
    BindTextureUniform(renderData().textureProgram, atlas, "inputTexture", 0);
    EXPECT_EQ(Testing::takeGlErrors(), std::vector{static_cast<std::uint32_t>(GL_INVALID_OPERATION)});
    EXPECT_EQ(Testing::glState(GL_TEXTURE_BINDING_2D_ARRAY), static_cast<GLint>(atlas));
    deleteTexture(atlas);
}

}  // namespace
}  // namespace Tessavoy
