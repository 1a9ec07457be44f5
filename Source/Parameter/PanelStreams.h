#pragma once

#include "HostInterface/Effect.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <string_view>

/// How parameters show in the host's panel: each is a stream there, which can be hidden and renamed. Missing suites
/// throw the plain integer 516, a missing plug-in id Exception with 512.
namespace Tessavoy {

/// Whether the host lets the effect arrange its panel: the editing host doesn't, nor does one that gave no plug-in id.
bool hasStreams(const PF_InData* inData);

/// Hides or shows a parameter, not undoably. The host's first error; what was lent is given back all the same.
PF_Err setParamHidden(const PF_InData* inData, SuiteHandler& suites, std::string_view id, bool hidden);

/// The same with the host's error thrown as Exception. True: the panel counts as changed whatever it was before.
bool setParamVisible(const PF_InData* inData, SuiteHandler& suites, std::string_view id, bool show);

/// Gives a parameter another name (UTF-8); whether it had a different one. A group's name is that of the parameter that
/// starts it. The host's error is thrown as Exception.
bool setParamLabel(const PF_InData* inData, SuiteHandler& suites, PF_ParamIndex index, std::string_view text);

}  // namespace Tessavoy
