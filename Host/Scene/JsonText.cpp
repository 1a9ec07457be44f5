#include "Host/Scene/JsonText.h"

#include <algorithm>
#include <set>
#include <vector>

#include "Host/Scene/QuietSax.h"

namespace TessavoyHost {
namespace {

// Goes through a text and notes keys that an object holds twice; the parser itself keeps the last. On a way of its own,
// since the parser's callbacks take a time that grows with the square of a list's length.
class DuplicateKeys : public QuietSax {
public:
    explicit DuplicateKeys(Problems& problems) : mProblems(problems) {}

    bool null() override { return endValue(); }
    bool boolean(bool) override { return endValue(); }
    bool number_integer(number_integer_t) override { return endValue(); }
    bool number_unsigned(number_unsigned_t) override { return endValue(); }
    bool number_float(number_float_t, const string_t&) override { return endValue(); }
    bool string(string_t&) override { return endValue(); }

    bool start_object(std::size_t) override {
        mLevels.push_back({.isList = false});
        return true;
    }
    bool start_array(std::size_t) override {
        mLevels.push_back({.isList = true});
        return true;
    }
    bool end_object() override { return endLevel(); }
    bool end_array() override { return endLevel(); }

    bool key(string_t& key) override {
        Level& level = mLevels.back();
        level.key = key;
        if (!level.keys.insert(level.key).second) {
            mProblems.add(place(), "stands twice");
        }
        return true;
    }

private:
    struct Level {
        bool isList = false;
        std::size_t index = 0;
        std::string key = {};
        std::set<std::string> keys = {};
    };

    bool endLevel() {
        mLevels.pop_back();
        return endValue();
    }

    bool endValue() {
        if (!mLevels.empty() && mLevels.back().isList) {
            ++mLevels.back().index;
        }
        return true;
    }

    Place place() const {
        Place result;
        for (const auto& level : mLevels) {
            result = level.isList ? result.element(level.index) : result.child(level.key);
        }
        return result;
    }

    Problems& mProblems;
    std::vector<Level> mLevels;
};

// Goes through a text that the parser refused for a number and notes the first number that no double holds. The
// parser's own exception doesn't tell where it stands.
class RangeErrorFinder : public QuietSax {
public:
    bool parse_error(std::size_t end, const std::string& token, const nlohmann::json::exception&) override {
        number = token;
        firstByte = end - std::min(end, token.size()) + 1;
        return false;
    }

    std::string number;
    std::size_t firstByte = 0;  // counted from 1
};

constexpr std::size_t longestNumberTold = 32;

std::string lineAndColumn(const std::string& text, std::size_t byte) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte == 0 ? 0 : byte - 1, text.size()));
    const auto line = 1 + std::count(text.begin(), end, '\n');
    const auto lineStart = std::find(std::make_reverse_iterator(end), text.rend(), '\n').base();
    return "line " + std::to_string(line) + ", column " + std::to_string(end - lineStart + 1);
}

// The parser's message without its own preamble, "[json.exception...] parse error at line 1, column 2: ".
std::string reasonOf(const nlohmann::json::exception& error) {
    const std::string text = error.what();
    const auto end = text.find(": ");
    return end == std::string::npos ? text : text.substr(end + 2);
}

// Up to the first error, with remarks allowed.
void goThrough(const std::string& text, QuietSax& sax) {
    nlohmann::json::sax_parse(text, &sax, nlohmann::json::input_format_t::json, true, true);
}

void addRangeError(const std::string& text, Problems& problems) {
    RangeErrorFinder finder;
    goThrough(text, finder);
    const bool isLong = finder.number.size() > longestNumberTold;
    const std::string number = isLong ? finder.number.substr(0, longestNumberTold) + "..." : finder.number;
    problems.add(Place(lineAndColumn(text, finder.firstByte)), number + " is beyond the range of numbers");
}

}  // namespace

std::optional<nlohmann::json> parseJsonText(const std::string& text, Problems& problems) {
    DuplicateKeys duplicates(problems);
    goThrough(text, duplicates);
    try {
        return nlohmann::json::parse(text, nullptr, true, true);
    } catch (const nlohmann::json::parse_error& error) {
        problems.add(Place(lineAndColumn(text, error.byte)), reasonOf(error));
    } catch (const nlohmann::json::out_of_range&) {
        addRangeError(text, problems);
    }
    return std::nullopt;
}

}  // namespace TessavoyHost
