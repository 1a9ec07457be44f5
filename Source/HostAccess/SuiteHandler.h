#pragma once

#include "HostInterface/AegpSuites.h"
#include "HostInterface/Constants.h"
#include "HostInterface/DrawbotSuites.h"
#include "HostInterface/Effect.h"
#include "HostInterface/SuiteIdentity.h"
#include "HostInterface/Suites.h"

#include <array>
#include <cstddef>
#include <type_traits>

namespace Tessavoy {

/// The host's suites for the span of one scope on one thread: each is acquired on first use, cached, and released
/// exactly once when the handler ends. Acquiring costs the host a look-up, so a new handler is made wherever one is
/// needed.
class SuiteHandler {
public:
    /// Throws the plain integer 516 (PF_Err_BAD_CALLBACK_PARAM) when there is no basic suite. The suite stays the
    /// host's.
    explicit SuiteHandler(const SPBasicSuite* basic);

    /// Releases every suite that was acquired; errors of the host are ignored.
    ~SuiteHandler();

    SuiteHandler(const SuiteHandler&) = delete;
    SuiteHandler& operator=(const SuiteHandler&) = delete;

    /// The table of a suite. Throws the plain integer 516 when the host has no such suite.
    template <class Suite>
    const Suite& get() {
        using Identity = SuiteIdentity<Suite>;
        return *static_cast<const Suite*>(acquire(slotOf<Suite>(), Identity::name, Identity::version));
    }

private:
    template <class... Suites>
    struct SuiteList {
        static constexpr std::size_t count = sizeof...(Suites);

        template <class Suite>
        static constexpr std::size_t indexOf() {
            constexpr std::array<bool, count> matches = {std::is_same_v<Suite, Suites>...};
            std::size_t index = 0;
            while (index < count && !matches[index]) {
                ++index;
            }
            return index;
        }
    };

    /// Every suite and version that the effect knows, more than it calls.
    using KnownSuites =
        SuiteList<PF_HandleSuite1, PF_ANSICallbacksSuite1, PF_WorldSuite2, PF_PixelDataSuite1, PF_iterateFloatSuite1,
                  PF_Iterate8Suite1, PF_iterate16Suite1, PF_ParamUtilsSuite3, PF_PathQuerySuite1, PF_PathDataSuite1,
                  PF_EffectCustomUISuite1, PF_EffectCustomUIOverlayThemeSuite1, PFAppSuite4, PF_AdvAppSuite2,
                  PF_EffectSequenceDataSuite1, AEGP_UtilitySuite3, AEGP_UtilitySuite5, AEGP_PFInterfaceSuite1,
                  AEGP_EffectSuite2, AEGP_StreamSuite2, AEGP_StreamSuite4, AEGP_StreamSuite5, AEGP_DynamicStreamSuite4,
                  AEGP_LayerSuite5, AEGP_LayerSuite8, AEGP_CompSuite4, AEGP_ItemSuite6, AEGP_MemorySuite1,
                  DRAWBOT_DrawbotSuite1, DRAWBOT_SupplierSuite1, DRAWBOT_SurfaceSuite1, DRAWBOT_PathSuite1>;

    template <class Suite>
    static constexpr std::size_t slotOf() {
        constexpr std::size_t slot = KnownSuites::indexOf<Suite>();
        static_assert(slot < KnownSuites::count, "the suite is missing in KnownSuites");
        return slot;
    }

    struct Slot {
        const void* table = nullptr;
        const char* name = nullptr;
        A_long version = 0;
    };

    const void* acquire(std::size_t slot, const char* name, A_long version);

    const SPBasicSuite* mBasic;
    std::array<Slot, KnownSuites::count> mSlots{};
};

inline constexpr const char* defaultAcquireFailure = "Not able to acquire AEFX Suite.";
inline constexpr const char* defaultReleaseFailure = "Not able to release AEFX Suite.";

/// Acquires one suite outside a SuiteHandler. When the host has no basic suite or not this one, the failure text goes
/// to return_msg, PF_OutFlag_DISPLAY_ERROR_MESSAGE is set and 516 (PF_Err_BAD_CALLBACK_PARAM) returned; *suite is then
/// null.
PF_Err acquireSuite(PF_InData* inData, PF_OutData* outData, const char* name, A_long version, const char* failureText,
                    const void** suite);

/// Gives back what acquireSuite got, with the same rule for a host without a basic suite.
PF_Err releaseSuite(PF_InData* inData, PF_OutData* outData, const char* name, A_long version, const char* failureText);

/// Writes "%s" of the text into return_msg (255 characters at most) and asks the host to show it.
void reportMessage(PF_OutData* outData, const char* text);

}  // namespace Tessavoy
