#include "Host/Dialogs/AnswerQueue.h"
#include "Host/Dialogs/DialogScript.h"
#include "Host/EffectHost.h"
#include "HostInterface/AegpSuites.h"
#include "Tests/Support/DialogTexts.h"
#include "Tests/Unit/Host/HostFixture.h"

// Dialog scripts as a module gives them to the host: the call's answers and what its user is told.

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// The text of a memory handle, which is given back.
std::string taken(PF_InData* in, AEGP_MemHandle handle) {
    const Acquired<AEGP_MemorySuite1> memory(in);
    void* text = nullptr;
    memory->AEGP_LockMemHandle(handle, &text);
    std::string result = static_cast<const char*>(text);
    memory->AEGP_UnlockMemHandle(handle);
    memory->AEGP_FreeMemHandle(handle);
    return result;
}

class DialogSuite : public HostFixture {
protected:
    // Runs a script in a command of the panel; its error is the command's answer.
    CommandResult run(const std::string& script, bool asksForError = true) {
        value = error = "none";
        FakeEffect::hooks().userChangedParam = [&](PF_InData* in, PF_OutData*, PF_ParamDef**, void*) {
            const Acquired<AEGP_UtilitySuite5> utilities(in);
            AEGP_MemHandle result = nullptr;
            AEGP_MemHandle errorText = nullptr;
            const PF_Err answer =
                utilities->AEGP_ExecuteScript(1, script.c_str(), 0, &result, asksForError ? &errorText : nullptr);
            if (result != nullptr)
                value = taken(in, result);
            if (errorText != nullptr)
                error = taken(in, errorText);
            return answer;
        };
        PF_UserChangedParamExtra extra{FakeEffect::Button};
        return mInstance->command(PF_Cmd_USER_CHANGED_PARAM, 0, &extra);
    }

    AnswerQueue user;
    std::string value, error;
    EffectHost host{FakeEffect::entryPoints()};

private:
    std::unique_ptr<EffectInstance> mInstance = host.createInstance(FakeProject::project());
};

TEST_F(DialogSuite, GivesTheValueAndNoError) {
    serveDialogs(host.services(), user);
    user.add({DialogButton::Ok, {{0, "new"}}});
    const CommandResult result = run(renameDialog("old"));
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(result.message, "");
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_EQ(value, "1new");
    EXPECT_EQ(error, "none");
    EXPECT_THAT(user.broken(), IsEmpty());
}

// The published code for what the host can't use; the interpreter's words are for the user, and for a module that asks.
TEST_F(DialogSuite, AScriptThatIsWrongIsAnErrorWithTheInterpretersWords) {
    serveDialogs(host.services(), user);
    for (const bool asksForError : {true, false}) {
        const CommandResult result = run(renameDialog("wind's"), asksForError);
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_THAT(result.message,
                    AllOf(StartsWith("the dialog's script failed: SyntaxError: "), HasSubstr("line 6")));
        EXPECT_EQ(result.failure, "") << "it is the script's failure, not the host's";
        EXPECT_THAT(result.broken, IsEmpty());
        EXPECT_EQ(value, "none");
        EXPECT_THAT(error, asksForError ? StartsWith("SyntaxError: ") : StartsWith("none"));
    }
}

TEST_F(DialogSuite, AScriptThatFailsIsAnErrorToo) {
    serveDialogs(host.services(), user);
    EXPECT_EQ(run("new Window('dialog', 'A').opacity").error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_THAT(error, HasSubstr("\"opacity\""));
    EXPECT_EQ(run("while (true) {}").error, PF_Err_BAD_CALLBACK_PARAM);
}

// An answer that fits no dialog is a failure of the host, and told as such.
TEST_F(DialogSuite, AUserWhoFailsIsTheHostsFailure) {
    serveDialogs(host.services(), user);
    user.add({DialogButton::Ok, {{0, "there is no field"}}});
    const CommandResult result = run("new Window('dialog', 'A').show()");
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_THAT(result.failure, HasSubstr("the dialog \"A\""));
}

TEST_F(DialogSuite, WithoutAnInterpreterThereAreNoDialogs) {
    EXPECT_EQ(run("1").error, PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(value, "none");
}

}  // namespace
}  // namespace TessavoyHost
