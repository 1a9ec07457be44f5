#pragma once

#include <functional>
#include <string>

#include "Host/ModuleLoader.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"
#include "HostInterface/SuiteIdentity.h"

namespace FakeEffect {

// The parameters that it registers, by index.
enum Index {
    InputLayer,
    Slider,       // default 3
    FloatSlider,  // default 1.5
    Angle,        // default 90 degrees
    Checkbox,     // default on, cannot vary or blend
    Popup,        // "One|Two|Three", default 2, cannot vary or blend
    Color,        // default red 10, green 20, blue 30, alpha 255
    Point,        // default 50 %, 25 %
    Point3D,      // default 0, 100 %, 0
    Layer,
    Path,
    Data,  // one double, default 7; blends; drawn by the effect in 120 by 40 pixels
    GroupStart,
    Button,
    GroupEnd,
    ParameterCount
};

inline constexpr A_long version = 626176;
inline constexpr A_long diskIdOf(int index) {
    return 100 + index;
}
inline constexpr A_u_longlong dataReference = 0x0102030405060708;

// What a test wants done in place of the usual. An empty function leaves the usual: a command that copies the input to
// the output, and nothing else.
struct Hooks {
    std::function<PF_Err(PF_InData*, PF_OutData*)> globalSetup;  // after the usual one
    std::function<PF_Err(PF_InData*, PF_OutData*)> paramsSetup;  // after the usual one
    std::function<void(int, PF_ParamDef&)> define;               // changes a definition before it is registered
    std::function<PF_Err(PF_InData*, PF_OutData*)> queryFlags;
    std::function<PF_Err(PF_InData*, PF_OutData*, PF_PreRenderExtra*)> preRender;
    std::function<PF_Err(PF_InData*, PF_OutData*, PF_SmartRenderExtra*)> render;
    std::function<PF_Err(PF_InData*, PF_OutData*, PF_ParamDef**, void*)> userChangedParam;
    std::function<PF_Err(PF_InData*, PF_OutData*, PF_ParamDef**)> updateParamsUi;
    std::function<PF_Err(PF_InData*, PF_OutData*, PF_ParamDef**, PF_EventExtra*)> event;
    A_long outFlags = 0;
    A_long outFlags2 = PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA;
};

Hooks& hooks();

// To be given to EffectHost. One at a time: the hooks are shared.
TessavoyHost::ModuleEntryPoints entryPoints();

// The usual commands, for hooks that add to them.
PF_Err usualPreRender(PF_InData* inData, PF_PreRenderExtra* extra);
PF_Err usualRender(PF_InData* inData, PF_SmartRenderExtra* extra);

// Acquires a suite for one scope. table is null when the host has none.
template <class Suite>
class Acquired {
public:
    explicit Acquired(PF_InData* inData) : mBasic(inData->pica_basicP) {
        const void* found = nullptr;
        mBasic->AcquireSuite(SuiteIdentity<Suite>::name, SuiteIdentity<Suite>::version, &found);
        table = static_cast<const Suite*>(found);
    }
    ~Acquired() {
        if (table != nullptr)
            mBasic->ReleaseSuite(SuiteIdentity<Suite>::name, SuiteIdentity<Suite>::version);
    }
    Acquired(const Acquired&) = delete;
    Acquired& operator=(const Acquired&) = delete;

    const Suite* operator->() const { return table; }

    const Suite* table = nullptr;

private:
    const SPBasicSuite* mBasic;
};

// Checks a parameter out at the current time and in again.
struct Value {
    PF_Err error = 0;
    PF_ParamDef parameter{};
};
Value valueOf(PF_InData* inData, int index);

// The number in a handle of the Data parameter.
double numberIn(PF_ArbitraryH handle);
void setNumberIn(PF_ArbitraryH handle, double number);

// The bytes of the sequence data: it is a copy of the flat form whose first byte is 0 while it is in use.
std::string sequenceBytes(const void* const* handle, std::size_t size);

}  // namespace FakeEffect
