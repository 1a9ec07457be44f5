#include "Source/Gl/Programs.h"

#include "Source/Gl/Fault.h"
#include "Source/Gl/ShaderSources.h"

#include <glbinding/gl33core/gl.h>

#include <array>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

constexpr std::array attributeNames = {"Position", "UVs", "UV3", "Color"};
constexpr GLsizei logCapacity = 4096;

struct ProgramDefinition {
    const char* vertexSource;
    const char* fragmentSource;
    std::span<const VertexAttribute> attributes;
};

using enum VertexAttribute;
constexpr std::array shapeAttributes = {Position, Color};
constexpr std::array textureAttributes = {Position, Color, UV3};
constexpr std::array quadAttributes = {Position, UVs};
constexpr std::array backgroundAttributes = {Position};

/// In the order of programFields.
constexpr std::array<ProgramDefinition, programFields.size()> definitions = {{
    {instanceVertexSource, shapeFragmentSource, shapeAttributes},
    {texturedVertexSource, texturedFragmentSource, textureAttributes},
    {instanceVertexSource, shapeZFragmentSource, shapeAttributes},
    {texturedVertexSource, texturedZFragmentSource, textureAttributes},
    {quadVertexSource, copyFragmentSource, quadAttributes},
    {quadVertexSource, resolveFragmentSource, quadAttributes},
    {quadVertexSource, outputFragmentSource, quadAttributes},
    {backgroundVertexSource, backgroundFragmentSource, backgroundAttributes},
}};

/// The log is fetched for whoever looks with a debugger; it is shown nowhere.
[[noreturn]] void failShader(GLuint shader) {
    std::array<char, logCapacity> log{};
    glGetShaderInfoLog(shader, logCapacity, nullptr, log.data());
    throw AESDK_OpenGL_Fault(faultShader);
}

[[noreturn]] void failProgram(GLuint program) {
    std::array<char, logCapacity> log{};
    glGetProgramInfoLog(program, logCapacity, nullptr, log.data());
    throw AESDK_OpenGL_Fault(faultShader);
}

GLuint compile(GLenum kind, const char* source) {
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == 0) {
        failShader(shader);
    }
    return shader;
}

void link(GLuint program) {
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked == 0) {
        failProgram(program);
    }
}

}  // namespace

std::uint32_t BuildProgram(const char* vertexSource, const char* fragmentSource,
                           std::span<const VertexAttribute> attributes) {
    const GLuint vertexShader = compile(GL_VERTEX_SHADER, vertexSource);
    const GLuint fragmentShader = compile(GL_FRAGMENT_SHADER, fragmentSource);
    const GLuint program = glCreateProgram();
    glAttachShader(program, vertexShader);
    glAttachShader(program, fragmentShader);
    for (const VertexAttribute attribute : attributes) {
        const auto location = static_cast<GLuint>(attribute);
        glBindAttribLocation(program, location, attributeNames[location]);
    }
    link(program);
    for (const GLuint shader : {vertexShader, fragmentShader}) {
        glDetachShader(program, shader);
        glDeleteShader(shader);
    }
    return program;
}

void buildMissingPrograms(AESDK_OpenGL_EffectRenderData& renderData) {
    for (std::size_t i = 0; i < programFields.size(); ++i) {
        std::uint32_t& name = renderData.*programFields[i];
        if (name == 0) {
            const ProgramDefinition& definition = definitions[i];
            name = BuildProgram(definition.vertexSource, definition.fragmentSource, definition.attributes);
        }
    }
}

void BindTextureUniform(std::uint32_t program, std::uint32_t textureName, const char* uniformName, std::int32_t unit) {
    constexpr std::array units = {GL_TEXTURE0, GL_TEXTURE1};
    constexpr std::uint32_t noTexture = 0xFFFFFFFF;
    if (textureName == noTexture || unit < 0 || unit >= static_cast<std::int32_t>(units.size())) {
        throw AESDK_OpenGL_Fault(faultShader);
    }
    glActiveTexture(units[static_cast<std::size_t>(unit)]);
    glBindTexture(GL_TEXTURE_2D, textureName);
    glUniform1i(glGetUniformLocation(program, uniformName), unit);
}

}  // namespace Tessavoy::AESDK_OpenGL
