#include "Host/Command/CommandLine.h"
#include "Host/Command/OutputChannel.h"

int main(int argc, char** argv) {
    TessavoyHost::OutputChannel output;
    return static_cast<int>(TessavoyHost::runCommandLine(argc, argv, output));
}
