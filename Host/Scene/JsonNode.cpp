#include "Host/Scene/JsonNode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "Host/Scene/Nearest.h"

namespace TessavoyHost {
namespace {

std::string rangeInWords(NumberRange range) {
    return numberInWords(range.least) + " to " + numberInWords(range.most);
}

bool isWhole(double value) {
    return std::nearbyint(value) == value;
}

}  // namespace

std::string typeInWords(const nlohmann::json& value) {
    using Type = nlohmann::json::value_t;
    switch (value.type()) {
        case Type::null:
            return "null";
        case Type::boolean:
            return value.get<bool>() ? "true" : "false";
        case Type::string:
            return "text";
        case Type::array:
            return "a list";
        case Type::object:
            return "an object";
        default:
            return "a number";
    }
}

std::string numberInWords(double value) {
    const double size = std::abs(value);
    const bool isOrdinary = size == 0 || (size >= 1e-5 && size < 1e15);
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   isOrdinary ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return std::string(digits.data(), end);
}

void JsonNode::wrongType(std::string_view wanted) const {
    problem("must be " + std::string(wanted) + ", not " + typeInWords(*mValue));
}

void JsonNode::missing(const std::string& key) const {
    mProblems->add(mPlace.child(key), "missing");
}

std::optional<double> JsonNode::number() const {
    if (!mValue->is_number()) {
        wrongType("a number");
        return std::nullopt;
    }
    return mValue->get<double>();
}

std::optional<double> JsonNode::number(NumberRange range) const {
    const auto value = number();
    if (value && !(*value >= range.least && *value <= range.most)) {
        problem(numberInWords(*value) + " is out of range; it goes from " + rangeInWords(range));
        return std::nullopt;
    }
    return value;
}

std::optional<int> JsonNode::integer(int least, int most) const {
    const auto value = number({static_cast<double>(least), static_cast<double>(most)});
    if (value && !isWhole(*value)) {
        problem("must be a whole number, not " + numberInWords(*value));
        return std::nullopt;
    }
    return value ? std::optional<int>(static_cast<int>(*value)) : std::nullopt;
}

std::optional<bool> JsonNode::truth() const {
    if (!mValue->is_boolean()) {
        wrongType("true or false");
        return std::nullopt;
    }
    return mValue->get<bool>();
}

std::optional<std::string> JsonNode::text() const {
    if (!mValue->is_string()) {
        wrongType("text");
        return std::nullopt;
    }
    return mValue->get<std::string>();
}

std::optional<std::string> JsonNode::name() const {
    auto value = text();
    if (value && value->empty()) {
        problem("must not be empty");
        return std::nullopt;
    }
    if (value && value->find('\0') != std::string::npos) {
        problem("must not hold a zero byte");
        return std::nullopt;
    }
    return value;
}

std::optional<std::vector<double>> JsonNode::numbers(std::size_t count, NumberRange range) const {
    if (!mValue->is_array() || mValue->size() != count) {
        const std::string wanted = "a list of " + std::to_string(count) + " numbers";
        mValue->is_array() ? problem("must be " + wanted + ", not of " + std::to_string(mValue->size()))
                           : wrongType(wanted);
        return std::nullopt;
    }
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
        const auto value = JsonNode((*mValue)[i], mPlace.element(i), *mProblems).number(range);
        if (value) {
            values.push_back(*value);
        }
    }
    return values.size() == count ? std::optional(values) : std::nullopt;
}

std::optional<std::vector<JsonNode>> JsonNode::elements() const {
    if (!mValue->is_array()) {
        wrongType("a list");
        return std::nullopt;
    }
    std::vector<JsonNode> nodes;
    for (std::size_t i = 0; i < mValue->size(); ++i) {
        nodes.emplace_back((*mValue)[i], mPlace.element(i), *mProblems);
    }
    return nodes;
}

JsonNode JsonNode::child(const std::string& key) const {
    return JsonNode(mValue->at(key), mPlace.child(key), *mProblems);
}

std::optional<int> JsonNode::word(const std::vector<std::string>& words) const {
    const auto value = text();
    if (!value) {
        return std::nullopt;
    }
    const auto found = std::find(words.begin(), words.end(), *value);
    if (found != words.end()) {
        return static_cast<int>(found - words.begin());
    }
    std::string all;
    for (const auto& known : words) {
        all += (all.empty() ? "\"" : ", \"") + known + '"';
    }
    problem('"' + *value + "\" is none of " + all + didYouMean(*value, words));
    return std::nullopt;
}

JsonObject::JsonObject(const JsonNode& node, std::initializer_list<const char*> known) : mNode(node) {
    if (!valid()) {
        mNode.wrongType("an object");
        return;
    }
    const std::vector<std::string> names(known.begin(), known.end());
    for (const auto& [key, value] : mNode.json().items()) {
        if (std::find(names.begin(), names.end(), key) == names.end()) {
            mNode.child(key).problem("unknown key" + didYouMean(key, names));
        }
    }
}

std::optional<JsonNode> JsonObject::find(const char* key) const {
    return has(key) ? std::optional<JsonNode>(mNode.child(key)) : std::nullopt;
}

std::optional<JsonNode> JsonObject::require(const char* key) const {
    auto found = find(key);
    if (!found && valid()) {
        mNode.missing(key);
    }
    return found;
}

std::optional<int> JsonObject::requireInteger(const char* key, int least, int most) const {
    const auto found = require(key);
    return found ? found->integer(least, most) : std::nullopt;
}

}  // namespace TessavoyHost
