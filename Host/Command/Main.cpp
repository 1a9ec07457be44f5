#include <vector>

#include "Host/Command/Arguments.h"
#include "Host/Command/CommandLine.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/Interruption.h"
#include "Host/Command/OutputChannel.h"

int main(int argc, char** argv) {
    TessavoyHost::OutputChannel output;
    TessavoyHost::letWritesPastSizeLimitFail();
    TessavoyHost::guardSetUp();
    const auto arguments = TessavoyHost::programArguments(argc, argv);
    std::vector<const char*> texts;
    for (const auto& argument : arguments) {
        texts.push_back(argument.c_str());
    }
    const auto status = TessavoyHost::runCommandLine(static_cast<int>(texts.size()), texts.data(), output);
    TessavoyHost::allowExit();
    return static_cast<int>(status);
}
