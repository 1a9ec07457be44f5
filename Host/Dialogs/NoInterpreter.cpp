#include "Host/Dialogs/DialogScript.h"

// Stands in for the interpreter in builds without it.

namespace TessavoyHost {

ScriptAnswer runDialogScript(const std::string&, DialogUser&) {
    return {"this build of the host has no interpreter of dialog scripts", true};
}

}  // namespace TessavoyHost
