#include "Source/Parameter/Registration.h"

#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/ArbitraryDefaultValue.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/ParameterDefinition.h"
#include "Source/Parameter/StringTable.h"

#include <cstring>

namespace Tessavoy {

namespace {

class Registration {
public:
    Registration(PF_InData* inData, PF_OutData* outData)
        : mInData(inData), mOutData(outData), mSuites(inData->pica_basicP) {}

    PF_Err run(std::span<const ParameterDescription> parameters) {
        mOutData->num_params = 1;
        for (const ParameterDescription& parameter : parameters) {
            const PF_Err error = add(parameter);
            if (error != PF_Err_NONE) {
                return error;
            }
        }
        return mDefaultError != PF_Err_NONE ? mDefaultError : mControlError;
    }

private:
    PF_Err add(const ParameterDescription& parameter) {
        PF_ParamDef definition;
        std::memset(&definition, 0, sizeof definition);
        writeDefinition(parameter.declaration, definition);
        definition.uu.id = parameterDiskId(parameter.id);
        writeLabel(parameter, definition.name);
        const auto* arbitrary = std::get_if<Controls::Arbitrary>(&parameter.declaration);
        return arbitrary != nullptr ? addArbitrary(arbitrary->dephault, definition) : addToHost(definition);
    }

    void writeLabel(const ParameterDescription& parameter, A_char (&name)[32]) {
        const A_char* text = GetStringPtr(labelRow(parameter.declaration));
        if (parameter.slot > 0) {
            mSuites.get<PF_ANSICallbacksSuite1>().sprintf(name, text, parameter.slot);
        } else {
            std::strncpy(name, text, sizeof name - 1);
        }
    }

    PF_Err addArbitrary(ArbitraryDefault kind, PF_ParamDef& definition) {
        ArbitraryDefaultValue value(mInData, mOutData);
        if (mDefaultError == PF_Err_NONE) {
            mDefaultError = value.make(kind);
        }
        definition.u.arb_d.id = static_cast<A_short>(definition.uu.id);
        definition.u.arb_d.dephault = value.handle();
        const PF_Err error = addToHost(definition);
        if (error == PF_Err_NONE) {
            value.release();
        }
        if (error == PF_Err_NONE && kind == ArbitraryDefault::Script) {
            mControlError = registerControl();
        }
        return error;
    }

    PF_Err addToHost(PF_ParamDef& definition) {
        constexpr PF_ParamIndex atTheEnd = -1;
        const PF_Err error = mInData->inter.add_param(mInData->effect_ref, atTheEnd, &definition);
        if (error == PF_Err_NONE) {
            ++mOutData->num_params;
        }
        return error;
    }

    PF_Err registerControl() {
        PF_CustomUIInfo info = {};
        info.events = PF_CustomEFlag_EFFECT;
        return mInData->inter.register_ui(mInData->effect_ref, &info);
    }

    PF_InData* mInData;
    PF_OutData* mOutData;
    SuiteHandler mSuites;
    PF_Err mDefaultError = PF_Err_NONE;
    PF_Err mControlError = PF_Err_NONE;
};

}  // namespace

PF_Err registerParameters(PF_InData* inData, PF_OutData* outData) {
    return registerParameters(inData, outData, parameterTree());
}

PF_Err registerParameters(PF_InData* inData, PF_OutData* outData, std::span<const ParameterDescription> parameters) {
    return Registration(inData, outData).run(parameters);
}

}  // namespace Tessavoy
