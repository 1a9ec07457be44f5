#include "Host/Dialogs/ScriptUi.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace TessavoyHost {
namespace {

using nlohmann::json;

// A script that adds elements for ever is stopped here, before it fills the memory.
constexpr std::size_t mostElements = 1000;

bool isText(const json& value) {
    return value.is_string();
}

bool isTruth(const json& value) {
    return value.is_boolean();
}

bool isOneOf(const json& value, std::initializer_list<std::string_view> words) {
    return value.is_string() &&
           std::find(words.begin(), words.end(), value.get_ref<const std::string&>()) != words.end();
}

bool isSide(const json& value) {
    return isOneOf(value, {"left", "right", "top", "bottom", "center", "fill"});
}

bool isAlignment(const json& value) {
    return isSide(value) || (value.is_array() && value.size() == 2 && isSide(value[0]) && isSide(value[1]));
}

bool isSize(const json& value) {
    return value.is_array() && value.size() == 2 && value[0].is_number() && value[1].is_number();
}

bool isOrientation(const json& value) {
    return isOneOf(value, {"row", "column", "stack"});
}

json argument(const json& arguments, std::size_t place) {
    return place < arguments.size() ? arguments[place] : json();
}

[[noreturn]] void refuse(const std::string& what) {
    throw ScriptUiError("ScriptUI: " + what);
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

}  // namespace

// Which elements have a member, and what may be put into it.
struct ScriptUi::Rule {
    std::string_view name;
    std::vector<Kind> owners;
    UiMember use;
    bool (*accepts)(const json&);
    std::string_view accepted;
};

const std::vector<ScriptUi::Rule>& ScriptUi::rules() {
    using enum Kind;
    static const std::vector<Rule> all = {
        {"text", {Window, Panel, EditText, Button}, UiMember::Value, isText, "a text"},
        {"textselection", {EditText}, UiMember::Value, isText, "a text"},
        {"active", {EditText, Button}, UiMember::Value, isTruth, "true or false"},
        {"alignment", {Panel, EditText, Button}, UiMember::Value, isAlignment, "a side, or a list of two"},
        {"minimumSize", {Window, Panel, EditText, Button}, UiMember::Value, isSize, "a list of two numbers"},
        {"orientation", {Window, Panel}, UiMember::Value, isOrientation, "\"row\", \"column\" or \"stack\""},
        {"onResize", {Window}, UiMember::Handler, nullptr, "a function"},
        {"onResizing", {Window}, UiMember::Handler, nullptr, "a function"},
        {"layout", {Window, Panel}, UiMember::Layout, nullptr, ""},
        {"add", {Window, Panel}, UiMember::Add, nullptr, ""},
        {"show", {Window}, UiMember::Show, nullptr, ""},
        {"layout", {Layout}, UiMember::Arrange, nullptr, ""},
        {"resize", {Layout}, UiMember::Arrange, nullptr, ""},
    };
    return all;
}

std::string_view ScriptUi::nameOf(Kind kind) {
    switch (kind) {
        case Kind::Window:
            return "Window";
        case Kind::Panel:
            return "panel";
        case Kind::EditText:
            return "edittext";
        case Kind::Button:
            return "button";
        default:
            return "layout";
    }
}

ScriptUi::Kind ScriptUi::kindCalled(const std::string& type) {
    for (const Kind kind : {Kind::Panel, Kind::EditText, Kind::Button}) {
        if (nameOf(kind) == lowerCase(type)) {
            return kind;
        }
    }
    refuse("there is no element \"" + type + "\" here; there are panel, edittext and button");
}

const ScriptUi::Rule& ScriptUi::rule(Element element, const std::string& name) const {
    const Kind kind = at(element).kind;
    for (const Rule& known : rules()) {
        if (known.name == name && std::find(known.owners.begin(), known.owners.end(), kind) != known.owners.end()) {
            return known;
        }
    }
    refuse(std::string(nameOf(kind)) + " has no member \"" + name + "\" here");
}

ScriptUi::Element ScriptUi::make(Kind kind, std::optional<Element> container) {
    if (mItems.size() >= mostElements) {
        refuse("more than " + std::to_string(mostElements) + " elements");
    }
    Item item;
    item.kind = kind;
    item.container = container;
    mItems.push_back(std::move(item));
    return static_cast<Element>(mItems.size()) - 1;
}

ScriptUi::Element ScriptUi::makeWindow(const json& arguments) {
    if (argument(arguments, 0) != "dialog") {
        refuse("the only type of window here is \"dialog\"");
    }
    const Element window = make(Kind::Window, std::nullopt);
    make(Kind::Layout, window);
    setCreationProperties(window, argument(arguments, 3));
    if (!argument(arguments, 1).is_null()) {
        set(window, "text", argument(arguments, 1));
    }
    return window;
}

ScriptUi::Element ScriptUi::add(Element container, const json& arguments) {
    if (!isText(argument(arguments, 0))) {
        refuse("add takes the type of an element as a text");
    }
    const ResourceText resource = parseResourceText(arguments[0].get_ref<const std::string&>());
    const Element element = make(kindCalled(resource.type), container);
    if (at(element).kind == Kind::Panel) {
        make(Kind::Layout, element);
    }
    setCreationProperties(element, resource.creationProperties);
    setCreationProperties(element, argument(arguments, 3));
    for (const auto& [name, value] : resource.members.items()) {
        set(element, name, value);
    }
    if (!argument(arguments, 2).is_null()) {
        set(element, "text", argument(arguments, 2));
    }
    return element;
}

void ScriptUi::setCreationProperties(Element element, const json& properties) {
    if (properties.is_null()) {
        return;
    }
    if (!properties.is_object()) {
        refuse("creation properties are an object");
    }
    Item& item = at(element);
    const bool isField = item.kind == Kind::EditText;
    for (const auto& [key, value] : properties.items()) {
        if (key == "name" && isText(value)) {
            item.name = value.get<std::string>();
        } else if (isField && key == "multiline" && isTruth(value)) {
            item.shown.multiline = value.get<bool>();
        } else if (isField && key == "readonly" && isTruth(value)) {
            item.shown.readOnly = value.get<bool>();
        } else if (item.kind != Kind::Window || key != "resizeable" || !isTruth(value)) {
            refuse(std::string(nameOf(item.kind)) + " has no creation property \"" + key + "\" with such a value here");
        }
    }
}

UiMember ScriptUi::member(Element element, const std::string& name) const {
    return rule(element, name).use;
}

// It was made next after its owner.
ScriptUi::Element ScriptUi::layoutOf(Element container) const {
    return container + 1;
}

json ScriptUi::get(Element element, const std::string& name) const {
    const Item& item = at(element);
    rule(element, name);
    if (name == "text") {
        return item.shown.text;
    }
    if (name == "textselection") {
        return "";
    }
    if (name == "active") {
        return item.shown.active;
    }
    return item.arrangement.value(name, json());
}

// The insertion point stands at the end of a text, with nothing selected, so what replaces the selection is put there.
void ScriptUi::set(Element element, const std::string& name, const json& value) {
    const Rule& known = rule(element, name);
    if (known.accepts == nullptr || !known.accepts(value)) {
        refuse(std::string(nameOf(at(element).kind)) + "." + name +
               (known.accepted.empty() ? " can't be set" : " takes " + std::string(known.accepted)));
    }
    Item& item = at(element);
    if (name == "text") {
        item.shown.text = value.get<std::string>();
    } else if (name == "textselection") {
        item.shown.text += value.get<std::string>();
    } else if (name == "active") {
        activate(element, value.get<bool>());
    } else {
        item.arrangement[name] = value;
    }
}

// One element of all has the keyboard.
void ScriptUi::activate(Element element, bool active) {
    if (active) {
        for (Item& other : mItems) {
            other.shown.active = false;
        }
    }
    at(element).shown.active = active;
}

std::optional<DialogButton> ScriptUi::buttonOf(const Item& item) {
    const std::string name = lowerCase(item.name.empty() ? item.shown.text : item.name);
    if (item.kind != Kind::Button || (name != "ok" && name != "cancel")) {
        return std::nullopt;
    }
    return name == "ok" ? DialogButton::Ok : DialogButton::Cancel;
}

void ScriptUi::describe(Element container, std::optional<std::size_t> panel, Dialog& dialog,
                        std::vector<Element>& order) const {
    static constexpr std::array<std::pair<Kind, DialogElementKind>, 3> kinds = {{
        {Kind::Panel, DialogElementKind::Panel},
        {Kind::EditText, DialogElementKind::EditText},
        {Kind::Button, DialogElementKind::Button},
    }};
    for (Element element = 0; element < static_cast<Element>(mItems.size()); ++element) {
        const Item& item = at(element);
        const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](auto& pair) { return pair.first == item.kind; });
        if (item.container != container || kind == kinds.end()) {
            continue;
        }
        DialogElement shown = item.shown;
        shown.kind = kind->second;
        shown.button = buttonOf(item);
        shown.panel = panel;
        const std::size_t place = dialog.elements.size();
        dialog.elements.push_back(std::move(shown));
        order.push_back(element);
        describe(element, place, dialog, order);
    }
}

int ScriptUi::show(Element window) {
    Dialog dialog;
    std::vector<Element> order;
    dialog.title = at(window).shown.text;
    describe(window, std::nullopt, dialog, order);
    const DialogAnswer answer = mUser.answer(dialog);
    const bool hasButton = std::any_of(dialog.elements.begin(), dialog.elements.end(),
                                       [&](const DialogElement& shown) { return shown.button == answer.button; });
    if (answer.button != DialogButton::Cancel && !hasButton) {
        throw std::invalid_argument("the answer presses a button that the dialog \"" + dialog.title + "\" lacks");
    }
    for (const auto& [place, text] : answer.texts) {
        if (place >= order.size() || dialog.elements[place].kind != DialogElementKind::EditText ||
            dialog.elements[place].readOnly) {
            throw std::invalid_argument("the answer writes where the dialog \"" + dialog.title + "\" has no field");
        }
        at(order[place]).shown.text = text;
    }
    return static_cast<int>(answer.button);
}

}  // namespace TessavoyHost
