#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Host/CommandResult.h"
#include "Host/EffectInstance.h"
#include "Host/HostServices.h"
#include "Host/ModuleLoader.h"
#include "Host/Project.h"
#include "Host/RegisteredParameter.h"

namespace TessavoyHost {

// What the module says of itself when it is loaded and set up.
struct ModuleDescription {
    std::string name, matchName, category, entryPoint;
    A_long kind = 0;
    A_long apiMajor = 0;
    A_long apiMinor = 0;
    A_u_long version = 0;     // PF_VersionField
    A_long outFlags = 0;      // PF_OutFlag
    A_long outFlags2 = 0;     // PF_OutFlag2
    A_long customEvents = 0;  // PF_CustomEventFlag: which windows send the module events
    std::string about;        // what PF_Cmd_ABOUT answers
};

// Loads an effect module and lives with it as the application does: set-up, registration of the parameters, instances,
// set-down. One host may serve several instances, and instances may render on several threads at once; everything else
// belongs to one thread.
class EffectHost {
public:
    // Loads the module and sets it up. Throws HostError(Module) with the reason.
    explicit EffectHost(const std::filesystem::path& module, const HostOptions& options = {});
    explicit EffectHost(const ModuleEntryPoints& module, const HostOptions& options = {});
    // Sets the module down. Instances must be gone.
    ~EffectHost();

    EffectHost(const EffectHost&) = delete;
    EffectHost& operator=(const EffectHost&) = delete;

    // By index; the first is the input layer, which the module does not register.
    const std::vector<RegisteredParameter>& parameters() const { return mParameters; }
    const ModuleDescription& description() const { return mDescription; }
    bool hasOutFlag(PF_OutFlag flag) const { return (mDescription.outFlags & flag) != 0; }
    bool hasOutFlag2(PF_OutFlag2 flag) const { return (mDescription.outFlags2 & flag) != 0; }

    HostServices& services() { return mServices; }
    // What the host keeps beyond commands: handles of defaults, of instances and of the module itself.
    Ledger& ledger() { return mServices.ledger; }
    Faults& faults() { return mServices.faults; }

    // An instance of the effect on the project's effect layer. Throws HostError.
    std::unique_ptr<EffectInstance> createInstance(const Project& project);

    // One command without an instance: what the module answers is in the result.
    CommandResult command(PF_Cmd command, void* extra = nullptr);

    // Sets the module down before its time and tells what it left; the destructor then does nothing.
    CommandResult setDown();

    // Promises that the module broke outside of instances' commands, one text each.
    const std::vector<std::string>& broken() const { return mBroken; }
    // Adds one; thread safe.
    void noteBroken(const std::string& text);

private:
    friend class CommandContext;

    void describe();
    void setUp();
    void registerParameters();
    void disposeDefaults();
    void noteAll(const std::vector<std::string>& texts);

    HostServices mServices;
    std::unique_ptr<ModuleLoader> mLoader;
    ModuleEntryPoints mModule;
    ModuleDescription mDescription;
    PF_Handle mGlobalData = nullptr;
    std::vector<RegisteredParameter> mParameters;
    std::mutex mBrokenMutex;
    std::vector<std::string> mBroken;
    bool mSetUp = false;
};

}  // namespace TessavoyHost
