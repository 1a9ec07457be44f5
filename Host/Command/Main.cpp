#include "Host/Command/CommandLine.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/Interruption.h"
#include "Host/Command/OutputChannel.h"

int main(int argc, char** argv) {
    TessavoyHost::OutputChannel output;
    TessavoyHost::letWritesPastSizeLimitFail();
    TessavoyHost::guardSetUp();
    return static_cast<int>(TessavoyHost::runCommandLine(argc, argv, output));
}
