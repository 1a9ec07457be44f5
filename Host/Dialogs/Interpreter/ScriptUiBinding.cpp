#include "Host/Dialogs/Interpreter/Session.h"
#include "Host/Dialogs/InterpreterText.h"

// Windows and elements as the script sees them: proxies, so that every member passes through here, of objects that hold
// the element's number and the script's handlers. The proxies themselves stand in a list in the interpreter's stash.

namespace TessavoyHost {
namespace {

constexpr const char* elementKey = DUK_HIDDEN_SYMBOL("element");
constexpr const char* elementsKey = "elements";
constexpr const char* trapsKey = "traps";

// Ends the script with an error; what is a literal.
void refuse(duk_context* interpreter, const char* what) {
    Session::call(interpreter, [what](Session&) { throw ScriptUiError(std::string("ScriptUI: ") + what); });
}

ScriptUi::Element elementAt(duk_context* interpreter, duk_idx_t place) {
    duk_get_prop_string(interpreter, place, elementKey);
    const auto element = duk_require_int(interpreter, -1);
    duk_pop(interpreter);
    return element;
}

ScriptUi::Element elementOfThis(duk_context* interpreter) {
    duk_push_this(interpreter);
    duk_require_object(interpreter, -1);
    const auto element = elementAt(interpreter, -1);
    duk_pop(interpreter);
    return element;
}

// Pushes the element's proxy, the same one each time.
void pushElement(duk_context* interpreter, ScriptUi::Element element) {
    const auto place = static_cast<duk_uarridx_t>(element);
    duk_push_global_stash(interpreter);
    duk_get_prop_string(interpreter, -1, elementsKey);
    if (duk_get_prop_index(interpreter, -1, place) == 0) {
        duk_pop(interpreter);
        duk_push_bare_object(interpreter);
        duk_push_int(interpreter, element);
        duk_put_prop_string(interpreter, -2, elementKey);
        duk_get_prop_string(interpreter, -3, trapsKey);
        duk_push_proxy(interpreter, 0);
        duk_dup_top(interpreter);
        duk_put_prop_index(interpreter, -3, place);
    }
    duk_insert(interpreter, -3);
    duk_pop_2(interpreter);
}

// The list of the arguments of a function that takes any number.
ScriptArgument allArguments(duk_context* interpreter) {
    const duk_idx_t count = duk_get_top(interpreter);
    const duk_idx_t list = duk_push_array(interpreter);
    for (duk_idx_t i = 0; i < count; ++i) {
        duk_dup(interpreter, i);
        duk_put_prop_index(interpreter, list, static_cast<duk_uarridx_t>(i));
    }
    return argumentAt(interpreter, list);
}

duk_ret_t constructWindow(duk_context* interpreter) {
    if (duk_is_constructor_call(interpreter) == 0)
        refuse(interpreter, "Window is made by new Window(...)");
    const ScriptArgument arguments = allArguments(interpreter);
    Session::call(interpreter, [&](Session& session) { session.element = session.ui.makeWindow(jsonOf(arguments)); });
    pushElement(interpreter, Session::of(interpreter).element);
    return 1;
}

duk_ret_t add(duk_context* interpreter) {
    const ScriptUi::Element container = elementOfThis(interpreter);
    const ScriptArgument arguments = allArguments(interpreter);
    Session::call(interpreter,
                  [&](Session& session) { session.element = session.ui.add(container, jsonOf(arguments)); });
    pushElement(interpreter, Session::of(interpreter).element);
    return 1;
}

duk_ret_t show(duk_context* interpreter) {
    const ScriptUi::Element window = elementOfThis(interpreter);
    Session::call(interpreter, [&](Session& session) { session.number = session.ui.show(window); });
    duk_push_int(interpreter, Session::of(interpreter).number);
    return 1;
}

duk_ret_t arrange(duk_context*) {
    return 0;
}

void pushValue(duk_context* interpreter) {
    const Session& session = Session::of(interpreter);
    duk_push_lstring(interpreter, session.text.data(), session.text.size());
    if (session.textIsJson)
        duk_json_decode(interpreter, -1);
}

void takeValue(Session& session, const nlohmann::json& value) {
    session.textIsJson = !value.is_string();
    session.text = toInterpreterText(session.textIsJson ? value.dump() : value.get_ref<const std::string&>());
}

// Takes target, name and receiver.
duk_ret_t getMember(duk_context* interpreter) {
    if (duk_is_symbol(interpreter, 1) != 0)
        return 0;  // the language itself asks for these, and has what is missing
    const ScriptUi::Element element = elementAt(interpreter, 0);
    const ScriptArgument name = argumentAt(interpreter, 1);
    Session::call(interpreter, [&](Session& session) {
        session.member = session.ui.member(element, textOf(name));
        if (session.member == UiMember::Value)
            takeValue(session, session.ui.get(element, textOf(name)));
        else if (session.member == UiMember::Layout)
            session.element = session.ui.layoutOf(element);
    });
    const Session& session = Session::of(interpreter);
    switch (session.member) {
        case UiMember::Value:
            pushValue(interpreter);
            break;
        case UiMember::Handler:
            duk_dup(interpreter, 1);
            duk_get_prop(interpreter, 0);
            break;
        case UiMember::Layout:
            pushElement(interpreter, session.element);
            break;
        case UiMember::Add:
            duk_push_c_function(interpreter, add, DUK_VARARGS);
            break;
        case UiMember::Show:
            duk_push_c_function(interpreter, show, 0);
            break;
        case UiMember::Arrange:
            duk_push_c_function(interpreter, arrange, DUK_VARARGS);
            break;
    }
    return 1;
}

// Takes target, name, value and receiver.
duk_ret_t setMember(duk_context* interpreter) {
    const ScriptUi::Element element = elementAt(interpreter, 0);
    const ScriptArgument name = argumentAt(interpreter, 1);
    const bool isFunction = duk_is_callable(interpreter, 2) != 0;
    const ScriptArgument value = argumentAt(interpreter, 2);
    Session::call(interpreter, [&](Session& session) {
        session.member = session.ui.member(element, textOf(name));
        if (!isFunction || session.member != UiMember::Handler)
            session.ui.set(element, textOf(name), jsonOf(value));
    });
    if (Session::of(interpreter).member == UiMember::Handler) {
        duk_dup(interpreter, 1);
        duk_dup(interpreter, 2);
        duk_put_prop(interpreter, 0);
    }
    duk_push_true(interpreter);
    return 1;
}

duk_ret_t deleteMember(duk_context* interpreter) {
    refuse(interpreter, "members can't be deleted");
    return 0;
}

}  // namespace

void installScriptUi(duk_context* interpreter) {
    static const duk_function_list_entry traps[] = {
        {"get", getMember, 3}, {"set", setMember, 4}, {"deleteProperty", deleteMember, 2}, {nullptr, nullptr, 0}};
    duk_push_global_stash(interpreter);
    duk_push_array(interpreter);
    duk_put_prop_string(interpreter, -2, elementsKey);
    duk_push_object(interpreter);
    duk_put_function_list(interpreter, -1, traps);
    duk_put_prop_string(interpreter, -2, trapsKey);
    duk_pop(interpreter);
    duk_push_c_function(interpreter, constructWindow, DUK_VARARGS);
    duk_put_global_literal(interpreter, "Window");
}

}  // namespace TessavoyHost
