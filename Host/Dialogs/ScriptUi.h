#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Dialogs/Dialog.h"
#include "Host/Dialogs/ResourceText.h"

namespace TessavoyHost {

// What a script does with a member of an element.
enum class UiMember {
    Value,    // reads and sets it
    Handler,  // sets a function, which is kept and never called: dialogs here have no size that changes
    Layout,   // gets the object with layout and resize
    Add,
    Show,
    Arrange,  // asks for a new layout, of which there is none
};

// The windows that one dialog script has made, and what they hold. Knows no interpreter: values are JSON, and what the
// script gets wrong is thrown as ScriptUiError. Members and types that are not known are wrong.
class ScriptUi {
public:
    using Element = int;  // from 0, in the order of making

    explicit ScriptUi(DialogUser& user) : mUser(user) {}

    // arguments: a list of type, title, bounds and creation properties; the type must be "dialog", the rest may lack or
    // be null.
    Element makeWindow(const nlohmann::json& arguments);
    // arguments: a list of type or resource text, bounds, text and creation properties; all but the first may lack or
    // be null.
    Element add(Element container, const nlohmann::json& arguments);

    UiMember member(Element element, const std::string& name) const;
    // The object that a window or a panel has as its layout.
    Element layoutOf(Element container) const;
    nlohmann::json get(Element element, const std::string& name) const;
    void set(Element element, const std::string& name, const nlohmann::json& value);

    // Shows the window to the user, takes over the changed texts and gives the number of the button. Throws what the
    // user throws, and std::invalid_argument for an answer that the dialog has no place for.
    int show(Element window);

private:
    enum class Kind { Window, Panel, EditText, Button, Layout };
    struct Item {
        Kind kind = Kind::Window;
        std::optional<Element> container;
        DialogElement shown;
        std::string name;                                       // that the script gave it
        nlohmann::json arrangement = nlohmann::json::object();  // alignment and the like, by member
    };
    struct Rule;

    static const std::vector<Rule>& rules();
    static std::string_view nameOf(Kind kind);
    static Kind kindCalled(const std::string& type);

    const Rule& rule(Element element, const std::string& name) const;
    Item& at(Element element) { return mItems.at(static_cast<std::size_t>(element)); }
    const Item& at(Element element) const { return mItems.at(static_cast<std::size_t>(element)); }
    Element make(Kind kind, std::optional<Element> container);
    void setCreationProperties(Element element, const nlohmann::json& properties);
    void activate(Element element, bool active);
    void describe(Element container, std::optional<std::size_t> panel, Dialog& dialog,
                  std::vector<Element>& order) const;
    static std::optional<DialogButton> buttonOf(const Item& item);

    DialogUser& mUser;
    std::vector<Item> mItems;
};

}  // namespace TessavoyHost
