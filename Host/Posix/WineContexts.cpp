#include "Host/WineContexts.h"

namespace TessavoyHost {

bool runsUnderWine() {
    return false;
}

void shareContextsAtCreation(void*) {}

}  // namespace TessavoyHost
