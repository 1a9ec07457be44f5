#pragma once

#include "Source/Gl/FunctionTables.h"
#include "Source/Gl/PlatformContext.h"

namespace Tessavoy::AESDK_OpenGL {

/// Remembers what is current on the calling thread and puts it back at its end, on every path, when it differs; nothing
/// current counts as well. The effect calls OpenGL only while one of these lives on the thread.
class StateRestorer {
public:
    StateRestorer() : mPrevious(currentContext()) {}

    ~StateRestorer() {
        if (currentContext() != mPrevious) {
            restoreContext(mPrevious);
        }
    }

    StateRestorer(const StateRestorer&) = delete;
    StateRestorer& operator=(const StateRestorer&) = delete;

private:
    FunctionTableUse mUse;
    CurrentContext mPrevious;
};

}  // namespace Tessavoy::AESDK_OpenGL
