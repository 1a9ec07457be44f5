#include "Source/Gl/ThreadRenderData.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/Fault.h"
#include "Source/Gl/StateRestorer.h"

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

namespace Tessavoy::AESDK_OpenGL {

namespace {

using RenderDataMap = std::map<std::int32_t, std::shared_ptr<AESDK_OpenGL_EffectRenderData>>;

/// What all threads share. The render data mutex guards the map alone; the common data changes only at global set-up
/// and set-down, when no render begins.
struct SharedState {
    std::mutex RenderDataMutex;
    RenderDataMap renderData;
    std::shared_ptr<AESDK_OpenGL_EffectCommonData> commonData;
    AESDK_OpenGL_EffectCommonData* common = nullptr;
};

/// Never destroyed: without a set-down its contexts end with the process, and the platform's OpenGL may be gone by the
/// time the exit handlers run.
SharedState& shared() {
    static SharedState& instance = *new SharedState;
    return instance;
}

std::atomic<std::int32_t> nextRenderThreadId = 0;
thread_local std::int32_t RenderThreadId = -1;

void dropContexts() {
    const StateRestorer restorer;
    SharedState& state = shared();
    {
        const std::lock_guard lock(state.RenderDataMutex);
        state.renderData.clear();
    }
    state.common = nullptr;
    state.commonData.reset();
}

}  // namespace

void setUpCommonContext() {
    const StateRestorer restorer;
    SharedState& state = shared();
    state.commonData = std::make_shared<AESDK_OpenGL_EffectCommonData>();
    state.common = state.commonData.get();
    state.common->SetUpContext(nullptr);
}

PF_Err setDownContexts() noexcept {
    PF_Err error = PF_Err_NONE;
    const auto work = [&error] {
        try {
            dropContexts();
        } catch (PF_Err thrown) {
            error = thrown;
        } catch (...) {
            error = PF_Err_OUT_OF_MEMORY;
        }
    };
    std::thread(work).join();
    return error;
}

std::shared_ptr<AESDK_OpenGL_EffectRenderData> GetThreadRenderData() {
    SharedState& state = shared();
    const std::lock_guard lock(state.RenderDataMutex);
    if (RenderThreadId < 0) {
        RenderThreadId = nextRenderThreadId++;
    }
    auto& entry = state.renderData[RenderThreadId];
    if (entry == nullptr) {
        entry = std::make_shared<AESDK_OpenGL_EffectRenderData>();
    }
    return entry;
}

std::shared_ptr<AESDK_OpenGL_EffectRenderData> prepareThreadRenderData() {
    auto renderData = GetThreadRenderData();
    if (!renderData->initialised) {
        if (shared().common == nullptr) {
            throw AESDK_OpenGL_Fault(faultContext);
        }
        renderData->SetUpContext(shared().common);
        renderData->initialised = true;
    }
    renderData->MakeContextCurrent();
    return renderData;
}

std::int32_t renderThreadId() {
    return RenderThreadId;
}

}  // namespace Tessavoy::AESDK_OpenGL
