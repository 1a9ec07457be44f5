#include "Host/Dialogs/Interpreter/Session.h"

#include "Host/Dialogs/InterpreterText.h"

namespace TessavoyHost {
namespace {

// Of 262144 steps each: a second of work or so, where a dialog's script needs none.
constexpr int mostIntervals = 100;

}  // namespace

Session& Session::of(duk_context* interpreter) {
    duk_memory_functions memory;
    duk_get_memory_functions(interpreter, &memory);
    return *static_cast<Session*>(memory.udata);
}

// Once it is true it stays so, or the script could go on in its own handlers.
bool Session::mustEnd() {
    ++mIntervals;
    hasRunOut = mIntervals > mostIntervals;
    return hasRunOut;
}

void Session::raise(duk_context* interpreter) const {
    duk_get_global_literal(interpreter, "Error");
    if (mMistake.empty())
        duk_push_literal(interpreter, "the host failed");
    else
        duk_push_lstring(interpreter, mMistake.data(), mMistake.size());
    duk_new(interpreter, 1);
    (void)duk_throw(interpreter);
    std::terminate();  // not reached
}

ScriptArgument argumentAt(duk_context* interpreter, duk_idx_t place) {
    ScriptArgument argument;
    argument.isJson = duk_is_string(interpreter, place) == 0;
    if (argument.isJson) {
        duk_dup(interpreter, place);
        duk_json_encode(interpreter, -1);
        place = -1;
    }
    argument.bytes = duk_get_lstring(interpreter, place, &argument.size);
    return argument;
}

std::string textOf(const ScriptArgument& argument) {
    return argument.bytes == nullptr ? "" : fromInterpreterText({argument.bytes, argument.size});
}

nlohmann::json jsonOf(const ScriptArgument& argument) {
    if (argument.bytes == nullptr)
        return {};
    const std::string text = textOf(argument);
    return argument.isJson ? nlohmann::json::parse(text) : nlohmann::json(text);
}

}  // namespace TessavoyHost
