#include "Source/Gl/DrawPasses.h"

#include "Source/Gl/Programs.h"
#include "Source/Gl/Textures.h"
#include "Source/Matrix.h"

#include <glbinding/gl33core/gl.h>

#include <algorithm>
#include <array>
#include <span>
#include <vector>

using namespace gl33core;

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// One attribute of a vertex record: so many floats, from a byte on.
struct AttributeField {
    VertexAttribute attribute;
    GLint floats;
    std::uintptr_t byte;
};

using enum VertexAttribute;
constexpr std::array texturedFields = {AttributeField{Position, 3, 0}, AttributeField{Color, 4, 12},
                                       AttributeField{UV3, 3, 28}};
constexpr std::span shapeFields = std::span(texturedFields).first<2>();
constexpr std::array quadFields = {AttributeField{Position, 3, 0}, AttributeField{UVs, 2, 12}};
constexpr std::array backgroundFields = {AttributeField{Position, 3, 0}};

constexpr GLsizei quadStride = 20;
constexpr GLsizei backgroundStride = 12;

void enableArrays(std::span<const AttributeField> fields) {
    for (const AttributeField& field : fields) {
        glEnableVertexAttribArray(static_cast<GLuint>(field.attribute));
    }
}

void setPointers(std::span<const AttributeField> fields, GLsizei stride) {
    for (const AttributeField& field : fields) {
        glVertexAttribPointer(static_cast<GLuint>(field.attribute), field.floats, GL_FLOAT, GL_FALSE, stride,
                              reinterpret_cast<const void*>(field.byte));
    }
}

void disableArrays(std::span<const AttributeField> fields) {
    for (const AttributeField& field : fields) {
        glDisableVertexAttribArray(static_cast<GLuint>(field.attribute));
    }
}

void setFloat(GLuint program, const char* name, double value) {
    glUniform1f(glGetUniformLocation(program, name), static_cast<float>(value));
}

void setInteger(GLuint program, const char* name, GLint value) {
    glUniform1i(glGetUniformLocation(program, name), value);
}

void setMatrix(GLuint program, const Matrix& matrix) {
    glUniformMatrix4fv(glGetUniformLocation(program, "ModelviewProjection"), 1, GL_FALSE, matrix.m.data());
}

/// The colour is multiplied by one of these and the target's by the other; alpha is always laid "over".
void setBlendFactors(GLenum sourceColour, GLenum targetColour) {
    glEnable(GL_BLEND);
    glBlendFuncSeparate(sourceColour, targetColour, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendEquationSeparate(GL_FUNC_ADD, GL_FUNC_ADD);
}

/// Takes a vertex in render pixels to clip space.
Matrix pixelMatrix(std::int32_t width, std::int32_t height) {
    Matrix matrix = Matrix::identity();
    matrix.translate(-1.0F, -1.0F, 0.0F);
    matrix.scale(2.0F / static_cast<float>(width), 2.0F / static_cast<float>(height), 1.0F);
    return matrix;
}

void setFog(GLuint program, const FogState& fog) {
    constexpr double percent = 0.01;
    setInteger(program, "fogEnabled", fog.enabled != 0 ? 1 : 0);
    setFloat(program, "fogColorWeight", fog.colorWeight * percent);
    BindTextureUniform(program, fog.gradientTexture, "fogTexture", 1);
    setFloat(program, "fogOpacity", fog.opacity * percent);
    setFloat(program, "fogStart", fog.start);
    setFloat(program, "fogEnd", fog.end);
}

void setZDepth(GLuint program, const ZDepthState& zDepth) {
    setFloat(program, "zStart", zDepth.start);
    setFloat(program, "zEnd", zDepth.end);
    setFloat(program, "zAlpha", zDepth.alpha != 0 ? 1.0 : 0.0);
    setInteger(program, "zClamp", zDepth.clamp != 0 ? 1 : 0);
}

GLuint instanceProgram(const AESDK_OpenGL_EffectRenderData& renderData, bool textured, bool zDepth) {
    if (zDepth) {
        return textured ? renderData.textureZProgram : renderData.shapeZProgram;
    }
    return textured ? renderData.textureProgram : renderData.shapeProgram;
}

void drawInstanceTriangles(const AESDK_OpenGL_EffectRenderData& renderData, std::span<const AttributeField> fields,
                           std::int32_t vertexStride, std::int32_t indexCount) {
    glBindVertexArray(renderData.instanceVao);
    enableArrays(fields);
    glBindBuffer(GL_ARRAY_BUFFER, renderData.instanceVertexBuffer);
    setPointers(fields, vertexStride);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, renderData.instanceIndexBuffer);
    glDrawElements(GL_TRIANGLES, indexCount, GL_UNSIGNED_INT, nullptr);
    disableArrays(fields);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
}

/// Four vertices as a triangle strip; the vertex array and the buffer are unbound afterwards.
void drawStrip(GLuint vertexArray, GLuint buffer, std::span<const AttributeField> fields, GLsizei stride) {
    glBindVertexArray(vertexArray);
    enableArrays(fields);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    setPointers(fields, stride);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    disableArrays(fields);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindVertexArray(0);
}

void drawQuad(const AESDK_OpenGL_EffectRenderData& renderData) {
    drawStrip(renderData.quadVao, renderData.quadVertexBuffer, quadFields, quadStride);
}

}  // namespace

void scaleDistances(FogState& fog, ZDepthState& zDepth, float downsampleX) {
    fog.end = std::max(fog.start, fog.end);
    for (double* distance : {&fog.start, &fog.end, &zDepth.start, &zDepth.end}) {
        *distance *= downsampleX;
    }
}

void SetBlendMode(std::int32_t mode) {
    if (mode == blendNormal) {
        setBlendFactors(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    } else if (mode == blendAdd) {
        setBlendFactors(GL_SRC_ALPHA, GL_ONE);
    } else if (mode == blendOff) {
        glDisable(GL_BLEND);
    }
}

void drawBackground(const AESDK_OpenGL_EffectRenderData& renderData) {
    constexpr std::array<float, 12> clipCorners = {-1, -1, 0, 1, -1, 0, -1, 1, 0, 1, 1, 0};
    SetBlendMode(blendOff);
    glUseProgram(renderData.backgroundProgram);
    GLuint vertexArray = 0;
    GLuint buffer = 0;
    glGenVertexArrays(1, &vertexArray);
    glGenBuffers(1, &buffer);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, sizeof clipCorners, clipCorners.data(), GL_STATIC_DRAW);
    drawStrip(vertexArray, buffer, backgroundFields, backgroundStride);
    glDeleteBuffers(1, &buffer);
    glDeleteVertexArrays(1, &vertexArray);
    glUseProgram(0);
}

std::uint32_t MakeFogTexture(const FogGradient& gradient) {
    constexpr std::int32_t texelCount = 2048;
    std::vector<float> texels(4 * texelCount);
    for (std::int32_t i = 0; i < texelCount; ++i) {
        gradient(static_cast<float>(i) / static_cast<float>(texelCount - 1), &texels[4 * static_cast<std::size_t>(i)]);
    }
    const std::uint32_t texture = makeFloatTexture(texelCount, 1);
    fillFloatTexture(texture, texelCount, 1, texels.data());
    return texture;
}

void DrawInstanceBatch(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t indexCount,
                       std::int32_t vertexStride, bool textured, std::uint32_t atlasTexture,
                       const BatchSurroundings& surroundings) {
    const bool drawsDepth = surroundings.zDepth.enabled != 0;
    const GLuint program = instanceProgram(renderData, textured, drawsDepth);
    SetBlendMode(surroundings.blendMode);
    glUseProgram(program);
    setMatrix(program, surroundings.viewProjection.projection);
    if (textured) {
        setFloat(program, "multiplier16bit", surroundings.multiplier16bit);
        BindTextureUniform(program, atlasTexture, "inputTexture", 0);
    }
    if (drawsDepth) {
        setZDepth(program, surroundings.zDepth);
    } else {
        setFog(program, surroundings.fog);
    }
    const std::span<const AttributeField> fields =
        textured ? std::span<const AttributeField>(texturedFields) : shapeFields;
    drawInstanceTriangles(renderData, fields, vertexStride, indexCount);
    glUseProgram(0);
    glDisable(GL_BLEND);
}

void DrawFullPicture(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t width, std::int32_t height,
                     std::uint32_t texture, std::int32_t blendMode, bool multisampled) {
    const GLuint program = multisampled ? renderData.multisampleResolveProgram : renderData.copyProgram;
    SetBlendMode(blendMode);
    glUseProgram(program);
    setMatrix(program, pixelMatrix(width, height));
    if (multisampled) {
        glUniform2f(glGetUniformLocation(program, "px"), 0.5F / static_cast<float>(width),
                    0.5F / static_cast<float>(height));
    }
    BindTextureUniform(program, texture, "inputTexture", 0);
    drawQuad(renderData);
    glUseProgram(0);
    glDisable(GL_BLEND);
}

void DrawOutput(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t width, std::int32_t height,
                std::uint32_t texture, float multiplier16bit) {
    const GLuint program = renderData.outputProgram;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendEquation(GL_FUNC_ADD);
    glUseProgram(program);
    setMatrix(program, pixelMatrix(width, height));
    setFloat(program, "multiplier16bit", multiplier16bit);
    BindTextureUniform(program, texture, "inputTexture", 0);
    drawQuad(renderData);
    glUseProgram(0);
}

}  // namespace Tessavoy::AESDK_OpenGL
