#pragma once

#include "HostInterface/Types.h"
#include "Source/Parameter/Sections.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Every parameter has three identities, kept apart: its id, a dotted text by which all code speaks of it; its
/// parameter index, its place in the panel, which changes whenever the panel does and is saved nowhere; and its disk
/// id, the number under which projects keep its values, fixed for ever.
///
/// The tables are built at the first use, which may come from any thread, and are read-only afterwards.
namespace Tessavoy {

/// All 996 ids in the order of the panel; element i has the parameter index i + 1, index 0 being the input layer.
const std::vector<std::string>& registrationList();

/// The parameter index of an id, 1 to 996; case-sensitive. Throws std::runtime_error
/// "Failed to find the parameter index for id "ID"" for an unknown one.
A_long parameterIndex(std::string_view id);

/// The disk id of an id. Throws std::runtime_error "Failed to find the disk ID for parameter id "ID"" for an unknown
/// one.
A_long parameterDiskId(std::string_view id);

/// The 64-bit FNV-1a hash (Fowler, Noll, Vo) of the text's bytes.
std::uint64_t hashFnv1a(std::string_view text);

}  // namespace Tessavoy
