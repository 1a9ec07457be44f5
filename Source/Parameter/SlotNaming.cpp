#include "Source/Parameter/SlotNaming.h"

#include "Source/HostAccess/Exception.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/PanelStreams.h"
#include "Source/Parameter/ParametersCustomBank.h"

#include <cstring>
#include <string>

namespace Tessavoy {

namespace {

constexpr std::size_t longestName = 31;

CustomParameterType kindOf(int number) {
    return static_cast<CustomParameterType>(number);
}

/// Shows or hides all of a kind's buttons, by the kind's switch. Whether anything changed.
bool updateRenameButtons(PF_InData* inData, SuiteHandler& suites, PF_ParamDef* params[], CustomParameterType kind) {
    const bool show = params[parameterIndex(renameSwitchId(kind))]->u.bd.value != 0;
    bool changed = false;
    for (A_long slot = 1; slot <= NamedSlots; ++slot) {
        changed |= setParamVisible(inData, suites, slotRenameId(kind, slot), show);
    }
    return changed;
}

/// Gives a parameter another name, where the panel shows a different one.
bool updateName(PF_InData* inData, SuiteHandler& suites, PF_ParamIndex index, const PF_ParamDef& shown,
                const std::string& label) {
    if (std::strncmp(label.c_str(), shown.name, sizeof shown.name) == 0) {
        return false;
    }
    PF_ParamDef renamed = shown;
    label.copy(renamed.name, label.size());
    renamed.name[label.size()] = '\0';
    throwOnError(suites.get<PF_ParamUtilsSuite3>().PF_UpdateParamUI(inData->effect_ref, index, &renamed));
    return true;
}

bool updateLabels(PF_InData* inData, SuiteHandler& suites, PF_ParamDef* params[], CustomParameterType kind) {
    const CustomParameterBank bank(inData, suites, kind);
    bool changed = false;
    for (A_long k = 0; k < NamedSlots; ++k) {
        const CustomParameterSlot slot = bank.slotInfo(k);
        const std::string label = bank.slotLabel(k, bank.slotName(slot.diskId));
        changed |= updateName(inData, suites, slot.index, *params[slot.index], label);
    }
    return changed;
}

bool hasName(const CustomParameterBank& bank, A_long k, const std::string& name) {
    return bank.slotName(bank.slotInfo(k).diskId) == name;
}

bool isUsedByAnother(const CustomParameterBank& bank, const CustomParameterSlot& slot, const std::string& name) {
    for (A_long k = 0; k < NamedSlots; ++k) {
        if (k != slot.slot && hasName(bank, k, name)) {
            return true;
        }
    }
    return false;
}

/// Why a slot can't have the name; empty where it can.
std::string refusal(const CustomParameterBank& bank, const CustomParameterSlot& slot, const std::string& name) {
    const std::string start = "Failed to rename the parameter: ";
    if (name.size() > longestName) {
        return start + "The name must be shorter then " + std::to_string(longestName) + ".";
    }
    if (!name.empty() && isUsedByAnother(bank, slot, name)) {
        return start + "The name already in use by other parameter.";
    }
    return {};
}

void renameSlot(PF_InData* inData, PF_OutData* outData, SuiteHandler& suites, CustomParameterBank& bank,
                const CustomParameterSlot& slot) {
    std::string name;
    if (!bank.showRenameDialog(bank.slotName(slot.diskId), name)) {
        return;
    }
    if (const std::string reason = refusal(bank, slot, name); !reason.empty()) {
        reportMessage(outData, reason.c_str());
        return;
    }
    bank.setSlotName(slot.diskId, name);
    setParamLabel(inData, suites, slot.index, bank.slotLabel(slot.slot, name));
    throwOnError(suites.get<PF_AdvAppSuite2>().PF_SetProjectDirty());
    outData->out_flags |= PF_OutFlag_SEND_UPDATE_PARAMS_UI;
}

}  // namespace

bool updateSlots(PF_InData* inData, SuiteHandler& suites, PF_ParamDef* params[]) {
    bool changed = false;
    for (int kind = 0; kind < CustomParameterKinds; ++kind) {
        changed |= updateRenameButtons(inData, suites, params, kindOf(kind));
    }
    for (int kind = 0; kind < CustomParameterKinds; ++kind) {
        changed |= updateLabels(inData, suites, params, kindOf(kind));
    }
    return changed;
}

void renameSlotOf(PF_InData* inData, PF_OutData* outData, PF_ParamIndex button) {
    SuiteHandler suites(inData->pica_basicP);
    for (int kind = 0; kind < CustomParameterKinds; ++kind) {
        CustomParameterBank bank(inData, suites, kindOf(kind));
        for (A_long k = 0; k < NamedSlots; ++k) {
            const CustomParameterSlot slot = bank.slotInfo(k);
            if (slot.nameIndex == button) {
                renameSlot(inData, outData, suites, bank, slot);
                return;
            }
        }
    }
}

}  // namespace Tessavoy
