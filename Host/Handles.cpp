#include "Host/Handles.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace TessavoyHost {

Handles::~Handles() {
    while (!mAlive.empty())
        dispose(*mAlive.begin());
}

PF_Handle Handles::make(std::size_t bytes) {
    auto record = std::make_unique<Record>(Record{nullptr, bytes, 0, {}});
    record->block = freshBlock(bytes);
    record->address = record->block.data;
    const auto handle = &record->address;
    const std::lock_guard lock(mMutex);
    try {
        mAlive.insert(handle);
    } catch (const std::bad_alloc&) {
        BlockPool::shared().give(record->block);
        throw;
    }
    record.release();
    return handle;
}

bool Handles::dispose(PF_Handle handle) {
    const std::lock_guard lock(mMutex);
    const std::unique_ptr<Record> record(find(handle));
    if (record == nullptr)
        return false;
    mAlive.erase(handle);
    BlockPool::shared().give(record->block);
    return true;
}

bool Handles::resize(PF_Handle handle, std::size_t bytes) {
    const std::lock_guard lock(mMutex);
    Record* record = find(handle);
    if (record == nullptr)
        return false;
    const BlockPool::Block block = freshBlock(bytes);
    std::memcpy(block.data, record->block.data, std::min(bytes, record->bytes));
    BlockPool::shared().give(record->block);
    record->block = block;
    record->address = block.data;
    record->bytes = bytes;
    return true;
}

void* Handles::lock(PF_Handle handle) {
    const std::lock_guard lock(mMutex);
    Record* record = find(handle);
    if (record == nullptr)
        return nullptr;
    ++record->locks;
    return record->address;
}

bool Handles::unlock(PF_Handle handle) {
    const std::lock_guard lock(mMutex);
    Record* record = find(handle);
    if (record == nullptr || record->locks == 0)
        return false;
    --record->locks;
    return true;
}

bool Handles::alive(PF_Handle handle) const {
    const std::lock_guard lock(mMutex);
    return find(handle) != nullptr;
}

std::size_t Handles::size(PF_Handle handle) const {
    const std::lock_guard lock(mMutex);
    const Record* record = find(handle);
    return record == nullptr ? 0 : record->bytes;
}

int Handles::locks(PF_Handle handle) const {
    const std::lock_guard lock(mMutex);
    const Record* record = find(handle);
    return record == nullptr ? 0 : record->locks;
}

std::size_t Handles::count() const {
    const std::lock_guard lock(mMutex);
    return mAlive.size();
}

// With the mutex held.
Handles::Record* Handles::find(PF_Handle handle) const {
    return mAlive.contains(handle) ? reinterpret_cast<Record*>(handle) : nullptr;
}

BlockPool::Block Handles::freshBlock(std::size_t bytes) {
    const BlockPool::Block block = BlockPool::shared().take(bytes);
    if (mRubbish)
        std::memset(block.data, rubbishByte, bytes);
    return block;
}

}  // namespace TessavoyHost
