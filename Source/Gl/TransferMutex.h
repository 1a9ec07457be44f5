#pragma once

#include <mutex>

namespace Tessavoy::AESDK_OpenGL {

/// Held round each single GL call that moves pixels between the effect and the GL (glTexImage2D, glTexSubImage2D,
/// glTexSubImage3D, glReadPixels), in all threads, and never longer.
inline std::mutex ImageTransferMutex;

}  // namespace Tessavoy::AESDK_OpenGL
