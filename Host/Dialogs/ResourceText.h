#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TessavoyHost {

// What a script got wrong in its use of ScriptUI, in words. It becomes an error of the script's language.
class ScriptUiError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What ScriptUI's resource texts say of one element: "edittext {text: 'a', properties: {multiline: true}}".
struct ResourceText {
    std::string type;                                              // "edittext"
    nlohmann::json members = nlohmann::json::object();             // to be set on the element
    nlohmann::json creationProperties = nlohmann::json::object();  // what stands under "properties"
};

// A type alone, or followed by an object whose values are texts in single or double quotes, numbers, true, false, null,
// lists and objects. Throws ScriptUiError with the place. Elements inside of elements are not known.
ResourceText parseResourceText(std::string_view utf8);

}  // namespace TessavoyHost
