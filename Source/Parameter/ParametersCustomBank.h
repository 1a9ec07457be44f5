#pragma once

#include "HostInterface/Effect.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/ParametersCustom.h"
#include "Source/Sequence.h"

#include <string>

namespace Tessavoy {

/// Where a slot's parameters are.
struct CustomParameterSlot {
    A_long slot;              ///< counted from 0
    PF_ParamIndex index;      ///< of the parameter that carries the name
    PF_ParamIndex nameIndex;  ///< of the button that asks for a name
    A_long diskId;            ///< of the parameter that carries the name, and the key of the saved name
};

/// The ten slots of one kind of custom parameters, with the names that the user gave them. Lives for one command of the
/// panel, on the host's interface thread.
class CustomParameterBank {
public:
    /// The suites must outlive the bank. With Size it is an assertion that stops the process.
    CustomParameterBank(PF_InData* inData, SuiteHandler& suites, CustomParameterType type);

    /// Slot k, 0 to 9.
    CustomParameterSlot slotInfo(A_long k) const;

    /// The name kept under a disk id; empty for none.
    std::string slotName(A_long diskId) const;

    /// Keeps a name, or drops it where it is empty. Throws Exception with 512 when the instance keeps nothing.
    void setSlotName(A_long diskId, const std::string& name);

    /// What the panel shows for slot k, 0 to 9, with a name or without one: at most 31 characters, bytes of UTF-8.
    /// Where there would be 31 or more, the last three are dots.
    std::string slotLabel(A_long k, const std::string& name) const;

    /// Asks the user for a name; whether it is another one, which is then in `result`. The host's error is thrown as
    /// Exception.
    bool showRenameDialog(const std::string& current, std::string& result);

private:
    PF_InData* mInData;
    SuiteHandler* mSuites;
    CustomParameterType mType;
    const CustomKind* mKind;
    SequenceData* mSequence;  ///< may be null; the in-data's own, since names are written
};

}  // namespace Tessavoy
