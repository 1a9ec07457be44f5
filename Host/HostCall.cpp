#include "Host/HostCall.h"

#include <exception>
#include <new>
#include <string>

namespace TessavoyHost {

PF_Err answerToException(CommandContext* context, const char* name) noexcept {
    try {
        throw;
    } catch (const HostCallFailure& failure) {
        return failure.error;
    } catch (const std::bad_alloc&) {
        if (context != nullptr)
            context->runsOutOfMemory(name);
        return PF_Err_OUT_OF_MEMORY;
    } catch (const std::exception& error) {
        if (context != nullptr)
            context->fails(error.what());
    } catch (...) {
        if (context != nullptr)
            context->fails("an exception of an unknown kind");
    }
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

}  // namespace TessavoyHost
