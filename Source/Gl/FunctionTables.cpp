#include "Source/Gl/FunctionTables.h"

#include <glbinding/Binding.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace Tessavoy::AESDK_OpenGL {

namespace {

/// How many contexts a block of slots serves: 3 MB of tables, enough for any usual host at once.
constexpr std::size_t contextsPerBlock = 64;

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
        const StepAside aside(mCount, own);
        mLeft.notify_all();
        mLeft.wait(lock, [this] { return mCount == 0; });
        change();
    }

private:
    /// Takes the calling thread out of the count while it lives, also when the change fails.
    class StepAside {
    public:
        StepAside(int& count, int own) : mCount(count), mOwn(own) { mCount -= mOwn; }
        ~StepAside() { mCount += mOwn; }
        StepAside(const StepAside&) = delete;
        StepAside& operator=(const StepAside&) = delete;

    private:
        int& mCount;
        const int mOwn;
    };

    std::mutex mMutex;
    std::condition_variable mLeft;
    int mCount = 0;
};

/// Which context has which slot. To glbinding a slot is a name that it was once told, and it numbers names by how many
/// it knows; so names are only ever added, and the contexts take turns with them.
class Slots {
public:
    void use(std::intptr_t contextHandle) { glbinding::Binding::useContext(slotOf(contextHandle)); }

    void giveBack(std::intptr_t contextHandle) noexcept {
        const std::lock_guard lock(mMutex);
        if (const auto found = mTaken.find(contextHandle); found != mTaken.end()) {
            mFree.push_back(found->second);  // there is room for every slot
            mTaken.erase(found);
        }
    }

    Readers& readers() { return mReaders; }

private:
    glbinding::ContextHandle slotOf(std::intptr_t contextHandle) {
        std::unique_lock lock(mMutex);
        for (;;) {
            if (const auto found = mTaken.find(contextHandle); found != mTaken.end()) {
                return found->second;
            }
            if (!mFree.empty()) {
                const glbinding::ContextHandle slot = mFree.back();
                mTaken.emplace(contextHandle, slot);
                mFree.pop_back();
                return slot;
            }
            lock.unlock();
            mReaders.runAlone(usesOfThread > 0, [this] { addBlockIfNeeded(); });
            lock.lock();
        }
    }

    void addBlockIfNeeded() {
        const std::lock_guard lock(mMutex);
        if (mFree.empty()) {
            addBlock();
        }
    }

    /// The names are addresses of objects that live for ever, so that they are no handle of anybody's context.
    void addBlock() {
        mFree.reserve(mNames.size() + contextsPerBlock);
        for (std::size_t slot = 0; slot < contextsPerBlock; ++slot) {
            const auto name = reinterpret_cast<glbinding::ContextHandle>(&mNames.emplace_back());
            glbinding::Binding::initialize(name, false, false);
            mFree.push_back(name);
        }
    }

    Readers mReaders;
    std::mutex mMutex;
    std::unordered_map<std::intptr_t, glbinding::ContextHandle> mTaken;
    std::vector<glbinding::ContextHandle> mFree;
    std::deque<char> mNames;
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

void giveFunctionTableBack(std::intptr_t contextHandle) noexcept {
    slots().giveBack(contextHandle);
}

}  // namespace Tessavoy::AESDK_OpenGL
