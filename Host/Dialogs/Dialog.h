#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace TessavoyHost {

// The buttons that end a dialog; the numbers are what a script is given for them.
enum class DialogButton { Ok = 1, Cancel = 2 };

enum class DialogElementKind { Panel, EditText, Button };

// One element of a dialog as its user sees it. Texts are UTF-8.
struct DialogElement {
    DialogElementKind kind = DialogElementKind::EditText;
    std::string text;                    // what a field holds, what stands on a button, a panel's title
    bool multiline = false;              // a field of several lines
    bool readOnly = false;               // a field that only shows its text
    bool active = false;                 // has the keyboard
    std::optional<DialogButton> button;  // of a button that ends the dialog
    std::optional<std::size_t> panel;    // place of the panel that holds it; none: it stands in the window itself
};

// What a dialog shows. Elements come as they stand, each panel before what it holds.
struct Dialog {
    std::string title;
    std::vector<DialogElement> elements;
};

// What its user did with a dialog.
struct DialogAnswer {
    DialogButton button = DialogButton::Cancel;
    std::map<std::size_t, std::string> texts;  // changed ones, UTF-8, by place of the field
};

// Whoever stands for the person before the screen.
class DialogUser {
public:
    virtual ~DialogUser() = default;

    // Is shown a dialog and ends it. Cancelling is always possible; pressing OK takes a button that says so. What it
    // throws ends the command that opened the dialog.
    virtual DialogAnswer answer(const Dialog& dialog) = 0;
};

}  // namespace TessavoyHost
