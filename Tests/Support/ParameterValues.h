#pragma once

#include "Tests/Support/FakeParameterHost.h"

#include <string>
#include <string_view>
#include <vector>

namespace Tessavoy {

/// Gives every parameter of the host a value of its own kind that no other has, where the kind allows it. Multipliers
/// of noise are not 0.
void setDistinctValues(FakeParameterHost& host);

/// What a snapshot must make of the value of a parameter that setDistinctValues set, as its fields' numbers.
std::vector<double> distinctFields(std::string_view id);

/// The record that the host hands out for a parameter.
PF_ParamDef& valueOf(FakeParameterHost& host, std::string_view id);

}  // namespace Tessavoy
