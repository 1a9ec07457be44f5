#include "Source/Gl/ThreadRenderData.h"

#include "Source/Gl/Fault.h"
#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/StateRestorer.h"
#include "Tests/Support/ApplicationContext.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

#include <atomic>
#include <barrier>
#include <set>
#include <thread>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using Testing::ApplicationContext;
using Testing::QuietOutput;

template <class Work>
void onThread(Work work) {
    std::thread(work).join();
}

std::uint32_t faultOfPreparing() {
    try {
        prepareThreadRenderData();
    } catch (const AESDK_OpenGL_Fault& fault) {
        return fault.code();
    }
    return 0;
}

class ThreadRenderDataTest : public ::testing::Test {
protected:
    void SetUp() override { setUpCommonContext(); }
    void TearDown() override { EXPECT_EQ(setDownContexts(), 0); }

    QuietOutput mOutput;
};

TEST_F(ThreadRenderDataTest, aFreshObjectHasNoContextAndNoObjects) {
    onThread([] {
        const auto data = GetThreadRenderData();
        EXPECT_FALSE(data->initialised);
        EXPECT_TRUE(data->extensions.empty());
        EXPECT_EQ(data->maxTextureSize, 0);
        EXPECT_EQ(data->fboId | data->sceneTexture | data->shapeProgram | data->instanceVao | data->quadVao, 0U);
        EXPECT_EQ(currentContext().context, nullptr);
    });
}

TEST_F(ThreadRenderDataTest, aThreadThatRendersAgainGetsTheSameObjectAndContext) {
    onThread([] {
        const AESDK_OpenGL_EffectRenderData* first = nullptr;
        void* context = nullptr;
        for (int render = 0; render < 3; ++render) {
            const StateRestorer restorer;
            const auto data = prepareThreadRenderData();
            if (render == 0) {
                first = data.get();
                context = currentContext().context;
            }
            EXPECT_EQ(data.get(), first);
            EXPECT_EQ(currentContext().context, context);
            EXPECT_TRUE(data->initialised);
        }
    });
}

TEST_F(ThreadRenderDataTest, theContextIsOfVersionThreePointThreeAtLeastAndItsLimitsAreRead) {
    onThread([] {
        const StateRestorer restorer;
        const auto data = prepareThreadRenderData();
        gl::GLint major = 0;
        gl::GLint minor = 0;
        gl::GLint size = 0;
        gl::GLint layers = 0;
        gl::glGetIntegerv(gl::GL_MAJOR_VERSION, &major);
        gl::glGetIntegerv(gl::GL_MINOR_VERSION, &minor);
        gl::glGetIntegerv(gl::GL_MAX_TEXTURE_SIZE, &size);
        gl::glGetIntegerv(gl::GL_MAX_ARRAY_TEXTURE_LAYERS, &layers);
        EXPECT_GE(major * 10 + minor, 33);
        EXPECT_EQ(data->maxTextureSize, size);
        EXPECT_EQ(data->maxArrayTextureLayers, layers);
        EXPECT_GE(size, 1024);  // what version 3.3 promises at least
        EXPECT_GE(layers, 256);
        EXPECT_FALSE(data->extensions.empty());
    });
}

TEST_F(ThreadRenderDataTest, threadsThatStartAtOnceGetTheirOwnContextsAndIds) {
    constexpr int threadCount = 8;
    std::barrier start(threadCount);
    std::mutex mutex;
    std::set<void*> contexts;
    std::set<std::int32_t> ids;
    std::set<const void*> objects;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            const StateRestorer restorer;
            const auto data = prepareThreadRenderData();
            PrepareRenderTargets(*data, 16, 16, false);
            AttachTarget(*data, data->outputTexture);
            const std::lock_guard lock(mutex);
            contexts.insert(currentContext().context);
            ids.insert(renderThreadId());
            objects.insert(data.get());
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(contexts.size(), 8U);
    EXPECT_EQ(objects.size(), 8U);
    EXPECT_EQ(ids.size(), 8U);
    EXPECT_EQ(*ids.rbegin() - *ids.begin(), 7);  // dense
}

TEST_F(ThreadRenderDataTest, contextsShareTheirObjects) {
    std::uint32_t texture = 0;
    onThread([&texture] {
        const StateRestorer restorer;
        const auto data = prepareThreadRenderData();
        PrepareRenderTargets(*data, 4, 4, false);
        gl::glFinish();
        texture = data->sceneTexture;
    });
    onThread([texture] {
        const StateRestorer restorer;
        prepareThreadRenderData();
        EXPECT_EQ(gl::glIsTexture(texture), gl::GL_TRUE);
    });
}

TEST_F(ThreadRenderDataTest, anIdIsMinusOneBeforeTheFirstLookUpAndIsNeverGivenAgain) {
    std::set<std::int32_t> ids;
    for (int i = 0; i < 5; ++i) {
        onThread([&] {
            EXPECT_EQ(renderThreadId(), -1);
            GetThreadRenderData();
            EXPECT_TRUE(ids.insert(renderThreadId()).second);
        });
    }
}

TEST_F(ThreadRenderDataTest, aThreadKeepsItsIdWhenTheMapWasEmptied) {
    onThread([] {
        const StateRestorer restorer;
        prepareThreadRenderData();
        const std::int32_t id = renderThreadId();
        restoreContext({});
        EXPECT_EQ(setDownContexts(), 0);
        setUpCommonContext();
        const auto data = GetThreadRenderData();
        EXPECT_EQ(renderThreadId(), id);
        EXPECT_FALSE(data->initialised);
    });
}

TEST_F(ThreadRenderDataTest, eachContextIsDescribedOnce) {
    onThread([] {
        const StateRestorer restorer;
        prepareThreadRenderData();
        prepareThreadRenderData();
    });
    // Two contexts: the common one and the thread's. Both begin and end with an empty line.
    const std::string text = mOutput.text();
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), 12U);
    for (const std::size_t first : {0U, 6U}) {
        EXPECT_EQ(lines[first], "");
        EXPECT_TRUE(lines[first + 1].starts_with("OpenGL Version:  ")) << lines[first + 1];
        EXPECT_TRUE(lines[first + 2].starts_with("OpenGL Vendor:   ")) << lines[first + 2];
        EXPECT_TRUE(lines[first + 3].starts_with("OpenGL Renderer: ")) << lines[first + 3];
        EXPECT_TRUE(lines[first + 4].starts_with("OpenGL Revision: ")) << lines[first + 4];
        EXPECT_TRUE(lines[first + 4].ends_with(" (gl.xml)")) << lines[first + 4];
        EXPECT_EQ(lines[first + 5], "");
    }
    EXPECT_TRUE(text.ends_with("(gl.xml)\n\n"));
}

TEST_F(ThreadRenderDataTest, aSetDownDeletesEveryObject) {
    onThread([] {
        {
            const StateRestorer restorer;
            const auto data = prepareThreadRenderData();
            PrepareRenderTargets(*data, 8, 8, true);
            EnsureInstanceBuffers(*data, 4, 28, 6, 4);
            EXPECT_GE(Testing::liveObjects(), 17);
        }
        const StateRestorer restorer;
        // A second context of the share group sees what is left of the first.
        AESDK_OpenGL_EffectCommonData common;
        common.SetUpContext(nullptr);
        AESDK_OpenGL_EffectRenderData shared;
        {
            AESDK_OpenGL_EffectRenderData doomed;
            doomed.SetUpContext(&common);
            PrepareRenderTargets(doomed, 8, 8, true);
            EnsureInstanceBuffers(doomed, 4, 28, 6, 4);
        }
        shared.SetUpContext(&common);
        EXPECT_EQ(Testing::liveObjects(), 0);
    });
}

TEST_F(ThreadRenderDataTest, aSetDownInTheMiddleOfARenderLeavesThatRenderItsObject) {
    onThread([] {
        const StateRestorer restorer;
        const auto data = prepareThreadRenderData();
        EXPECT_EQ(setDownContexts(), 0);
        PrepareRenderTargets(*data, 4, 4, false);
        AttachTarget(*data, data->sceneTexture);
        EXPECT_TRUE(Testing::takeGlErrors().empty());
    });
    setUpCommonContext();
}

TEST_F(ThreadRenderDataTest, setDownRunsOnAThreadOfItsOwnAndLeavesTheCallersContextAlone) {
    AESDK_OpenGL_EffectCommonData own;
    const StateRestorer restorer;
    own.SetUpContext(nullptr);
    const CurrentContext before = currentContext();
    EXPECT_EQ(setDownContexts(), 0);
    EXPECT_EQ(currentContext(), before);
    setUpCommonContext();
    EXPECT_EQ(currentContext(), before);
}

TEST(ThreadRenderData, withoutACommonContextARenderFailsWithFaultOneAndSucceedsAfterASetUp) {
    const QuietOutput quiet;
    onThread([] {
        const StateRestorer restorer;
        EXPECT_EQ(faultOfPreparing(), 1U);
        EXPECT_FALSE(GetThreadRenderData()->initialised);
        setUpCommonContext();
        EXPECT_EQ(faultOfPreparing(), 0U);
        EXPECT_TRUE(GetThreadRenderData()->initialised);
    });
    EXPECT_EQ(setDownContexts(), 0);
    EXPECT_EQ(setDownContexts(), 0);  // nothing left to drop
}

TEST(EffectCommonData, sharingWithAnObjectThatHasNoContextIsFaultOne) {
    AESDK_OpenGL_EffectCommonData empty;
    AESDK_OpenGL_EffectRenderData data;
    try {
        data.SetUpContext(&empty);
        FAIL() << "no fault";
    } catch (const AESDK_OpenGL_Fault& fault) {
        EXPECT_EQ(fault.code(), 1U);
    }
}

TEST(EffectCommonData, withoutAContextNothingCanBeMadeCurrent) {
    AESDK_OpenGL_EffectCommonData empty;
    EXPECT_THROW(empty.MakeContextCurrent(), AESDK_OpenGL_Fault);
}

TEST_F(ThreadRenderDataTest, anotherCurrentContextIsBackAfterARender) {
    onThread([] {
        const ApplicationContext application;
        {
            const StateRestorer restorer;
            prepareThreadRenderData();
            EXPECT_NE(currentContext().context, nullptr);
            EXPECT_EQ(currentContext().drawSurface, nullptr);
        }
        application.expectCurrent();
    });
}

TEST_F(ThreadRenderDataTest, anotherCurrentContextIsBackAfterAFailedRender) {
    onThread([] {
        const ApplicationContext application;
        try {
            const StateRestorer restorer;
            const auto data = prepareThreadRenderData();
            AttachTarget(*data, 0);
            FAIL() << "a framebuffer without a texture is not complete";
        } catch (const AESDK_OpenGL_Fault& fault) {
            EXPECT_EQ(fault.code(), 3U);
        }
        application.expectCurrent();
    });
}

TEST_F(ThreadRenderDataTest, anotherCurrentContextSurvivesSetUpAndSetDown) {
    onThread([] {
        const ApplicationContext application;
        EXPECT_EQ(setDownContexts(), 0);
        application.expectCurrent();
        setUpCommonContext();
        application.expectCurrent();
    });
}

TEST_F(ThreadRenderDataTest, noCurrentContextIsNoneAgainAfterARender) {
    onThread([] {
        const CurrentContext before = currentContext();
        ASSERT_EQ(before.context, nullptr);
        {
            const StateRestorer restorer;
            prepareThreadRenderData();
            EXPECT_NE(currentContext().context, nullptr);
        }
        EXPECT_EQ(currentContext(), before);
    });
}

TEST_F(ThreadRenderDataTest, theCommonContextIsNotLeftCurrent) {
    EXPECT_EQ(currentContext().context, nullptr);
}

}  // namespace
}  // namespace Tessavoy
