#pragma once

#include <string_view>

#include "HostInterface/Effect.h"

namespace TessavoyHost {

// The suite server of the in-data: hands out the tables of this folder by name and version, and counts them in the
// ledger of the command that asks.
SPBasicSuite basicSuite();

// The older table of utilities: handles, pixel access and text formatting.
PF_UtilCallbacks utilityCallbacks();

// A table, or null when this host has none of that name and version.
const void* suiteTable(std::string_view name, A_long version);

}  // namespace TessavoyHost
