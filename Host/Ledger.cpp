#include "Host/Ledger.h"

#include <algorithm>
#include <array>
#include <utility>

namespace TessavoyHost {
namespace {

constexpr std::array<std::string_view, 14> loanNames = {"handle",
                                                        "lock of a handle",
                                                        "suite",
                                                        "parameter",
                                                        "layer pixels",
                                                        "path",
                                                        "path segment",
                                                        "world",
                                                        "effect reference",
                                                        "stream",
                                                        "stream value",
                                                        "memory handle",
                                                        "lock of memory handle",
                                                        "drawing object"};

}  // namespace

std::string_view nameOf(Loan loan) {
    return loanNames.at(static_cast<std::size_t>(loan));
}

void Ledger::lend(Loan loan, Key key, std::string_view name, std::int64_t detail, std::shared_ptr<void> object) {
    const std::lock_guard lock(mMutex);
    Entry& entry = mEntries[{loan, key}];
    entry.name = name;
    entry.detail = detail;
    ++entry.count;
    if (object != nullptr)
        entry.object = std::move(object);
}

// The object goes after the lock: giving it up may come back to this ledger.
bool Ledger::giveBack(Loan loan, Key key) {
    std::shared_ptr<void> object;
    const std::lock_guard lock(mMutex);
    const auto found = mEntries.find({loan, key});
    if (found == mEntries.end())
        return false;
    if (--found->second.count == 0) {
        object = std::move(found->second.object);
        mEntries.erase(found);
    }
    return true;
}

std::shared_ptr<void> Ledger::find(Loan loan, Key key) const {
    const std::lock_guard lock(mMutex);
    const auto found = mEntries.find({loan, key});
    return found == mEntries.end() ? nullptr : found->second.object;
}

int Ledger::count(Loan loan, Key key) const {
    const std::lock_guard lock(mMutex);
    const auto found = mEntries.find({loan, key});
    return found == mEntries.end() ? 0 : found->second.count;
}

int Ledger::count(Loan loan) const {
    const std::lock_guard lock(mMutex);
    int total = 0;
    for (const auto& [place, entry] : mEntries)
        total += place.loan == loan ? entry.count : 0;
    return total;
}

bool Ledger::moveTo(Ledger& other, Loan loan, Key key) {
    Entry moved;
    {
        const std::lock_guard lock(mMutex);
        const auto found = mEntries.find({loan, key});
        if (found == mEntries.end())
            return false;
        moved = std::move(found->second);
        mEntries.erase(found);
    }
    const std::lock_guard lock(other.mMutex);
    other.mEntries[{loan, key}] = std::move(moved);
    return true;
}

std::vector<std::string> Ledger::close(Ledger& handles) {
    std::vector<std::string> left = outstanding();
    decltype(mEntries) entries;
    {
        const std::lock_guard lock(mMutex);
        entries.swap(mEntries);
    }
    for (auto& [place, entry] : entries) {
        if (place.loan == Loan::Handle || place.loan == Loan::MemoryHandle) {
            const std::lock_guard lock(handles.mMutex);
            handles.mEntries[place] = std::move(entry);
        }
    }
    return left;
}

std::vector<std::string> Ledger::outstanding() const {
    std::vector<std::string> names;
    const std::lock_guard lock(mMutex);
    for (const auto& [place, entry] : mEntries)
        names.push_back(describe(place, entry));
    std::sort(names.begin(), names.end());
    return names;
}

std::string Ledger::describe(const Place& place, const Entry& entry) {
    std::string text(nameOf(place.loan));
    if (!entry.name.empty())
        text.append(" \"").append(entry.name).append("\"");
    text.append(" (").append(std::to_string(entry.detail)).append(")");
    if (entry.count > 1)
        text.append(", ").append(std::to_string(entry.count)).append(" times");
    return text;
}

}  // namespace TessavoyHost
