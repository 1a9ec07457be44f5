#include "Host/Command/Outlets.h"

#include <csignal>

#include "Host/Command/Descriptors.h"
#include "Host/Command/JsonLine.h"

namespace TessavoyHost {
namespace {

// A handler reads both, so nothing here may need more than a plain load.
volatile std::sig_atomic_t wordsDescriptor = standardError;
volatile std::sig_atomic_t objectsDescriptor = -1;

}  // namespace

Outlets outlets() noexcept {
    return {wordsDescriptor, objectsDescriptor};
}

void setOutlets(const Outlets& outlets) noexcept {
    wordsDescriptor = outlets.words;
    objectsDescriptor = outlets.objects;
}

void tellFailure(const std::string& text) {
    const Outlets now = outlets();
    if (now.words != -1) {
        writeAll(now.words, "tessavoy: " + text + '\n');
    }
    if (now.objects != -1) {
        writeAll(now.objects, errorLine(text));
    }
}

}  // namespace TessavoyHost
