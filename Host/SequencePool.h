#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include "HostInterface/Types.h"

namespace TessavoyHost {

class EffectInstance;

// The sequence data of one instance. A module that says it changes sequence data while it renders gets copies for that,
// one for each render at a time: made through its own saved form and kept for later frames until the original changes.
// Other modules' renders share the original.
class SequencePool {
public:
    explicit SequencePool(EffectInstance& instance) : mInstance(instance) {}
    ~SequencePool();
    SequencePool(const SequencePool&) = delete;
    SequencePool& operator=(const SequencePool&) = delete;

    // PF_Cmd_SEQUENCE_SETUP; to be called once. Throws HostError.
    void setUp();

    // Replaces the original by what the module makes of a saved form. Throws HostError, and the original stays.
    void load(const std::vector<std::byte>& flat);

    // The original in its saved form. Throws HostError.
    std::vector<std::byte> flattened();

    PF_Handle original() const { return mOriginal; }

    // A command of the panel may have changed the original; copies are made afresh from now on.
    void changed();

private:
    struct Copy {
        PF_Handle handle;
        int version;  // of the original it was made from; sharedOriginal for the original itself
    };
    static constexpr int sharedOriginal = -1;

public:
    // Sequence data for one render; thread safe.
    class Lease {
    public:
        explicit Lease(SequencePool& pool) : mPool(pool), mCopy(pool.take()) {}
        ~Lease() { mDiscarded ? mPool.drop(mCopy) : mPool.give(mCopy); }
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        PF_Handle handle() const { return mCopy.handle; }
        // A copy goes with the lease; data that the module doesn't change stays as it is.
        void discard() { mDiscarded = true; }

    private:
        SequencePool& mPool;
        const Copy mCopy;
        bool mDiscarded = false;
    };

private:
    Copy take();
    void give(const Copy& copy);
    void drop(const Copy& copy);
    bool rendersNeedCopies() const;
    PF_Handle unflattened(const std::vector<std::byte>& flat);
    void dispose(PF_Handle handle);
    void disposeIdle();

    EffectInstance& mInstance;
    PF_Handle mOriginal = nullptr;
    std::mutex mMutex;
    int mVersion = 0;
    std::vector<PF_Handle> mIdle;  // copies of the present version
};

}  // namespace TessavoyHost
