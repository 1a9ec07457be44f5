#include "Host/Dialogs/DialogScript.h"

namespace TessavoyHost {

void serveDialogs(HostServices& services, DialogUser& user) {
    services.hooks.runScript = [&user](const std::string& script) { return runDialogScript(script, user); };
}

}  // namespace TessavoyHost
