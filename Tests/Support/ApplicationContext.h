#pragma once

#include <array>

namespace Tessavoy::Testing {

/// An OpenGL context of the application's own, current on this thread as long as it lives, made by the platform's calls
/// alone. It differs from the effect's contexts in all that can be current: it is bound to another client API, and has
/// a surface to draw into and another one to read from. Null handles where the machine gives none.
class ApplicationContext {
public:
    ApplicationContext();
    ~ApplicationContext();

    ApplicationContext(const ApplicationContext&) = delete;
    ApplicationContext& operator=(const ApplicationContext&) = delete;

    bool isThere() const { return mContext != nullptr; }

    /// It is the current one, with its API and its surfaces. It is a failure of the test if not.
    void expectCurrent(const char* when = "") const;

    /// GL_MAX_TEXTURE_SIZE.
    int largestTexture() const;

private:
    void* mDisplay = nullptr;
    std::array<void*, 2> mSurfaces{};  ///< drawn into, read from
    void* mContext = nullptr;
};

/// Whether any OpenGL context is current on this thread.
bool anyContextIsCurrent();

}  // namespace Tessavoy::Testing
