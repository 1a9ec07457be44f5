#pragma once

#include "Host/Command/OutputChannel.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// Reads the command line and does what it asks. Problems go to standard error; the status is the process's.
ExitStatus runCommandLine(int argc, const char* const* argv, OutputChannel& output);

}  // namespace TessavoyHost
