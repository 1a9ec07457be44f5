#pragma once

#include <string>

#include "Host/Dialogs/Dialog.h"
#include "Host/HostServices.h"

namespace TessavoyHost {

// Runs a dialog script, UTF-8, in an interpreter of its own with a small ScriptUI: windows with panels, fields and
// buttons, which the user answers. The script reaches nothing outside: no files, no host. It ends by itself, with an
// error, or at a limit on its steps and its memory. Gives the value of its last expression as text, or what is wrong
// with it. Throws what the user throws. A build without an interpreter fails every script.
ScriptAnswer runDialogScript(const std::string& script, DialogUser& user);

// From now on the host's dialog scripts are run so. The user must outlive the host's last command.
void serveDialogs(HostServices& services, DialogUser& user);

}  // namespace TessavoyHost
