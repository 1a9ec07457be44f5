#pragma once

#include "HostInterface/Types.h"
#include "Source/Gl/EffectRenderData.h"

#include <cstdint>
#include <memory>

namespace Tessavoy::AESDK_OpenGL {

/// Global set-up: makes the common context. What was current on the thread is current again afterwards, also when this
/// throws AESDK_OpenGL_Fault with code 1.
void setUpCommonContext();

/// Global set-down: on a thread of its own, which is joined before this returns, drops every thread's render data and
/// then the common context. A render that is still at work keeps its own object until its end. Returns the host's error
/// value: a thrown integer as it stands, 4 for anything else. A failure to start or join that thread ends the process.
PF_Err setDownContexts() noexcept;

/// The calling thread's render data, made with a new id on the thread's first call. It may not be initialised yet. Safe
/// on all threads at once.
std::shared_ptr<AESDK_OpenGL_EffectRenderData> GetThreadRenderData();

/// The start of a render: the calling thread's render data, with its context set up on the first call and current on
/// the thread. Called while a StateRestorer lives. Throws AESDK_OpenGL_Fault with code 1 when the context can't be had;
/// the next render of the thread then tries again.
std::shared_ptr<AESDK_OpenGL_EffectRenderData> prepareThreadRenderData();

/// The calling thread's number: small, dense, given by its first GetThreadRenderData, never given to another thread;
/// -1 before that.
std::int32_t renderThreadId();

}  // namespace Tessavoy::AESDK_OpenGL
