// The script in an instance's record: storing it, and what compiling it says.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "HostInterface/Constants.h"
#include "Source/Script/ScriptCheck.h"
#include "Source/Sequence.h"
#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

class SequenceScript : public ::testing::Test {
protected:
    ~SequenceScript() override { EXPECT_EQ(host.liveHandles(), 0U) << "blocks left behind"; }

    PF_Err store(const char* text) { return validateScript(&record, &host.inData, text); }

    FakeHandleHost host;
    SequenceData record;
};

TEST_F(SequenceScript, IsStoredAndItsFailureCleared) {
    record.script = "x = 1";
    record.scriptError = "an old failure";
    EXPECT_EQ(store("y = 2"), PF_Err_NONE);
    EXPECT_EQ(record.script, "y = 2");
    EXPECT_EQ(record.scriptError, "");
}

TEST_F(SequenceScript, ThatDoesNotCompileIsStoredWithLuasMessage) {
    EXPECT_EQ(store("x = 1\ny = ="), PF_Err_NONE);
    EXPECT_EQ(record.script, "x = 1\ny = =");
    // The text begins on line 3 of the assembled chunk.
    EXPECT_EQ(record.scriptError, "[string \"script\"]:4: unexpected symbol near '='");
}

TEST_F(SequenceScript, WithAReturnAtItsEndDoesNotCompile) {
    EXPECT_EQ(store("x = 1\nreturn x"), PF_Err_NONE);
    EXPECT_EQ(record.scriptError,
              "[string \"script\"]:5: 'end' expected (to close 'function' at line 2) near 'return'");
}

// What the chunk runs when it is loaded may fail too; cells are not run.
TEST_F(SequenceScript, IsLoadedButNotRun) {
    EXPECT_EQ(store("error('in a cell')"), PF_Err_NONE);
    EXPECT_EQ(record.scriptError, "");
    EXPECT_EQ(store("end error('while loading', 0) do"), PF_Err_NONE);
    EXPECT_EQ(record.scriptError, "while loading");
    EXPECT_EQ(store("GetFloat(1) GetNothing()"), PF_Err_NONE);
    EXPECT_EQ(record.scriptError, "");
}

TEST_F(SequenceScript, IsClearedByAnEmptyTextAndByNone) {
    for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
        record.script = "x = =";
        record.scriptError = "a failure";
        EXPECT_EQ(store(nothing), PF_Err_NONE);
        EXPECT_EQ(record.script, "");
        EXPECT_EQ(record.scriptError, "");
    }
}

TEST_F(SequenceScript, LeavesTheNames) {
    record.paramNames = {{304, "Speed"}};
    EXPECT_EQ(store("x = ="), PF_Err_NONE);
    EXPECT_EQ(record.paramNames, (ParameterNames{{304, "Speed"}}));
}

// The text of the record itself may be stored anew, as an editor does that gave back what it was given.
TEST_F(SequenceScript, MayBeTheRecordsOwnText) {
    record.script = "x = 1 -- long enough for memory of its own";
    EXPECT_EQ(store(record.script.c_str()), PF_Err_NONE);
    EXPECT_EQ(record.script, "x = 1 -- long enough for memory of its own");
}

TEST_F(SequenceScript, IsRefusedWithoutARecordForUse) {
    EXPECT_EQ(validateScript(nullptr, &host.inData, "x = 1"), PF_Err_INTERNAL_STRUCT_DAMAGED);
    record.script = "kept";
    record.scriptError = "kept too";
    record.flatten = true;
    EXPECT_EQ(store("x = 1"), PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(record.script, "kept");
    EXPECT_EQ(record.scriptError, "kept too");
}

TEST_F(SequenceScript, EveryRefusedCallOfTheHostLeavesNothing) {
    for (const char* text : {"x = 1", "x = ="}) {
        bool failed = true;
        for (int call = 1; failed; ++call) {
            ASSERT_LT(call, 20);
            host.failCall(call);
            try {
                store(text);
            } catch (PF_ErrorValue error) {
                EXPECT_EQ(error, PF_Err_OUT_OF_MEMORY);
            }
            failed = host.failed();
            host.failCall(0);
            EXPECT_EQ(host.liveHandles(), 0U) << call;
            EXPECT_EQ(host.liveLocks(), 0) << call;
        }
    }
}

/// Loads a saved form with this script as the host's, and gives the record that comes of it.
class SavedScript : public SequenceScript {
protected:
    /// Flattens a record with the script, then sets it up again.
    void reload(const std::string& script, const std::string& error) {
        ASSERT_EQ(SequenceSetup(&host.inData, &host.outData), PF_Err_NONE);
        host.inData.sequence_data = host.outData.sequence_data;
        sequenceData(&host.inData)->script = script;
        sequenceData(&host.inData)->scriptError = error;
        ASSERT_EQ(SequenceFlatten(&host.inData, &host.outData), PF_Err_NONE);
        PF_Handle saved = host.outData.sequence_data;
        host.inData.sequence_data = saved;
        ASSERT_EQ(SequenceResetup(&host.inData, &host.outData), PF_Err_NONE);
        host.dispose(saved);
        host.inData.sequence_data = host.outData.sequence_data;
        record = *sequenceData(&host.inData);
        ASSERT_EQ(SequenceSetdown(&host.inData, &host.outData), PF_Err_NONE);
    }
};

TEST_F(SavedScript, IsCompiledWhenItIsLoaded) {
    reload("x = 1\n\ny = = 2", "");
    EXPECT_EQ(record.script, "x = 1\n\ny = = 2");
    EXPECT_EQ(record.scriptError, "[string \"script\"]:5: unexpected symbol near '='");
}

// A failure in a cell is no failure to compile: saving and loading switches the script on again.
TEST_F(SavedScript, HasItsErrorMadeAnew) {
    reload("error('no')", "Failed to execute the script (i=0, j=0, frame=10)\n[string \"script\"]:3: no");
    EXPECT_EQ(record.script, "error('no')");
    EXPECT_EQ(record.scriptError, "");
    reload("x = =", "another message");
    EXPECT_EQ(record.scriptError, compileErrorOf(&host.inData, "x = ="));
    EXPECT_NE(record.scriptError, "");
}

TEST_F(SavedScript, OfNoTextIsNotCompiled) {
    reload("", "a failure");
    EXPECT_EQ(record.scriptError, "");
}

}  // namespace
}  // namespace Tessavoy
