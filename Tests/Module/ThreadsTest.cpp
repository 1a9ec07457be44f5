#include <atomic>
#include <chrono>
#include <iostream>
#include <streambuf>
#include <thread>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using ModuleThreads = ModuleFixture;

using Pictures = std::vector<std::vector<std::byte>>;

constexpr int frameCount = 16;

// All frames, taken by the threads as they come. A frame that went wrong is empty.
Pictures renderAll(EffectInstance& instance, int bits, int threadCount) {
    Pictures pictures(frameCount);
    std::atomic<int> next = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&] {
            for (int frame = next++; frame < frameCount; frame = next++) {
                const FrameResult result = instance.renderFrame({.frame = 6 * frame, .bitsPerChannel = bits});
                if (result.error == PF_Err_NONE && result.broken.empty())
                    pictures[static_cast<std::size_t>(frame)] = bytesOf(result.output);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    return pictures;
}

ModuleScene texturedScene() {
    ModuleScene scene = richScene(64, 48);
    const auto sheet = FakeProject::image(16, 16, [](int x, int y) {
        const auto level = [&](int channel) { return static_cast<std::uint8_t>((64 * y + 4 * x + channel) * 37); };
        return FakeProject::Texel{level(0), level(1), level(2), level(3)};
    });
    scene.layer(1, std::make_shared<FakeProject::StillLayer>("Sheet", sheet));
    scene.set("ShapeType", 2).set("ShapeTextureLayerIndex", 2).set("ShapeFramesAnimationSequence", 1);
    return scene;
}

void expectSameOnAnyNumberOfThreads(EffectInstance& instance, int bits) {
    const Pictures alone = renderAll(instance, bits, 1);
    for (const auto& picture : alone)
        EXPECT_FALSE(picture.empty());
    EXPECT_NE(alone.front(), alone.back());
    for (const int threads : {2, 8}) {
        const Pictures together = renderAll(instance, bits, threads);
        for (int frame = 0; frame < frameCount; ++frame)
            EXPECT_TRUE(together[frame] == alone[frame]) << "frame " << frame << " on " << threads << " threads";
    }
}

TEST_F(ModuleThreads, GiveTheSameBytesAsOneThread) {
    for (const ModuleScene& scene : {richScene(64, 48), richCameraScene(64, 48), texturedScene()}) {
        const auto instance = instanceOf(scene);
        for (const int bits : {8, 32})
            expectSameOnAnyNumberOfThreads(*instance, bits);
    }
}

TEST_F(ModuleThreads, MayRenderSeveralInstancesAtOnce) {
    const auto first = instanceOf(richScene(64, 48)), second = instanceOf(richCameraScene(48, 64));
    const Pictures firstAlone = renderAll(*first, 8, 1), secondAlone = renderAll(*second, 8, 1);
    Pictures firstTogether, secondTogether;
    std::thread other([&] { secondTogether = renderAll(*second, 8, 3); });
    firstTogether = renderAll(*first, 8, 3);
    other.join();
    EXPECT_TRUE(firstTogether == firstAlone);
    EXPECT_TRUE(secondTogether == secondAlone);
}

#ifndef _WIN32  // where the module has a standard output stream of its own

/// A stream buffer that stands the writes of one thread only, as most do, and tells whether two met in it.
class OneWriterBuffer : public std::streambuf {
public:
    bool writersMet() const { return mMet; }
    int writes() const { return mWrites; }

protected:
    std::streamsize xsputn(const char*, std::streamsize size) override {
        if (mInside++ > 0)
            mMet = true;
        ++mWrites;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // so that a second writer would come in
        --mInside;
        return size;
    }

private:
    std::atomic<int> mInside = 0, mWrites = 0;
    std::atomic<bool> mMet = false;
};

// A host may have put a stream buffer of its own behind the standard output stream.
TEST_F(ModuleThreads, DescribeTheirContextsOneAfterTheOther) {
    const auto instance = instanceOf(fourSquaresScene());
    OneWriterBuffer buffer;
    std::streambuf* const previous = std::cout.rdbuf(&buffer);
    renderAll(*instance, 8, 8);
    std::cout.rdbuf(previous);
    EXPECT_GE(buffer.writes(), 2);
    EXPECT_FALSE(buffer.writersMet());
}

// Each thread that renders gets a context of its own, which lasts until the set-down.
TEST_F(ModuleThreads, MakeOneContextEach) {
    const auto instance = instanceOf(fourSquaresScene());
    const auto contexts = [this] {
        const std::string text = quiet.text();
        int count = 0;
        for (std::size_t at = text.find("OpenGL Version:  "); at != std::string::npos;
             at = text.find("OpenGL Version:  ", at + 1))
            ++count;
        return count;
    };
    EXPECT_EQ(contexts(), 1);  // the common one
    instance->renderFrame({});
    instance->renderFrame({});
    EXPECT_EQ(contexts(), 2);
    for (int expected = 3; expected < 6; ++expected) {
        std::thread([&] {
            expectGood(instance->renderFrame({}));
            expectGood(instance->renderFrame({}));
        }).join();
        EXPECT_EQ(contexts(), expected);
    }
}

#endif

}  // namespace
}  // namespace TessavoyHost
