#pragma once

#include <cstdint>
#include <string_view>

#include "HostInterface/SuiteIdentity.h"

namespace Tessavoy {

/// The table when it is asked for by its suite's name and version, else null.
template <class Suite>
const void* tableFor(std::string_view name, std::int32_t version, const Suite& table) {
    return name == SuiteIdentity<Suite>::name && version == SuiteIdentity<Suite>::version ? &table : nullptr;
}

}  // namespace Tessavoy
