#include "Source/Parameter/ParametersCustomBank.h"

#include "Source/Editors/HostDialog.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/MemoryHandle.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/StringTable.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace Tessavoy {

namespace {

/// The dialog's script before and after the present name.
constexpr const char* dialogStart = R"(
var w = new Window("dialog", "Assign The Name")
w.orientation = "column"
var e = w.add('edittext {properties: {multiline: false}}')
e.alignment = [ "fill", "fill" ]
e.textselection = ')";
constexpr const char* dialogEnd = R"(';
var p = w.add('panel')
p.orientation = 'row'
p.alignment = [ "fill", "fill" ]
p.add("button", undefined, "OK")
p.add("button", undefined, "Cancel")
w.layout.layout()
e.active = true;

// onResize needed on Mac OS X
w.onResizing = w.onResize = function() { this.layout.resize(); }
var result = w.show()
result + e.text;
)";

constexpr std::size_t labelSize = sizeof PF_ParamDef::name;
constexpr char dots[] = "...";

}  // namespace

CustomParameterBank::CustomParameterBank(PF_InData* inData, SuiteHandler& suites, CustomParameterType type)
    : mInData(inData), mSuites(&suites), mType(type), mKind(&customKind(type)), mSequence(sequenceData(inData)) {}

CustomParameterSlot CustomParameterBank::slotInfo(A_long k) const {
    const std::string id = slotNameId(mType, k + 1);
    return {k, parameterIndex(id), parameterIndex(slotRenameId(mType, k + 1)), parameterDiskId(id)};
}

std::string CustomParameterBank::slotName(A_long diskId) const {
    if (mSequence == nullptr) {
        return {};
    }
    const auto found = mSequence->paramNames.find(diskId);
    return found == mSequence->paramNames.end() ? std::string() : found->second;
}

void CustomParameterBank::setSlotName(A_long diskId, const std::string& name) {
    if (mSequence == nullptr) {
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED);
    }
    if (name.empty()) {
        mSequence->paramNames.erase(diskId);
    } else {
        mSequence->paramNames.insert_or_assign(diskId, name);
    }
}

std::string CustomParameterBank::slotLabel(A_long k, const std::string& name) const {
    std::array<char, labelSize> label;
    const A_char* format = GetStringPtr(name.empty() ? mKind->plainLabel : mKind->namedLabel);
    // The plain format takes the number alone and leaves the name.
    const int length = std::snprintf(label.data(), label.size(), format, k + 1, name.c_str());
    if (length >= static_cast<int>(label.size()) - 1) {
        std::memcpy(label.data() + label.size() - sizeof dots, dots, sizeof dots);
    }
    return label.data();
}

bool CustomParameterBank::showRenameDialog(const std::string& current, std::string& result) {
    const std::string script = dialogStart + escapeForScript(current.c_str()) + dialogEnd;
    MemoryHandle value(*mSuites);
    throwOnError(executeScript(mInData, *mSuites, script.c_str(), value));
    throwOnError(value.lock());
    const char* text = editedText(static_cast<const char*>(value.address()), current.c_str());
    const bool edited = text != nullptr;
    if (edited) {
        result = text;
    }
    throwOnError(value.close());
    return edited;
}

}  // namespace Tessavoy
