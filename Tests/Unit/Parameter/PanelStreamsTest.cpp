#include "Source/Parameter/PanelStreams.h"

#include "Source/HostAccess/Exception.h"
#include "Source/Parameter/Catalogue.h"
#include "Tests/Support/SuiteTable.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace Tessavoy {
namespace {

constexpr A_long plugin = 77;

/// An application with one effect, whose streams it lends and whose every call it notes. Calls that can fail are
/// counted; the n-th fails if it is told to.
class StreamHost {
public:
    StreamHost() {
        current = this;
        mBasic.AcquireSuite = acquire;
        mBasic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr {
            --current->suitesOut;
            return 0;
        };
        inData.pica_basicP = &mBasic;
        inData.global_data = &mGlobalBlock;
        inData.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
    }
    ~StreamHost() {
        EXPECT_EQ(suitesOut, 0);
        current = nullptr;
    }
    StreamHost(const StreamHost&) = delete;
    StreamHost& operator=(const StreamHost&) = delete;

    PF_InData inData{};
    std::vector<std::string> calls;
    std::u16string name = u"Old";
    bool givesName = true;    ///< whether a name comes in memory at all
    std::string absentSuite;  ///< by name
    int failingCall = 0;      ///< from 1; 0: none
    int suitesOut = 0;

private:
    static A_Err note(const std::string& text) {
        current->calls.push_back(text);
        const bool fails = static_cast<int>(current->calls.size()) == current->failingCall;
        return fails ? A_Err{PF_Err_INVALID_INDEX} : A_Err{PF_Err_NONE};
    }

    // The lent objects are marks that are never looked into.
    template <class Reference>
    static Reference mark(int& place) {
        return reinterpret_cast<Reference>(&place);
    }

    static A_Err newEffect(AEGP_PluginID id, PF_ProgPtr effect, AEGP_EffectRefH* reference) {
        EXPECT_EQ(id, plugin);
        EXPECT_EQ(effect, current->inData.effect_ref);
        const A_Err error = note("effect");
        *reference = error == 0 ? mark<AEGP_EffectRefH>(current->mEffect) : nullptr;
        return error;
    }
    static A_Err disposeEffect(AEGP_EffectRefH reference) {
        EXPECT_EQ(reference, mark<AEGP_EffectRefH>(current->mEffect));
        return note("dispose of effect");
    }
    static A_Err newStream(AEGP_PluginID id, AEGP_EffectRefH reference, PF_ParamIndex index, AEGP_StreamRefH* stream) {
        EXPECT_EQ(id, plugin);
        EXPECT_EQ(reference, mark<AEGP_EffectRefH>(current->mEffect));
        const A_Err error = note("stream " + std::to_string(index));
        *stream = error == 0 ? mark<AEGP_StreamRefH>(current->mStream) : nullptr;
        return error;
    }
    static A_Err disposeStream(AEGP_StreamRefH stream) {
        EXPECT_EQ(stream, mark<AEGP_StreamRefH>(current->mStream));
        return note("dispose of stream");
    }
    static A_Err streamName(AEGP_PluginID id, AEGP_StreamRefH, A_Boolean forceEnglish, AEGP_MemHandle* memory) {
        EXPECT_EQ(id, plugin);
        EXPECT_EQ(forceEnglish, 0);
        const A_Err error = note("name");
        *memory = error == 0 && current->givesName ? mark<AEGP_MemHandle>(current->mMemory) : nullptr;
        return error;
    }
    static A_Err setFlag(AEGP_StreamRefH, AEGP_DynStreamFlags flag, A_Boolean undoable, A_Boolean set) {
        return note("flag " + std::to_string(flag) + " undoable " + std::to_string(undoable) + " set " +
                    std::to_string(set));
    }
    static A_Err setName(AEGP_StreamRefH, const A_UTF16Char* text) {
        current->name = reinterpret_cast<const char16_t*>(text);
        return note("set name");
    }
    static A_Err lock(AEGP_MemHandle memory, void** address) {
        EXPECT_EQ(memory, mark<AEGP_MemHandle>(current->mMemory));
        const A_Err error = note("lock");
        *address = error == 0 ? current->name.data() : nullptr;
        return error;
    }
    static A_Err unlock(AEGP_MemHandle) { return note("unlock"); }
    static A_Err free(AEGP_MemHandle) { return note("free"); }

    static const void* tableOf(const char* name, std::int32_t version) {
        static const AEGP_PFInterfaceSuite1 interface = [] {
            AEGP_PFInterfaceSuite1 table{};
            table.AEGP_GetNewEffectForEffect = newEffect;
            return table;
        }();
        static const AEGP_EffectSuite2 effects = [] {
            AEGP_EffectSuite2 table{};
            table.AEGP_DisposeEffect = disposeEffect;
            return table;
        }();
        static const AEGP_StreamSuite4 streams = [] {
            AEGP_StreamSuite4 table{};
            table.AEGP_GetNewEffectStreamByIndex = newStream;
            table.AEGP_DisposeStream = disposeStream;
            table.AEGP_GetStreamName = streamName;
            return table;
        }();
        static const AEGP_DynamicStreamSuite4 dynamic = [] {
            AEGP_DynamicStreamSuite4 table{};
            table.AEGP_SetDynamicStreamFlag = setFlag;
            table.AEGP_SetStreamName = setName;
            return table;
        }();
        static const AEGP_MemorySuite1 memory = [] {
            AEGP_MemorySuite1 table{};
            table.AEGP_LockMemHandle = lock;
            table.AEGP_UnlockMemHandle = unlock;
            table.AEGP_FreeMemHandle = free;
            return table;
        }();
        return tableFor(name, version, interface, effects, streams, dynamic, memory);
    }

    static SPErr acquire(const char* name, std::int32_t version, const void** suite) {
        *suite = name == current->absentSuite ? nullptr : tableOf(name, version);
        current->suitesOut += *suite != nullptr ? 1 : 0;
        return *suite != nullptr ? 0 : 1;
    }

    static inline StreamHost* current = nullptr;

    A_long mId = plugin;
    void* mGlobalBlock = &mId;
    int mEffect = 0;
    int mStream = 0;
    int mMemory = 0;
    SPBasicSuite mBasic{};
};

using Calls = std::vector<std::string>;

constexpr const char* hide = "flag 2 undoable 0 set 1";
constexpr const char* show = "flag 2 undoable 0 set 0";

bool setVisible(StreamHost& host, const char* id, bool visible) {
    SuiteHandler suites(host.inData.pica_basicP);
    return setParamVisible(&host.inData, suites, id, visible);
}

bool setLabel(StreamHost& host, PF_ParamIndex index, const char* text) {
    SuiteHandler suites(host.inData.pica_basicP);
    return setParamLabel(&host.inData, suites, index, text);
}

TEST(PanelStreams, AParameterIsHiddenThroughItsStreamAndNotUndoably) {
    StreamHost host;
    EXPECT_TRUE(setVisible(host, "CenterZ", false));
    EXPECT_EQ(host.calls, (Calls{"effect", "stream " + std::to_string(parameterIndex("CenterZ")), hide,
                                 "dispose of stream", "dispose of effect"}));
}

TEST(PanelStreams, AParameterIsShownTheSameWayAndAlwaysCountsAsChanged) {
    StreamHost host;
    EXPECT_TRUE(setVisible(host, "RenderSettingsGroupEnd", true));
    EXPECT_TRUE(setVisible(host, "RenderSettingsGroupEnd", true));
    const Calls once = {"effect", "stream 996", show, "dispose of stream", "dispose of effect"};
    Calls twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(host.calls, twice);
}

TEST(PanelStreams, ANewLabelReplacesTheName) {
    StreamHost host;
    EXPECT_TRUE(setLabel(host, 5,
                         "Gr\xC3\xB6\xC3\x9F"
                         "e"));
    EXPECT_EQ(host.name, u"Gr\u00F6\u00DFe");
    EXPECT_EQ(host.calls, (Calls{"effect", "stream 5", "name", "lock", "unlock", "free", "set name",
                                 "dispose of stream", "dispose of effect"}));
}

TEST(PanelStreams, TheSameLabelChangesNothing) {
    StreamHost host;
    EXPECT_FALSE(setLabel(host, 5, "Old"));
    EXPECT_EQ(host.calls, (Calls{"effect", "stream 5", "name", "lock", "unlock", "free", "dispose of stream",
                                 "dispose of effect"}));
}

TEST(PanelStreams, LabelsAreComparedToTheirEnds) {
    for (const char* label : {"Ol", "Older", "old", ""}) {
        StreamHost host;
        EXPECT_TRUE(setLabel(host, 5, label)) << label;
    }
    StreamHost host;
    host.name.clear();
    EXPECT_FALSE(setLabel(host, 5, ""));
}

TEST(PanelStreams, AStreamWithoutANameGetsOne) {
    StreamHost host;
    host.givesName = false;
    EXPECT_TRUE(setLabel(host, 5, "New"));
    EXPECT_EQ(host.calls, (Calls{"effect", "stream 5", "name", "set name", "dispose of stream", "dispose of effect"}));
}

/// What is lent by one call and given back by another.
struct Loan {
    const char* lent;
    const char* givenBack;
};

void expectNothingOut(const Calls& calls, int failed) {
    for (const Loan& loan : {Loan{"effect", "dispose of effect"}, Loan{"stream", "dispose of stream"},
                             Loan{"name", "free"}, Loan{"lock", "unlock"}}) {
        int out = 0;
        for (std::size_t i = 0; i < calls.size(); ++i) {
            const bool lends = calls[i].rfind(loan.lent, 0) == 0 && static_cast<int>(i) + 1 != failed;
            out += lends ? 1 : calls[i] == loan.givenBack ? -1 : 0;
        }
        EXPECT_EQ(out, 0) << loan.lent << " with call " << failed;
    }
}

/// Fails every call in turn; each must be thrown as it stands, with nothing left out. How many calls there were.
int failEach(const std::function<void(StreamHost&)>& action) {
    for (int call = 1;; ++call) {
        StreamHost host;
        host.failingCall = call;
        try {
            action(host);
            EXPECT_LT(static_cast<int>(host.calls.size()), call) << "an error was lost";
            return call - 1;
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.code(), PF_Err_INVALID_INDEX);
            EXPECT_STREQ(exception.what(), "");
        }
        expectNothingOut(host.calls, call);
    }
}

TEST(PanelStreams, EveryCallThatFailsIsThrownAndNothingStaysOut) {
    EXPECT_EQ(failEach([](StreamHost& host) { setVisible(host, "SortByZ", false); }), 5);
    EXPECT_EQ(failEach([](StreamHost& host) { setLabel(host, 5, "New"); }), 9);
}

TEST(PanelStreams, TheFirstErrorIsTheResultOfHiding) {
    for (int call = 1; call <= 5; ++call) {
        StreamHost host;
        host.failingCall = call;
        SuiteHandler suites(host.inData.pica_basicP);
        EXPECT_EQ(setParamHidden(&host.inData, suites, "SortByZ", true), PF_Err_INVALID_INDEX) << call;
        expectNothingOut(host.calls, call);
    }
}

TEST(PanelStreams, WithoutASuiteNothingIsAskedFor) {
    for (const char* suite :
         {"AEGP PF Interface Suite", "AEGP Effect Suite", "AEGP Stream Suite", "AEGP Dynamic Stream Suite"}) {
        StreamHost host;
        host.absentSuite = suite;
        EXPECT_THROW(setVisible(host, "SortByZ", false), PF_Err) << suite;
        EXPECT_EQ(host.calls, Calls()) << suite;
    }
}

TEST(PanelStreams, NeedAPluginIdAndNotTheEditingHost) {
    StreamHost host;
    EXPECT_TRUE(hasStreams(&host.inData));
    host.inData.appl_id = 0x50724D72;
    EXPECT_FALSE(hasStreams(&host.inData)) << "the editing host";
    host.inData.appl_id = PF_AppID_Compositing;
    void* none = nullptr;
    host.inData.global_data = &none;
    EXPECT_FALSE(hasStreams(&host.inData)) << "a handle without a block";
    host.inData.global_data = nullptr;
    EXPECT_FALSE(hasStreams(&host.inData));
}

}  // namespace
}  // namespace Tessavoy
