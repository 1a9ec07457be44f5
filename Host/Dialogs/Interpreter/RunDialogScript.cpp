#include <memory>
#include <new>
#include <string>

#include "Host/Dialogs/DialogScript.h"
#include "Host/Dialogs/Interpreter/Session.h"
#include "Host/Dialogs/InterpreterText.h"

// Asked by the interpreter, which is C.
extern "C" duk_bool_t tessavoyDialogScriptMustEnd(void* session) {
    return static_cast<TessavoyHost::Session*>(session)->mustEnd() ? 1 : 0;
}

namespace TessavoyHost {
namespace {

void* allocate(void* session, duk_size_t size) {
    return static_cast<Session*>(session)->memory.allocate(size);
}

void* reallocate(void* session, void* block, duk_size_t size) {
    return static_cast<Session*>(session)->memory.reallocate(block, size);
}

void release(void* session, void* block) {
    static_cast<Session*>(session)->memory.release(block);
}

struct HeapDeleter {
    void operator()(duk_context* interpreter) const { duk_destroy_heap(interpreter); }
};
using Heap = std::unique_ptr<duk_context, HeapDeleter>;

// Takes the script as a std::string; leaves its value as text.
duk_ret_t evaluate(duk_context* interpreter, void* script) {
    const auto& text = *static_cast<const std::string*>(script);
    duk_push_global_object(interpreter);
    duk_del_prop_literal(interpreter, -1, "Duktape");  // the interpreter's own workings are no part of the language
    duk_pop(interpreter);
    installScriptUi(interpreter);
    duk_push_lstring(interpreter, text.data(), text.size());
    duk_push_literal(interpreter, "dialog script");
    duk_compile(interpreter, DUK_COMPILE_EVAL);
    duk_call(interpreter, 0);
    duk_to_string(interpreter, -1);
    return 1;
}

// Takes what was thrown; leaves its text and the script's line, or 0.
duk_ret_t describeError(duk_context* interpreter, void*) {
    if (duk_is_object(interpreter, -1) != 0)
        duk_get_prop_literal(interpreter, -1, "lineNumber");
    else
        duk_push_undefined(interpreter);
    const int line = duk_get_int(interpreter, -1);
    duk_pop(interpreter);
    duk_safe_to_string(interpreter, -1);
    duk_push_int(interpreter, line);
    return 2;
}

std::string textAt(duk_context* interpreter, duk_idx_t place) {
    duk_size_t size = 0;
    const char* bytes = duk_get_lstring(interpreter, place, &size);
    return bytes == nullptr ? "" : fromInterpreterText({bytes, size});
}

// The interpreter's message; a syntax error's has the line already.
std::string errorText(duk_context* interpreter, const Session& session) {
    if (session.hasRunOut)
        return "it did not end and was stopped";
    if (duk_safe_call(interpreter, describeError, nullptr, 1, 2) != DUK_EXEC_SUCCESS)
        return "an error that can't be told";
    const std::string text = textAt(interpreter, -2);
    const int line = duk_get_int(interpreter, -1);
    const bool hasLine = line == 0 || text.find("(line ") != std::string::npos;
    return hasLine ? text : text + " (line " + std::to_string(line) + ')';
}

}  // namespace

ScriptAnswer runDialogScript(const std::string& script, DialogUser& user) {
    if (!isUtf8(script))
        return {"the script is not UTF-8", true};
    Session session(user);
    const Heap heap(duk_create_heap(allocate, reallocate, release, &session, nullptr));
    if (!heap)
        throw std::bad_alloc();
    std::string text = script;
    const bool succeeded = duk_safe_call(heap.get(), evaluate, &text, 0, 1) == DUK_EXEC_SUCCESS;
    if (session.failure)
        std::rethrow_exception(session.failure);
    return succeeded ? ScriptAnswer{textAt(heap.get(), -1), false} : ScriptAnswer{errorText(heap.get(), session), true};
}

}  // namespace TessavoyHost
