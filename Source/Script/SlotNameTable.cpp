#include "Source/Script/SlotNameTable.h"

#include "Source/Parameter/Catalogue.h"
#include "Source/Sequence.h"

namespace Tessavoy {

A_long SlotNameTable::slotNamed(const PF_InData* inData, CustomParameterType kind, std::string_view name) {
    if (mSlots.empty()) {
        fill(inData, kind);
    }
    const auto found = mSlots.find(name);
    return found == mSlots.end() ? 1 : found->second;
}

void SlotNameTable::fill(const PF_InData* inData, CustomParameterType kind) {
    const SequenceAccess sequence(inData);
    if (sequence.get() == nullptr) {
        return;
    }
    for (A_long slot = 1; slot <= NamedSlots; ++slot) {
        const auto found = sequence->paramNames.find(parameterDiskId(slotNameId(kind, slot)));
        if (found != sequence->paramNames.end()) {
            mSlots.insert_or_assign(found->second, slot);
        }
    }
}

}  // namespace Tessavoy
