#pragma once

#include "HostInterface/Effect.h"
#include "Source/Parameter/ParametersCustom.h"

#include <map>
#include <string>
#include <string_view>

namespace Tessavoy {

/// The names that the user gave to the slots of one kind, as scripts look them up. Belongs to one frame on one thread:
/// it is filled at the first look-up, and again at each while nobody has assigned a name.
class SlotNameTable {
public:
    /// The slot with exactly this name, 1 to 10, the last one if several have it; 1 if none has. Throws what
    /// SequenceAccess does.
    A_long slotNamed(const PF_InData* inData, CustomParameterType kind, std::string_view name);

private:
    void fill(const PF_InData* inData, CustomParameterType kind);

    std::map<std::string, A_long, std::less<>> mSlots;
};

}  // namespace Tessavoy
