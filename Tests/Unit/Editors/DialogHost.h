#pragma once

#include "HostInterface/AegpSuites.h"
#include "Tests/Support/FakeHandleHost.h"

#include <optional>
#include <string>
#include <vector>

namespace Tessavoy {

/// A host that takes a dialog's script and gives an answer without running anything. Handles are FakeHandleHost's, of
/// exactly the size asked for; it is a failure of the test when a text is formatted beyond the end of the handle made
/// last. One host exists at a time.
class DialogHost {
public:
    DialogHost();
    ~DialogHost();

    DialogHost(const DialogHost&) = delete;
    DialogHost& operator=(const DialogHost&) = delete;

    PF_InData& inData() { return handles.inData; }

    FakeHandleHost handles;

    std::optional<std::string> answer = "1";  ///< none: the script has no value
    std::size_t answerPadding = 0;            ///< bytes of the answer's memory beyond its closing zero

    std::vector<std::string> scripts;      ///< that were run
    std::vector<std::size_t> handleSizes;  ///< in the order asked for, by "PF Handle Suite"

    /// What the calls of the application answer.
    A_Err scriptError = PF_Err_NONE;
    A_Err lockError = PF_Err_NONE;
    A_Err sizeError = PF_Err_NONE;
    A_Err unlockError = PF_Err_NONE;
    A_Err freeError = PF_Err_NONE;

    int answersOut = 0;
    int answerLocks = 0;

private:
    static const void* tableOf(const char* name, std::int32_t version);

    A_long mPlugin = 5;
    void* mGlobalBlock = &mPlugin;
    SPBasicSuite mBasic{};
};

}  // namespace Tessavoy
