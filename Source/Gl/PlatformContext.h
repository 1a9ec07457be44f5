#pragma once

#include <cstdint>
#include <memory>

namespace Tessavoy::AESDK_OpenGL {

/// An off-screen OpenGL context as the platform gives it, without a default framebuffer that anyone draws into: version
/// 3.3 at least, but for the common one, which may be older since nothing is drawn in it. It owns what the platform
/// needs beside it, such as a window. One source file per platform implements what is declared here.
///
/// It may be destroyed on another thread than the one that made it.
class PlatformContext {
public:
    /// Takes the calling thread's context away, whichever it is, and deletes this one. Failures are ignored.
    virtual ~PlatformContext() = default;

    /// Makes the context current on the calling thread; false when the platform refuses, as it does while the context
    /// is current on another thread.
    virtual bool makeCurrent() noexcept = 0;

    /// The platform's own handle of the context, which is also the key under which glbinding knows it.
    virtual std::intptr_t handle() const noexcept = 0;
};

/// Creates a context and leaves it current on the calling thread. Without a common context it becomes the common one;
/// with one given, which is current on no other thread, it shares that one's objects. Throws AESDK_OpenGL_Fault with
/// code 1 when any step fails; nothing is left behind then, and what is current is undefined.
std::unique_ptr<PlatformContext> createPlatformContext(const PlatformContext* common);

/// What is current on one thread, in the platform's own handles; all null when nothing is. What a platform has no name
/// for stays null; where a context is made current with a device context, that is the draw surface.
struct CurrentContext {
    std::uint32_t api = 0;  ///< the client API that the thread is bound to, where the platform has several
    void* display = nullptr;
    void* drawSurface = nullptr;
    void* readSurface = nullptr;
    void* context = nullptr;

    friend bool operator==(const CurrentContext&, const CurrentContext&) = default;
};

CurrentContext currentContext() noexcept;

/// Makes current on the calling thread what currentContext gave; nothing current is put back too. A failure is ignored.
void restoreContext(const CurrentContext& previous) noexcept;

}  // namespace Tessavoy::AESDK_OpenGL
