#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TessavoyHost {

// What a host lends to a module.
enum class Loan {
    Handle,
    HandleLock,
    Suite,
    Parameter,
    LayerPixels,
    Path,
    PathSegment,
    World,
    EffectReference,
    Stream,
    StreamValue,
    MemoryHandle,
    MemoryLock,
    DrawingObject,
};

std::string_view nameOf(Loan loan);

// Counts what is lent and not yet given back, by kind and key (an address or a number). Each command has a ledger of
// its own, and the host one for what outlives commands. Thread safe.
class Ledger {
public:
    using Key = std::uint64_t;

    static Key keyOf(const void* address) { return reinterpret_cast<std::uintptr_t>(address); }

    // Notes a loan; one more of the same key raises its count. The name must stay valid as long as the loan; detail is
    // shown with it (an index, a size). The object, if any, is kept until the loan ends.
    void lend(Loan loan, Key key, std::string_view name, std::int64_t detail = 0, std::shared_ptr<void> object = {});

    // Ends one loan. False when nothing of that kind and key is out.
    bool giveBack(Loan loan, Key key);

    // The object of a loan, or null.
    std::shared_ptr<void> find(Loan loan, Key key) const;
    bool holds(Loan loan, Key key) const { return count(loan, key) > 0; }

    int count(Loan loan, Key key) const;
    int count(Loan loan) const;

    // Moves a loan, with its count, to another ledger. False when it is not here.
    bool moveTo(Ledger& other, Loan loan, Key key);

    // Names what is still out, one text each, and moves the handles among it to the other ledger (a module may still
    // touch them); the rest is taken back.
    std::vector<std::string> close(Ledger& handles);

    // Names what is still out and leaves it out.
    std::vector<std::string> outstanding() const;

private:
    struct Place {
        Loan loan;
        Key key;
        bool operator==(const Place&) const = default;
    };
    struct PlaceHash {
        std::size_t operator()(const Place& place) const {
            return std::hash<Key>{}(place.key * 31 + static_cast<Key>(place.loan));
        }
    };
    struct Entry {
        std::string_view name;
        std::int64_t detail = 0;
        int count = 0;
        std::shared_ptr<void> object;
    };

    static std::string describe(const Place& place, const Entry& entry);

    mutable std::mutex mMutex;
    std::unordered_map<Place, Entry, PlaceHash> mEntries;
};

}  // namespace TessavoyHost
