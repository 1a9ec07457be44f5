#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Host/CommandResult.h"
#include "Host/HostServices.h"
#include "Host/Ledger.h"
#include "Host/Rational.h"
#include "Host/RegisteredParameter.h"
#include "Host/World.h"
#include "HostInterface/Effect.h"

namespace TessavoyHost {

class Drawing;
class EffectHost;
class EffectInstance;

// At which moment and how a command looks at the composition.
struct CommandSetting {
    int frame = 0;  // of the composition
    int bitsPerChannel = 8;
    Rational downsampleX, downsampleY;
    const std::atomic<bool>* cancel = nullptr;
    PF_Handle sequenceData = nullptr;
};

// The worlds of one smart render, from the pre-render to its end.
struct FrameWorlds {
    struct Checkout {
        int parameter = 0;                   // 0: the effect's own layer
        Region region;                       // in downsampled pixels of that layer
        double time = 0;                     // composition seconds
        std::shared_ptr<const World> world;  // once its pixels were asked for
        PF_LayerDef record{};
        bool everLent = false;
    };
    std::map<A_long, Checkout> checkouts;  // by the module's checkout id
    World output;
};

// One running command: its own in-data and out-data, and all that the module borrows meanwhile. The effect_ref of the
// in-data points here. Commands nest (a host call may ask the module for an interpolated value) and run on several
// threads at once; each belongs to one thread, but its host calls may come from any.
class CommandContext {
public:
    CommandContext(EffectHost& host, EffectInstance* instance, PF_Cmd command, const CommandSetting& setting);
    ~CommandContext();
    CommandContext(const CommandContext&) = delete;
    CommandContext& operator=(const CommandContext&) = delete;

    // Calls the module. An exception that leaves it is noted as a broken promise, with its value as the error where it
    // is one of the host's.
    PF_Err run(PF_ParamDef** params = nullptr, PF_LayerDef* output = nullptr, void* extra = nullptr);

    // Keeps a handle beyond this command: the module handed it over.
    void adopt(PF_Handle handle);

    // After the run: the answer, with everything named that was not given back.
    CommandResult finish();

    // The innermost command on this thread, or null.
    static CommandContext* current();
    // The command behind an effect_ref; without one the current. Null when it is neither.
    static CommandContext* of(PF_ProgPtr reference);

    PF_ProgPtr reference() { return reinterpret_cast<PF_ProgPtr>(this); }
    // Composition seconds of a moment that the module names in layer time.
    double compositionSeconds(A_long layerTime, A_u_long timeScale) const;
    bool cancelled() const { return setting.cancel != nullptr && *setting.cancel; }

    // Notes a broken promise.
    void breaks(const std::string& text);
    // Notes a failure of the host's own: what the command makes is not to be trusted, and where the module answers 0
    // all the same, the command's error is this one. The first failure counts.
    void fails(std::string_view text, PF_Err error = PF_Err_INTERNAL_STRUCT_DAMAGED) noexcept;
    // The same for want of memory in the host call of that name, a literal, unless the module passes an error on. Takes
    // no memory.
    void runsOutOfMemory(const char* call) noexcept;
    // Notes this command's failures on the one inside which it ran.
    void passFailuresTo(CommandContext& outer) const noexcept;
    // Notes what the user is to be told where the module has no message of its own: what it reports through the host,
    // or the host's remark. The first counts.
    void reports(const std::string& text);

    // Throws HostCallFailure outside of a command on an instance.
    EffectInstance& instance() const;

    EffectHost& host;
    HostServices& services;
    EffectInstance* const instanceOrNull;
    const PF_Cmd command;
    const CommandSetting setting;

    PF_InData in{};
    PF_OutData out{};
    Ledger ledger;

    // For PF_Cmd_PARAMS_SETUP: where add_param puts parameters.
    std::vector<RegisteredParameter>* registration = nullptr;
    A_long customEvents = 0;    // what register_ui asked for
    bool projectDirty = false;  // the module says that it changed the project
    // For the smart render commands.
    FrameWorlds* frame = nullptr;
    // For draw events: what the module draws.
    Drawing* drawing = nullptr;

    // Numbers the parameters that are checked out, from 1.
    A_long nextTicket() { return ++mTickets; }

    // Makes a command the current one of this thread as long as it lives; for threads that work for the command.
    class Scope {
    public:
        explicit Scope(CommandContext* context);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        CommandContext* const mBefore;
    };

private:
    struct Failure {
        std::string text;
        PF_Err error = PF_Err_NONE;
    };

    void describeMoment();
    Failure failure() const;

    volatile A_u_longlong mMark;
    std::atomic<A_long> mTickets = 0;
    std::mutex mMutex;
    Failure mFailure;
    std::atomic<const char*> mExhaustedCall = nullptr;
    std::string mReport;
    std::vector<std::string> mBroken;
    PF_Err mError = PF_Err_NONE;
};

std::string commandName(PF_Cmd command);

}  // namespace TessavoyHost
