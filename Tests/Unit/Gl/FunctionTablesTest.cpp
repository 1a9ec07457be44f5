#include "Source/Gl/FunctionTables.h"

#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/StateRestorer.h"
#include "Source/Gl/ThreadRenderData.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/Binding.h>
#include <glbinding/gl33core/gl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <thread>
#include <vector>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using glbinding::CallbackMask;

/// Handles that no context has: the addresses of objects that stay for good.
std::intptr_t inventedHandle() {
    static std::deque<char> names;
    return reinterpret_cast<std::intptr_t>(&names.emplace_back());
}

TEST(FunctionTables, everyContextHasATableOfItsOwnAcrossSeveralBlocks) {
    constexpr std::size_t contextCount = 150;  // more than two blocks hold
    const FunctionTableUse use;
    std::vector<std::intptr_t> handles(contextCount);
    for (std::intptr_t& handle : handles) {
        handle = inventedHandle();
        useFunctionTable(handle);
        EXPECT_EQ(glbinding::Binding::Clear.callbackMask(), CallbackMask::None);
        glbinding::Binding::Clear.setCallbackMask(CallbackMask::Parameters);
    }
    for (const std::intptr_t handle : handles) {
        useFunctionTable(handle);
        EXPECT_EQ(glbinding::Binding::Clear.callbackMask(), CallbackMask::Parameters);
        glbinding::Binding::Clear.setCallbackMask(CallbackMask::None);
    }
}

// Far more contexts than a block has tables for, one after the other: each takes the one that the last gave back.
TEST(FunctionTables, aTableThatWasGivenBackServesTheNextContext) {
    const FunctionTableUse use;
    const std::intptr_t first = inventedHandle();
    useFunctionTable(first);
    glbinding::Binding::Clear.setCallbackMask(CallbackMask::Parameters);
    giveFunctionTableBack(first);
    for (int i = 0; i < 1000; ++i) {
        const std::intptr_t later = inventedHandle();
        useFunctionTable(later);
        ASSERT_EQ(glbinding::Binding::Clear.callbackMask(), CallbackMask::Parameters);
        giveFunctionTableBack(later);
    }
    glbinding::Binding::Clear.setCallbackMask(CallbackMask::None);
}

TEST(FunctionTables, aTableIsGivenBackOnce) {
    const FunctionTableUse use;
    const std::intptr_t ended = inventedHandle();
    giveFunctionTableBack(ended);  // which has none yet
    useFunctionTable(ended);
    giveFunctionTableBack(ended);
    giveFunctionTableBack(ended);
    useFunctionTable(inventedHandle());
    glbinding::Binding::Clear.setCallbackMask(CallbackMask::Parameters);
    useFunctionTable(inventedHandle());
    EXPECT_EQ(glbinding::Binding::Clear.callbackMask(), CallbackMask::None);
}

TEST(FunctionTables, entryPointsAreResolvedAtTheirFirstCall) {
    const Testing::QuietOutput quiet;
    const StateRestorer restorer;
    AESDK_OpenGL_EffectCommonData data;
    data.SetUpContext(nullptr);
    useFunctionTable(inventedHandle());
    EXPECT_FALSE(glbinding::Binding::IsSampler.isResolved());
    gl::glIsSampler(1);
    EXPECT_TRUE(glbinding::Binding::IsSampler.isResolved());
}

TEST(FunctionTables, usesNest) {
    const FunctionTableUse outer;
    const FunctionTableUse inner;
    for (int i = 0; i < 70; ++i) {  // a block is added meanwhile
        useFunctionTable(inventedHandle());
    }
}

TEST(FunctionTables, blocksAreAddedWhileOtherThreadsDraw) {
    const Testing::QuietOutput quiet;
    setUpCommonContext();
    constexpr int drawerCount = 3;
    constexpr int newcomerCount = 80;
    std::atomic<bool> done = false;
    std::atomic<int> frames = 0;
    std::atomic<int> wrongSizes = 0;
    std::vector<std::thread> drawers;
    for (int i = 0; i < drawerCount; ++i) {
        drawers.emplace_back([&] {
            while (!done) {
                const StateRestorer restorer;
                const auto data = prepareThreadRenderData();
                PrepareRenderTargets(*data, 4, 4, false);
                gl::GLint viewport[4] = {};
                setViewport(3, 2);
                gl::glGetIntegerv(gl::GL_VIEWPORT, viewport);
                wrongSizes += viewport[2] == 3 && viewport[3] == 2 ? 0 : 1;
                ++frames;
            }
        });
    }
    for (int i = 0; i < newcomerCount; ++i) {
        std::thread([] {
            const StateRestorer restorer;
            useFunctionTable(inventedHandle());
            const auto data = prepareThreadRenderData();
            AESDK_OpenGL::setViewport(1, 1);
            EXPECT_TRUE(Testing::takeGlErrors().empty());
        }).join();
    }
    done = true;
    for (std::thread& thread : drawers) {
        thread.join();
    }
    EXPECT_GT(frames, 0);
    EXPECT_EQ(wrongSizes, 0);
    EXPECT_EQ(setDownContexts(), 0);
}

}  // namespace
}  // namespace Tessavoy
