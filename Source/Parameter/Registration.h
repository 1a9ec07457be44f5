#pragma once

#include "HostInterface/Effect.h"
#include "Source/Parameter/ParameterTree.h"

#include <span>

namespace Tessavoy {

/// Declares all 996 parameters to the host, in the order of the panel, and the script's control; num_params ends at
/// 997, the input layer included.
///
/// Returns the host's error at once where a parameter is refused. A default of arbitrary data that can't be made
/// doesn't stop the declaring: the first such error is returned at the end, later defaults staying null. Last comes the
/// result of register_ui. Throws the plain integer 516 for a missing suite, std::runtime_error for a parameter without
/// disk id.
PF_Err registerParameters(PF_InData* inData, PF_OutData* outData);

/// The same for these parameters in the place of all 996.
PF_Err registerParameters(PF_InData* inData, PF_OutData* outData, std::span<const ParameterDescription> parameters);

}  // namespace Tessavoy
