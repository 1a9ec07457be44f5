#include "Source/Gl/InstanceBuffers.h"

#include "HostInterface/Types.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

#include <cstring>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;

class InstanceBuffersTest : public Testing::GlTest {
protected:
    static GLint sizeOf(GLenum target, GLuint buffer) {
        GLint size = 0;
        glBindBuffer(target, buffer);
        glGetBufferParameteriv(target, GL_BUFFER_SIZE, &size);
        return size;
    }
};

TEST_F(InstanceBuffersTest, buffersAreTwiceAsLargeAsNeeded) {
    EnsureInstanceBuffers(renderData(), 10, 28, 30, 4);
    EXPECT_EQ(renderData().instanceVertexCapacity, 560);
    EXPECT_EQ(renderData().instanceIndexCapacity, 240);
    EXPECT_EQ(sizeOf(GL_ARRAY_BUFFER, renderData().instanceVertexBuffer), 560);
    EXPECT_EQ(sizeOf(GL_ELEMENT_ARRAY_BUFFER, renderData().instanceIndexBuffer), 240);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(InstanceBuffersTest, whatFitsTwiceOverIsKeptAndOneMoreIsNot) {
    EnsureInstanceBuffers(renderData(), 10, 28, 30, 4);
    const GLuint vertexArray = renderData().instanceVao;
    EnsureInstanceBuffers(renderData(), 7, 40, 20, 4);  // 2 * 7 * 40 = 560
    EXPECT_EQ(renderData().instanceVertexCapacity, 560);
    EXPECT_EQ(renderData().instanceIndexCapacity, 240);
    EnsureInstanceBuffers(renderData(), 11, 28, 6, 4);
    EXPECT_EQ(renderData().instanceVertexCapacity, 616);
    EXPECT_EQ(renderData().instanceIndexCapacity, 48);  // both are made anew, also the one that was large enough
    EXPECT_EQ(sizeOf(GL_ELEMENT_ARRAY_BUFFER, renderData().instanceIndexBuffer), 48);
    EXPECT_EQ(renderData().instanceVao, vertexArray);
}

TEST_F(InstanceBuffersTest, aNeedForMoreIndicesAloneRebuildsBoth) {
    EnsureInstanceBuffers(renderData(), 10, 28, 30, 4);
    EnsureInstanceBuffers(renderData(), 5, 28, 31, 4);
    EXPECT_EQ(renderData().instanceVertexCapacity, 280);
    EXPECT_EQ(renderData().instanceIndexCapacity, 248);
}

TEST_F(InstanceBuffersTest, whatIsWrittenToTheMappedBuffersIsInThem) {
    EnsureInstanceBuffers(renderData(), 2, 28, 3, 4);
    {
        MappedInstanceBuffers buffers(renderData());
        std::memset(buffers.vertices(), 0x11, 112);
        for (std::uint32_t i = 0; i < 6; ++i) {
            buffers.indices()[i] = 100 + i;
        }
        buffers.unmap();
        EXPECT_EQ(Testing::glState(GL_ARRAY_BUFFER_BINDING), 0);
        EXPECT_EQ(Testing::glState(GL_ELEMENT_ARRAY_BUFFER_BINDING), 0);
    }
    std::array<std::uint32_t, 6> indices{};
    std::array<std::uint32_t, 28> words{};
    glBindBuffer(GL_ARRAY_BUFFER, renderData().instanceVertexBuffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof words, words.data());
    glBindBuffer(GL_ARRAY_BUFFER, renderData().instanceIndexBuffer);
    glGetBufferSubData(GL_ARRAY_BUFFER, 0, sizeof indices, indices.data());
    EXPECT_EQ(words.front(), 0x11111111U);
    EXPECT_EQ(words.back(), 0x11111111U);
    EXPECT_EQ(indices, (std::array<std::uint32_t, 6>{100, 101, 102, 103, 104, 105}));
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(InstanceBuffersTest, anExceptionWhileMappedLeavesTheBuffersUsable) {
    EnsureInstanceBuffers(renderData(), 2, 28, 3, 4);
    EXPECT_THROW(
        {
            const MappedInstanceBuffers buffers(renderData());
            throw std::runtime_error("while emitting");
        },
        std::runtime_error);
    MappedInstanceBuffers again(renderData());
    EXPECT_NE(again.vertices(), nullptr);
    EXPECT_NE(again.indices(), nullptr);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(InstanceBuffersTest, aFailedMappingThrows512AndLeavesNoBuffers) {
    EnsureInstanceBuffers(renderData(), 2, 28, 3, 4);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, renderData().instanceIndexBuffer);
    glMapBuffer(GL_ELEMENT_ARRAY_BUFFER, GL_WRITE_ONLY);  // a buffer can be mapped once at a time
    try {
        const MappedInstanceBuffers buffers(renderData());
        FAIL() << "nothing thrown";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 512);
    }
    EXPECT_EQ(renderData().instanceVertexBuffer, 0U);
    EXPECT_EQ(renderData().instanceIndexBuffer, 0U);
    EXPECT_EQ(renderData().instanceVertexCapacity, 0);
    EXPECT_EQ(renderData().instanceIndexCapacity, 0);
    Testing::takeGlErrors();
    EnsureInstanceBuffers(renderData(), 2, 28, 3, 4);
    EXPECT_NE(MappedInstanceBuffers(renderData()).vertices(), nullptr);
}

TEST_F(InstanceBuffersTest, moreThanTwoGibibytesThrows512) {
    try {
        EnsureInstanceBuffers(renderData(), std::int64_t{1} << 26, 28, 6, 4);
        FAIL() << "nothing thrown";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 512);
    }
}

}  // namespace
}  // namespace Tessavoy
