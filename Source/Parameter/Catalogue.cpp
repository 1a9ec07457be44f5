#include "Source/Parameter/Catalogue.h"

#include "Source/Assert.h"
#include "Source/Parameter/DiskIds.h"
#include "Source/Parameter/ParameterTree.h"

#include <array>
#include <stdexcept>

namespace Tessavoy {

namespace {

std::vector<std::string> collectIds() {
    std::vector<std::string> ids;
    for (const ParameterDescription& parameter : parameterTree()) {
        ids.push_back(parameter.id);
    }
    return ids;
}

/// The places of the ids in the registration list, hashed once; open addressing, a quarter full.
class IdTable {
public:
    explicit IdTable(const std::vector<std::string>& ids) : mIds(ids), mDiskIds(expandDiskIds(ids)) {
        TESSAVOY_ASSERT(ids.size() * 2 <= mBuckets.size(), "ids.size() * 2 <= mBuckets.size()");
        for (std::size_t i = 0; i < ids.size(); ++i) {
            std::int16_t& bucket = mBuckets[find(ids[i])];
            TESSAVOY_ASSERT(bucket == empty, "bucket == empty");
            bucket = static_cast<std::int16_t>(i);
        }
    }

    /// The place of the id in the list, or -1.
    A_long place(std::string_view id) const { return mBuckets[find(id)]; }

    A_long diskId(A_long place) const { return mDiskIds[static_cast<std::size_t>(place)]; }

private:
    static constexpr std::int16_t empty = -1;
    static constexpr std::size_t bucketCount = 4096;

    /// The bucket that holds the id, or the empty one where it would go.
    std::size_t find(std::string_view id) const {
        std::size_t bucket = hashFnv1a(id) % bucketCount;
        while (mBuckets[bucket] != empty && mIds[static_cast<std::size_t>(mBuckets[bucket])] != id) {
            bucket = (bucket + 1) % bucketCount;
        }
        return bucket;
    }

    static constexpr std::array<std::int16_t, bucketCount> allEmpty() {
        std::array<std::int16_t, bucketCount> buckets{};
        buckets.fill(empty);
        return buckets;
    }

    const std::vector<std::string>& mIds;
    std::vector<A_long> mDiskIds;
    std::array<std::int16_t, bucketCount> mBuckets = allEmpty();
};

const IdTable& idTable() {
    static const IdTable table(registrationList());
    return table;
}

std::runtime_error unknownId(std::string_view text, std::string_view id) {
    return std::runtime_error(std::string(text) + '"' + std::string(id) + '"');
}

}  // namespace

const std::vector<std::string>& registrationList() {
    static const std::vector<std::string> list = collectIds();
    return list;
}

A_long parameterIndex(std::string_view id) {
    const A_long place = idTable().place(id);
    if (place < 0) {
        throw unknownId("Failed to find the parameter index for id ", id);
    }
    return place + 1;
}

A_long parameterDiskId(std::string_view id) {
    const IdTable& table = idTable();
    const A_long place = table.place(id);
    if (place < 0 || table.diskId(place) == 0) {
        throw unknownId("Failed to find the disk ID for parameter id ", id);
    }
    return table.diskId(place);
}

std::uint64_t hashFnv1a(std::string_view text) {
    constexpr std::uint64_t offsetBasis = 0xcbf29ce484222325;
    constexpr std::uint64_t prime = 0x100000001b3;
    std::uint64_t hash = offsetBasis;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * prime;
    }
    return hash;
}

}  // namespace Tessavoy
