#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Host/Faults.h"
#include "Host/Handles.h"
#include "Host/Ledger.h"
#include "Host/World.h"
#include "HostInterface/Effect.h"

namespace TessavoyHost {

struct HostOptions {
    bool rubbishInFreshMemory = false;     // fill new handles and worlds with rubbish
    bool withSequenceDataSuite = true;     // "PF Effect Sequence Data Suite", which older hosts lack
    A_long applId = PF_AppID_Compositing;  // what PF_InData::appl_id says
    int iterateThreads = 0;                // that an iterate call may use; 0: one for each core
    bool contextsForWine = false;          // see Host/WineContexts.h
};

// What a dialog script came to. Texts are UTF-8.
struct ScriptAnswer {
    // A text alone is the value of a script that did well.
    ScriptAnswer(std::string answer, bool hasFailed = false) : text(std::move(answer)), failed(hasFailed) {}

    std::string text;  // the value of its last expression, or what is wrong with it
    bool failed;       // it is not in the language, or ended by an error
};

// What only some hosts can do. An empty function is a host that cannot.
struct HostHooks {
    // Runs a dialog script. Throws where the host itself fails.
    std::function<ScriptAnswer(const std::string& script)> runScript;
    // The colour that the user picked, or nothing when the dialog was cancelled.
    std::function<std::optional<PF_PixelFloat>(const std::string& title, const PF_PixelFloat& colour)> pickColor;
};

// What one host serves to its module apart from any command.
struct HostServices {
    explicit HostServices(const HostOptions& hostOptions);
    ~HostServices();
    HostServices(const HostServices&) = delete;
    HostServices& operator=(const HostServices&) = delete;

    // Of the command that runs on this thread; on a thread of the module's own the host that was made last, or null.
    static HostServices* current();

    World::Fill freshFill() const { return options.rubbishInFreshMemory ? World::Fill::Rubbish : World::Fill::None; }

    const HostOptions options;
    HostHooks hooks;
    Faults faults;
    Handles handles;
    Ledger ledger;  // what outlives commands
    SPBasicSuite basic;
    PF_UtilCallbacks utilities;

    // Worlds that the module made, by the address of their pixels.
    std::mutex worldsMutex;
    std::map<const void*, World> worlds;
};

}  // namespace TessavoyHost
