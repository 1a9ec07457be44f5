#include "Host/HostServices.h"

#include <atomic>

#include "Host/CommandContext.h"
#include "Host/Suites/Directory.h"

namespace TessavoyHost {
namespace {

std::atomic<HostServices*> latest = nullptr;

}  // namespace

HostServices::HostServices(const HostOptions& hostOptions)
    : options(hostOptions),
      handles(hostOptions.rubbishInFreshMemory),
      basic(basicSuite()),
      utilities(utilityCallbacks()) {
    latest = this;
}

HostServices::~HostServices() {
    HostServices* self = this;
    latest.compare_exchange_strong(self, nullptr);
}

HostServices* HostServices::current() {
    const CommandContext* command = CommandContext::current();
    return command == nullptr ? latest.load() : &command->services;
}

}  // namespace TessavoyHost
