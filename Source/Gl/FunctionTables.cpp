#include "Source/Gl/FunctionTables.h"

#include <glbinding/Binding.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <unordered_set>
#include <vector>

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// How many contexts a block of slots serves: 3 MB of tables, enough for any usual host at once.
constexpr int contextsPerBlock = 63;

thread_local int usesOfThread = 0;

/// Counts the threads that may be reading the tables.
class Readers {
public:
    void enter() {
        const std::lock_guard lock(mMutex);
        ++mCount;
    }

    void leave() {
        {
            const std::lock_guard lock(mMutex);
            --mCount;
        }
        mLeft.notify_all();
    }

    /// Runs the change while nobody reads. The calling thread may itself be a reader and is not waited for. Readers are
    /// not kept out while this waits: one of those inside may depend on one who is about to enter.
    template <class Change>
    void runAlone(bool callerReads, Change change) {
        std::unique_lock lock(mMutex);
        const int own = callerReads ? 1 : 0;
        mCount -= own;
        mLeft.notify_all();
        mLeft.wait(lock, [this] { return mCount == 0; });
        change();
        mCount += own;
    }

private:
    std::mutex mMutex;
    std::condition_variable mLeft;
    int mCount = 0;
};

/// Which contexts have a slot. glbinding numbers a new context by how many it knows, so that number grows with each
/// block's marker and with each context, and never falls.
class Slots {
public:
    void use(std::intptr_t contextHandle) {
        takeSlot(contextHandle);
        glbinding::Binding::useContext(contextHandle);
    }

    Readers& readers() { return mReaders; }

private:
    void takeSlot(std::intptr_t contextHandle) {
        std::unique_lock lock(mMutex);
        while (!mKnown.contains(contextHandle)) {
            if (mFree > 0) {
                glbinding::Binding::initialize(contextHandle, false, false);
                mKnown.insert(contextHandle);
                --mFree;
                return;
            }
            lock.unlock();
            mReaders.runAlone(usesOfThread > 0, [this] { addBlockIfNeeded(); });
            lock.lock();
        }
    }

    void addBlockIfNeeded() {
        const std::lock_guard lock(mMutex);
        if (mFree == 0) {
            addBlock();
            mFree = contextsPerBlock;
        }
    }

    /// Registers one name per slot and takes all but the last back. The tables keep the length that the last name's
    /// slot gave them, while the numbers of the others are free for contexts. The names are addresses of objects that
    /// live for ever, so that no context can have the same handle.
    void addBlock() {
        std::vector<glbinding::ContextHandle> names;
        for (int slot = 0; slot <= contextsPerBlock; ++slot) {
            names.push_back(reinterpret_cast<glbinding::ContextHandle>(&mNames.emplace_back()));
            glbinding::Binding::initialize(names.back(), false, false);
        }
        names.pop_back();
        for (const glbinding::ContextHandle name : names) {
            glbinding::Binding::releaseContext(name);
        }
    }

    Readers mReaders;
    std::mutex mMutex;
    std::unordered_set<std::intptr_t> mKnown;
    std::deque<char> mNames;
    int mFree = 0;
};

/// Never destroyed: threads may still be drawing when the process runs its exit handlers.
Slots& slots() {
    static Slots& instance = *new Slots;
    return instance;
}

}  // namespace

FunctionTableUse::FunctionTableUse() {
    if (usesOfThread++ == 0) {
        slots().readers().enter();
    }
}

FunctionTableUse::~FunctionTableUse() {
    if (--usesOfThread == 0) {
        slots().readers().leave();
    }
}

void useFunctionTable(std::intptr_t contextHandle) {
    slots().use(contextHandle);
}

}  // namespace Tessavoy::AESDK_OpenGL
