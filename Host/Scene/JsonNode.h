#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Scene/Problems.h"

namespace TessavoyHost {

// A closed range of numbers.
struct NumberRange {
    double least;
    double most;
};

// A JSON value together with its place and the list that problems go to. Each reading function gives the value, or
// notes a problem and gives nothing. The JSON and the list must outlive the node.
class JsonNode {
public:
    JsonNode(const nlohmann::json& value, Place place, Problems& problems)
        : mValue(&value), mPlace(std::move(place)), mProblems(&problems) {}

    const nlohmann::json& json() const { return *mValue; }
    const Place& place() const { return mPlace; }
    void problem(const std::string& text) const { mProblems->add(mPlace, text); }
    // "must be a number, not text"
    void wrongType(std::string_view wanted) const;
    // Notes that the object lacks the key, at the key's place.
    void missing(const std::string& key) const;

    std::optional<double> number() const;
    std::optional<double> number(NumberRange range) const;
    std::optional<int> integer(int least, int most) const;
    std::optional<bool> truth() const;
    std::optional<std::string> text() const;
    // Text that is not empty and holds no zero byte.
    std::optional<std::string> name() const;
    // A list of exactly so many numbers, each in the range.
    std::optional<std::vector<double>> numbers(std::size_t count, NumberRange range) const;
    std::optional<std::vector<JsonNode>> elements() const;

    JsonNode child(const std::string& key) const;  // the key must be there
    // A value of another file, whose problems go to the same list. It must outlive the node.
    JsonNode elsewhere(const nlohmann::json& value, Place place) const { return {value, std::move(place), *mProblems}; }

    // The text's place in the words, counted from 0.
    std::optional<int> word(const std::vector<std::string>& words) const;

private:
    const nlohmann::json* mValue;
    Place mPlace;
    Problems* mProblems;
};

// An object whose keys are known. A value that is no object and each key that is not known are problems.
class JsonObject {
public:
    JsonObject(const JsonNode& node, std::initializer_list<const char*> known);

    bool valid() const { return mNode.json().is_object(); }
    bool has(const char* key) const { return valid() && mNode.json().contains(key); }
    std::optional<JsonNode> find(const char* key) const;
    // A missing key is a problem.
    std::optional<JsonNode> require(const char* key) const;
    std::optional<int> requireInteger(const char* key, int least, int most) const;
    const JsonNode& node() const { return mNode; }

private:
    JsonNode mNode;
};

// What the value is, in words: "text", "a number", "a list" ...
std::string typeInWords(const nlohmann::json& value);

// A number as short as it can be written without loss: "100000", "0.1", "-5e-07".
std::string numberInWords(double value);

}  // namespace TessavoyHost
