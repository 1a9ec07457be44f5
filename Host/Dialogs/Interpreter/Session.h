#pragma once

#include <duktape.h>

#include <cstddef>
#include <exception>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>

#include "Host/Dialogs/Interpreter/ScriptMemory.h"
#include "Host/Dialogs/ScriptUi.h"

namespace TessavoyHost {

// The run of one dialog script, as the functions that the interpreter calls see it.
//
// An error of the script unwinds through C by longjmp, which no C++ exception may cross and which runs no destructors.
// So these functions hold nothing but numbers and pointers; what needs C++ is done by call(), which has finished, with
// everything destroyed, before an error is raised. What goes from one to the other waits in the session.
class Session {
public:
    explicit Session(DialogUser& user) : memory(mostBytes), ui(user) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static Session& of(duk_context* interpreter);

    // Calls body with the session. What it throws becomes an error of the script; what is not the script's own mistake
    // is kept besides, in `failure`.
    template <class Body>
    static void call(duk_context* interpreter, Body body) {
        static_assert(std::is_trivially_destructible_v<Body>);
        Session& session = of(interpreter);
        if (!session.attempt(body))
            session.raise(interpreter);
    }

    // Whether the script took all the steps that it may; counts them.
    bool mustEnd();

    ScriptMemory memory;
    ScriptUi ui;
    std::exception_ptr failure;
    bool hasRunOut = false;

    // Results of the latest call.
    UiMember member = UiMember::Value;
    ScriptUi::Element element = 0;
    int number = 0;
    std::string text;  // as the interpreter has it: a text, or the JSON of a value
    bool textIsJson = false;

private:
    // Room for the largest texts many times over.
    static constexpr std::size_t mostBytes = std::size_t{256} << 20;

    template <class Body>
    bool attempt(Body body) noexcept {
        try {
            try {
                body(*this);
                return true;
            } catch (const ScriptUiError& mistake) {
                mMistake = mistake.what();
            }
        } catch (...) {
            failure = std::current_exception();
            mMistake.clear();
        }
        return false;
    }
    [[noreturn]] void raise(duk_context* interpreter) const;

    std::string mMistake;
    int mIntervals = 0;
};

// An argument of the script's. Points into the interpreter, as long as its function runs.
struct ScriptArgument {
    const char* bytes = nullptr;  // null: nothing, or a function
    duk_size_t size = 0;
    bool isJson = false;
};

// Of the value at a place of the stack; may leave something on top of it.
ScriptArgument argumentAt(duk_context* interpreter, duk_idx_t place);

// In UTF-8. For use inside of Session::call.
std::string textOf(const ScriptArgument& argument);
nlohmann::json jsonOf(const ScriptArgument& argument);

// Makes the constructor Window known to the interpreter, whose heap belongs to a session.
void installScriptUi(duk_context* interpreter);

}  // namespace TessavoyHost
