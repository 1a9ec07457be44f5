#pragma once

#include <functional>

#include "Host/HostError.h"

namespace TessavoyHost {

// Runs the action, tells its failure on standard error, and gives the exit status. From then on only tearing down is
// left: should the module or a driver crash while it is taken down, the process says so and still ends with the status.
ExitStatus decideStatus(const std::function<ExitStatus()>& action);

// The same without the promise about what follows.
ExitStatus statusOf(const std::function<ExitStatus()>& action);

}  // namespace TessavoyHost
