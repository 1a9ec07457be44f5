#include "Tests/Support/FakeParameterHost.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace Tessavoy {

namespace {

FakeParameterHost* host = nullptr;

PF_Err addParam(PF_ProgPtr effect, PF_ParamIndex index, PF_ParamDefPtr definition) {
    EXPECT_EQ(effect, host->inData().effect_ref);
    host->added.push_back(*definition);
    host->addedAt.push_back(index);
    return host->addFailure.of(host->added.size());
}

PF_Err registerUi(PF_ProgPtr effect, PF_CustomUIInfo* info) {
    EXPECT_EQ(effect, host->inData().effect_ref);
    host->controls.push_back(*info);
    host->addedBeforeControl = host->added.size();
    return host->controlFailure.of(host->controls.size());
}

PF_Err checkoutParam(PF_ProgPtr effect, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                     PF_ParamDef* record) {
    EXPECT_EQ(effect, host->inData().effect_ref);
    host->checkouts.push_back({index, time, step, scale, record});
    const PF_Err error = host->checkoutFailure.of(host->checkouts.size());
    const auto value = host->values.find(index);
    if (error == 0 && value != host->values.end()) {
        *record = value->second;
    }
    const auto ofCall = host->valuesOfCall.find(host->checkouts.size());
    if (error == 0 && ofCall != host->valuesOfCall.end()) {
        *record = ofCall->second;
    }
    return error;
}

PF_Err checkinParam(PF_ProgPtr effect, PF_ParamDef* record) {
    EXPECT_EQ(effect, host->inData().effect_ref);
    host->checkins.push_back(record);
    return host->checkinFailure.of(host->checkins.size());
}

std::int32_t formatText(A_char* target, const A_char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsprintf(target, format, arguments);
    va_end(arguments);
    return length;
}

bool isAnsi(const char* name) {
    return std::string(name) == "PF ANSI Suite";
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    if (!isAnsi(name)) {
        return host->handleBasic->AcquireSuite(name, version, suite);
    }
    static const PF_ANSICallbacksSuite1 ansi = [] {
        PF_ANSICallbacksSuite1 table{};
        table.sprintf = formatText;
        return table;
    }();
    *suite = nullptr;
    EXPECT_EQ(version, 1);
    if (host->handles.absentSuites.contains(name) || host->handles.failsNow()) {
        return 1;
    }
    ++host->handles.suiteCount;
    *suite = &ansi;
    return 0;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    if (!isAnsi(name)) {
        return host->handleBasic->ReleaseSuite(name, version);
    }
    --host->handles.suiteCount;
    return 0;
}

}  // namespace

FakeParameterHost::FakeParameterHost() : handleBasic(handles.inData.pica_basicP) {
    EXPECT_EQ(host, nullptr);
    host = this;
    mBasic.AcquireSuite = acquireSuite;
    mBasic.ReleaseSuite = releaseSuite;
    PF_InData& in = inData();
    in.pica_basicP = &mBasic;
    in.inter.add_param = addParam;
    in.inter.register_ui = registerUi;
    in.inter.checkout_param = checkoutParam;
    in.inter.checkin_param = checkinParam;
    in.current_time = 12;
    in.time_step = 3;
    in.time_scale = 25;
}

FakeParameterHost::~FakeParameterHost() {
    host = nullptr;
}

}  // namespace Tessavoy
