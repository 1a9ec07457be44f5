#pragma once

#include <cstdint>
#include <string_view>

#include "HostInterface/SuiteIdentity.h"

namespace Tessavoy {

/// The one of some suites' tables that is asked for by its suite's name and version; null when it is none of them.
template <class... Suites>
const void* tableFor(std::string_view name, std::int32_t version, const Suites&... tables) {
    const void* found = nullptr;
    const auto look = [&]<class Suite>(const Suite& table) {
        if (name == SuiteIdentity<Suite>::name && version == SuiteIdentity<Suite>::version) {
            found = &table;
        }
    };
    (look(tables), ...);
    return found;
}

}  // namespace Tessavoy
