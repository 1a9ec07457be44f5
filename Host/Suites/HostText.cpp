#include "Host/Suites/HostText.h"

#include <cstring>

#include "Host/CommandContext.h"
#include "Host/Utf16.h"

namespace TessavoyHost {
namespace {

AEGP_MemHandle lendBytes(CommandContext& context, const void* bytes, std::size_t size) {
    const PF_Handle handle = context.services.handles.make(size);
    std::memcpy(*handle, bytes, size);
    context.ledger.lend(Loan::MemoryHandle, Ledger::keyOf(handle), "text", static_cast<std::int64_t>(size));
    return reinterpret_cast<AEGP_MemHandle>(handle);
}

}  // namespace

AEGP_MemHandle lendText(CommandContext& context, const std::string& text) {
    return lendBytes(context, text.c_str(), text.size() + 1);
}

AEGP_MemHandle lendUtf16(CommandContext& context, const std::string& utf8) {
    const auto units = toUtf16(utf8);
    return lendBytes(context, units.c_str(), (units.size() + 1) * sizeof(A_UTF16Char));
}

}  // namespace TessavoyHost
