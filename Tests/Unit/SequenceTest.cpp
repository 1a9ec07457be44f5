#include "Source/Sequence.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string_view>
#include <thread>
#include <vector>

#include "Source/HostAccess/Exception.h"
#include "Source/Script/ScriptCheck.h"
#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

std::vector<std::byte> bytes(std::string_view text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

/// The 24 bytes before the texts of a saved form, spelled out: sizes up to 255.
std::string header(std::size_t scriptSize, std::size_t namesSize) {
    std::string text("\1GRID\0\0\0\x10\0\0\0\0\x8e\x09\0", 16);
    text += {static_cast<char>(scriptSize), 0, 0, 0, static_cast<char>(namesSize), 0, 0, 0};
    return text;
}

/// An instance of the effect: the handle that the host keeps for it, passed into each command and replaced by what the
/// command gives.
class Sequence : public ::testing::Test {
protected:
    ~Sequence() override { EXPECT_EQ(host.liveHandles(), 0u) << "handles left behind"; }

    void setup() {
        ASSERT_EQ(SequenceSetup(&host.inData, &host.outData), PF_Err_NONE);
        host.inData.sequence_data = host.outData.sequence_data;
    }

    void flatten() {
        ASSERT_EQ(SequenceFlatten(&host.inData, &host.outData), PF_Err_NONE);
        host.inData.sequence_data = host.outData.sequence_data;
    }

    /// As a host does: the saved block is its own, and goes when the new handle is there.
    void resetup() {
        PF_Handle saved = host.inData.sequence_data;
        ASSERT_EQ(SequenceResetup(&host.inData, &host.outData), PF_Err_NONE);
        ASSERT_NE(host.outData.sequence_data, saved);
        host.inData.sequence_data = host.outData.sequence_data;
        host.dispose(saved);
    }

    void setdown() {
        ASSERT_EQ(SequenceSetdown(&host.inData, &host.outData), PF_Err_NONE);
        EXPECT_EQ(host.outData.sequence_data, nullptr);
        host.inData.sequence_data = nullptr;
    }

    SequenceData& record() { return *sequenceData(&host.inData); }

    FakeHandleHost host;
};

// The 64-bit FNV-1a of "foob" in the test vectors that its authors publish.
TEST(DiskIdHash, IsFnv1aOverTheFourBytes) {
    EXPECT_EQ(DiskIdHash()(0x626f6f66), 0xdd120e790c2512afu);
    EXPECT_NE(DiskIdHash()(1), DiskIdHash()(1 << 24));
}

TEST_F(Sequence, SetupGivesAnEmptyRecordThatSaysItIsForUse) {
    setup();
    EXPECT_EQ(host.bytesOf(host.inData.sequence_data).size(), sizeof(SequenceData));
    EXPECT_EQ(host.bytesOf(host.inData.sequence_data)[0], std::byte{0});
    EXPECT_FALSE(record().flatten);
    EXPECT_TRUE(record().script.empty());
    EXPECT_TRUE(record().scriptError.empty());
    EXPECT_TRUE(record().paramNames.empty());
    EXPECT_EQ(host.liveLocks(), 0);
    setdown();
}

TEST_F(Sequence, SetdownFreesTextsLongEnoughForTheHeap) {
    setup();
    record().script = std::string(1000, 's');
    record().scriptError = std::string(1000, 'e');
    record().paramNames[5] = std::string(1000, 'n');
    setdown();
}

TEST_F(Sequence, SetdownFreesTheSavedFormAndTakesNoHandleAndAnEmptyOne) {
    setup();
    flatten();
    setdown();
    setdown();
    host.inData.sequence_data = host.newHandle({});
    setdown();
}

TEST_F(Sequence, SavedFormOfAnEmptyRecordIsTheHeaderAndTwoZeroes) {
    setup();
    flatten();
    EXPECT_EQ(host.bytesOf(host.inData.sequence_data), bytes(header(1, 1) + std::string(2, '\0')));
    setdown();
}

TEST_F(Sequence, SavedFormHoldsScriptThenNamesAsJson) {
    setup();
    record().script = "x = 1";
    record().scriptError = "not saved";
    record().paramNames[-2] = "Speed";
    flatten();
    const std::string expected = header(6, 30) + std::string("x = 1\0", 6) + R"({"paramNames":[[-2,"Speed"]]})" + '\0';
    EXPECT_EQ(host.bytesOf(host.inData.sequence_data), bytes(expected));
    setdown();
}

TEST_F(Sequence, NamesKeepTheirBytesAndEscapeQuotes) {
    setup();
    record().paramNames[7] = "a \"b\" \\ \xc3\xa9";
    flatten();
    const auto saved = host.bytesOf(host.inData.sequence_data);
    const std::string json(reinterpret_cast<const char*>(saved.data()) + 25);
    EXPECT_EQ(json, "{\"paramNames\":[[7,\"a \\\"b\\\" \\\\ \xc3\xa9\"]]}");
    resetup();
    EXPECT_EQ(record().paramNames.at(7), "a \"b\" \\ \xc3\xa9");
    setdown();
}

TEST_F(Sequence, FlattenAndResetupKeepScriptAndNamesAndMakeTheErrorAnew) {
    const std::string script = "-- spin\nangle = angle + i * 10\nr = 0.5\n" + std::string(500, ' ');
    ParameterNames names;
    for (A_long id = -50; id < 50; ++id) {
        names[id * 7919] = "Name " + std::to_string(id);
    }
    setup();
    record().script = script;
    record().scriptError = "an old failure";
    record().paramNames = names;
    flatten();
    resetup();
    EXPECT_EQ(record().script, script);
    EXPECT_EQ(record().paramNames, names);
    EXPECT_EQ(record().scriptError, compileErrorOf(&host.inData, script));
    setdown();
}

TEST_F(Sequence, EverySequenceOfSavingAndLoadingEndsWithTheSameBytes) {
    setup();
    record().script = "a = 1";
    record().paramNames = {{1, "one"}};
    flatten();
    const auto saved = host.bytesOf(host.inData.sequence_data);
    for (int n = 0; n < 3; ++n) {
        resetup();
        flatten();
        EXPECT_EQ(host.bytesOf(host.inData.sequence_data), saved);
    }
    setdown();
}

TEST_F(Sequence, ScriptEndsAtItsFirstZeroByteAndTheRestOfItsRoomIsZero) {
    setup();
    record().script = std::string("ab\0cd", 5);
    record().paramNames[3] = "n";
    flatten();
    const auto saved = host.bytesOf(host.inData.sequence_data);
    EXPECT_EQ(std::vector<std::byte>(saved.begin() + 24, saved.begin() + 30), bytes({"ab\0\0\0\0", 6}));
    resetup();
    EXPECT_EQ(record().script, "ab");
    EXPECT_EQ(record().paramNames.at(3), "n");
    setdown();
}

TEST_F(Sequence, CopyOfTheSavedFormLeavesTheRecord) {
    setup();
    record().script = "y = 2";
    record().scriptError = "kept";
    PF_Handle live = host.inData.sequence_data;
    ASSERT_EQ(SequenceGetFlattened(&host.inData, &host.outData), PF_Err_NONE);
    EXPECT_NE(host.outData.sequence_data, live);
    EXPECT_EQ(host.bytesOf(host.outData.sequence_data), bytes(header(6, 1) + std::string("y = 2\0\0", 7)));
    EXPECT_EQ(record().script, "y = 2");
    EXPECT_EQ(record().scriptError, "kept");
    host.dispose(host.outData.sequence_data);
    setdown();
}

TEST_F(Sequence, FlatteningNothingIs512) {
    EXPECT_EQ(SequenceFlatten(&host.inData, &host.outData), 512);
    EXPECT_EQ(SequenceGetFlattened(&host.inData, &host.outData), 512);
    EXPECT_EQ(host.outData.sequence_data, nullptr);
}

TEST_F(Sequence, ResetupOfNothingOrAnEmptyBlockDoesNothing) {
    EXPECT_EQ(SequenceResetup(&host.inData, &host.outData), PF_Err_NONE);
    EXPECT_EQ(host.outData.sequence_data, nullptr);
    host.inData.sequence_data = host.newHandle({});
    EXPECT_EQ(SequenceResetup(&host.inData, &host.outData), PF_Err_NONE);
    EXPECT_EQ(host.outData.sequence_data, nullptr);
    host.dispose(host.inData.sequence_data);
}

TEST_F(Sequence, NameThatIsNotUtf8ThrowsAndTheRecordStays) {
    setup();
    record().paramNames[1] = "\xff";
    PF_Handle live = host.inData.sequence_data;
    host.outData.sequence_data = live;
    EXPECT_THROW(SequenceFlatten(&host.inData, &host.outData), std::exception);
    EXPECT_THROW(SequenceGetFlattened(&host.inData, &host.outData), std::exception);
    EXPECT_EQ(host.outData.sequence_data, live);
    EXPECT_EQ(record().paramNames.at(1), "\xff");
    EXPECT_EQ(host.liveHandles(), 1u);
    setdown();
}

TEST_F(Sequence, WithoutMemorySetupIs4AndFlatteningIs512) {
    host.failCall(2);
    EXPECT_EQ(SequenceSetup(&host.inData, &host.outData), 4);
    host.failCall(3);
    EXPECT_EQ(SequenceSetup(&host.inData, &host.outData), 4);
    EXPECT_EQ(host.outData.sequence_data, nullptr);
    setup();
    record().script = "kept";
    for (const auto& command : {SequenceFlatten, SequenceGetFlattened}) {
        host.failCall(3);  // after the two suites
        EXPECT_EQ(command(&host.inData, &host.outData), 512);
        EXPECT_EQ(record().script, "kept");
    }
    setdown();
}

// Fails the n-th host call of each command, for n upwards until the command gets through.
TEST_F(Sequence, NoFailingHostCallLeavesAnythingBehind) {
    setup();
    record().script = "kept";
    PF_Handle live = host.inData.sequence_data;
    PF_Handle saved = host.newHandle(bytes(header(6, 1) + std::string("x = 1\0\0", 7)));
    struct Command {
        PF_Err (*run)(PF_InData*, PF_OutData*);
        PF_Handle sequence;
    };
    for (const auto& [run, sequence] :
         {Command{SequenceSetup, nullptr}, Command{SequenceResetup, saved}, Command{SequenceGetFlattened, live}}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 20) << "a command never gets through";
            host.inData.sequence_data = sequence;
            host.outData.sequence_data = nullptr;
            host.failCall(n);
            PF_Err error = PF_Err_NONE;
            try {
                error = run(&host.inData, &host.outData);
            } catch (PF_Err thrown) {
                error = thrown;
            } catch (PF_ErrorValue thrown) {  // no memory to compile the script in
                error = thrown;
            }
            const bool gotThrough = !host.failed();
            host.failCall(0);
            EXPECT_EQ(host.outData.sequence_data != nullptr, gotThrough) << n << ", error " << error;
            EXPECT_EQ(host.liveLocks(), 0) << n;
            EXPECT_EQ(host.liveSuites(), 0) << n;
            if (gotThrough && run == SequenceGetFlattened) {
                host.dispose(host.outData.sequence_data);
            } else if (gotThrough) {
                host.inData.sequence_data = host.outData.sequence_data;
                setdown();
            }
            EXPECT_EQ(host.liveHandles(), 2u) << n;
            if (gotThrough) {
                break;
            }
        }
    }
    host.dispose(saved);
    host.inData.sequence_data = live;
    EXPECT_EQ(record().script, "kept");
    setdown();
}

TEST_F(Sequence, RecordIsNullWithoutAHandleOrABlock) {
    EXPECT_EQ(sequenceData(&host.inData), nullptr);
    host.inData.sequence_data = host.newHandle({});
    EXPECT_EQ(sequenceData(&host.inData), nullptr);
    EXPECT_EQ(SequenceFlatten(&host.inData, &host.outData), 512);
    host.dispose(host.inData.sequence_data);
}

TEST_F(Sequence, AskingForTheRecordOfASavedFormIsAnAssertion) {
    setup();
    flatten();
    EXPECT_DEATH(sequenceData(&host.inData), "!result->flatten, file Source/Sequence");
    host.absentSuites = {"PF Effect Sequence Data Suite"};
    EXPECT_DEATH(SequenceAccess(&host.inData), "!result->flatten, file Source/Sequence");
    setdown();
}

TEST_F(Sequence, AccessGoesThroughTheSuite) {
    setup();
    record().script = "shared";
    host.constSequenceData = host.inData.sequence_data;
    host.inData.sequence_data = nullptr;
    {
        const SequenceAccess access(&host.inData);
        EXPECT_EQ(host.liveSuites(), 1);
        ASSERT_NE(access.get(), nullptr);
        EXPECT_EQ(access->script, "shared");
        access->scriptError = "written";
    }
    EXPECT_EQ(host.liveSuites(), 0);
    host.inData.sequence_data = host.constSequenceData;
    EXPECT_EQ(record().scriptError, "written");
    setdown();
}

TEST_F(Sequence, AccessWithoutTheSuiteTakesTheInDatasHandle) {
    setup();
    host.absentSuites = {"PF Effect Sequence Data Suite"};
    EXPECT_EQ(SequenceAccess(&host.inData).get(), &record());
    PF_InData withoutSuites = host.inData;
    withoutSuites.pica_basicP = nullptr;
    EXPECT_EQ(SequenceAccess(&withoutSuites).get(), &record());
    setdown();
}

TEST_F(Sequence, AccessThatTheSuiteRefusesThrowsItsCode) {
    host.constSequenceError = 13;
    try {
        const SequenceAccess access(&host.inData);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Exception& failure) {
        EXPECT_EQ(failure.code(), 13);
    }
    EXPECT_EQ(host.liveSuites(), 0);
}

TEST_F(Sequence, AccessToNoDataIsNull) {
    EXPECT_EQ(SequenceAccess(&host.inData).get(), nullptr);
}

TEST_F(Sequence, OnlyTheFirstScriptErrorIsKeptAlsoBetweenThreads) {
    setup();
    EXPECT_FALSE(hasScriptError(record()));
    std::atomic<int> kept = 0;
    std::vector<std::thread> threads;
    for (int n = 0; n < 8; ++n) {
        threads.emplace_back([&, n] {
            kept += recordScriptError(record(), "failure " + std::to_string(n)) ? 1 : 0;
            EXPECT_TRUE(hasScriptError(record()));
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(kept, 1);
    EXPECT_EQ(record().scriptError.substr(0, 8), "failure ");
    setdown();
}

}  // namespace
}  // namespace Tessavoy
