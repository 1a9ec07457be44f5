#pragma once

namespace TessavoyHost {

// An OpenGL context of the application's own, current on this thread as long as it lives. Null handles where the
// machine gives none.
class ApplicationContext {
public:
    ApplicationContext();
    ~ApplicationContext();
    ApplicationContext(const ApplicationContext&) = delete;
    ApplicationContext& operator=(const ApplicationContext&) = delete;

    bool isThere() const { return mContext != nullptr; }

    // It is the current one, with its surface. It is a failure of the test if not.
    void expectCurrent(const char* when) const;

    // GL_MAX_TEXTURE_SIZE.
    int largestTexture() const;

private:
    void* mDisplay = nullptr;
    void* mSurface = nullptr;
    void* mContext = nullptr;
};

// Whether any OpenGL context is current on this thread.
bool anyContextIsCurrent();

}  // namespace TessavoyHost
