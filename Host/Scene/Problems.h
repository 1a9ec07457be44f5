#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Host/HostError.h"

namespace TessavoyHost {

// A place inside a JSON text, as messages name it: `effect.parameters."InstanceSize.Value".keys[2].time`.
class Place {
public:
    Place() = default;
    explicit Place(std::string root) : mText(std::move(root)) {}
    Place child(std::string_view key) const;
    Place element(std::size_t index) const;
    const std::string& text() const { return mText; }

private:
    std::string mText;
};

// Everything that is wrong with one input, in the order in which it was found, so that a user mends it all at once.
class Problems {
public:
    void add(const Place& place, const std::string& text);
    bool empty() const { return mLines.empty(); }
    const std::vector<std::string>& lines() const {
        return mLines;
    }  // "place: text", or "text" where there is no place

    // Throws a HostError of the given status when there is any problem: one line each, each after "source: ".
    void throwIfAny(ExitStatus status, const std::string& source = {}) const;

private:
    std::vector<std::string> mLines;
};

}  // namespace TessavoyHost
