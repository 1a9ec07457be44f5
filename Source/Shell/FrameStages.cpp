#include "Source/Shell/FrameStages.h"

#include <atomic>

namespace Tessavoy {

namespace {

std::atomic<FrameStageObserver> currentObserver = nullptr;

}  // namespace

void observeFrameStages(FrameStageObserver observer) {
    currentObserver = observer;
}

void endStage(FrameStage ended) {
    if (const FrameStageObserver observer = currentObserver) {
        observer(ended);
    }
}

}  // namespace Tessavoy
