#include "Host/Dialogs/ResourceText.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace TessavoyHost {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$';
}

class Parser {
public:
    explicit Parser(std::string_view text) : mText(text) {}

    ResourceText parse() {
        ResourceText resource;
        resource.type = name();
        if (peek() == '{') {
            resource.members = object();
        }
        if (peek() != '\0') {
            fail("something follows the element");
        }
        const auto properties = resource.members.find("properties");
        if (properties != resource.members.end()) {
            resource.creationProperties = *properties;
            resource.members.erase(properties);
        }
        return resource;
    }

private:
    // The next character that counts, or zero at the end.
    char peek() {
        mAt = std::min(mText.find_first_not_of(blanks, mAt), mText.size());
        return mAt < mText.size() ? mText[mAt] : '\0';
    }

    bool take(char wanted) {
        const bool found = peek() == wanted;
        mAt += found ? 1 : 0;
        return found;
    }

    void expect(char wanted) {
        if (!take(wanted)) {
            fail(std::string("'") + wanted + "' expected");
        }
    }

    std::string name() {
        peek();
        const std::size_t start = mAt;
        while (mAt < mText.size() && (isNameStart(mText[mAt]) || (mAt > start && isDigit(mText[mAt])))) {
            ++mAt;
        }
        if (mAt == start) {
            fail("a name expected");
        }
        return std::string(mText.substr(start, mAt - start));
    }

    std::string key() { return peek() == '\'' || peek() == '"' ? text() : name(); }

    nlohmann::json object() {
        auto result = nlohmann::json::object();
        expect('{');
        while (!take('}')) {
            std::string member = key();
            expect(':');
            result[std::move(member)] = value();
            if (peek() != '}') {
                expect(',');
            }
        }
        return result;
    }

    nlohmann::json list() {
        auto result = nlohmann::json::array();
        expect('[');
        while (!take(']')) {
            result.push_back(value());
            if (peek() != ']') {
                expect(',');
            }
        }
        return result;
    }

    nlohmann::json value() {
        const Nesting nesting(*this);
        switch (peek()) {
            case '{':
                return object();
            case '[':
                return list();
            case '\'':
            case '"':
                return text();
            default:
                return isDigit(peek()) || peek() == '-' || peek() == '.' ? number() : word();
        }
    }

    nlohmann::json word() {
        const std::string read = name();
        if (read == "true" || read == "false") {
            return read == "true";
        }
        if (read != "null") {
            fail("\"" + read + "\" is no value; elements inside of elements are not known");
        }
        return nullptr;
    }

    nlohmann::json number() {
        double read = 0;
        const auto [end, error] = std::from_chars(mText.data() + mAt, mText.data() + mText.size(), read);
        if (error != std::errc()) {
            fail("a number expected");
        }
        mAt = static_cast<std::size_t>(end - mText.data());
        return read;
    }

    std::string text() {
        const char quote = peek();
        std::string result;
        for (++mAt; mAt < mText.size() && mText[mAt] != quote; ++mAt) {
            result += mText[mAt] == '\\' ? escaped() : mText[mAt];
        }
        if (mAt == mText.size()) {
            fail("a text does not end");
        }
        ++mAt;
        return result;
    }

    char escaped() {
        static constexpr std::string_view letters = "ntr\\'\"";
        static constexpr std::string_view meanings = "\n\t\r\\'\"";
        ++mAt;
        const std::size_t which = mAt < mText.size() ? letters.find(mText[mAt]) : letters.npos;
        if (which == letters.npos) {
            fail("after a backslash only n, t, r, quotes and a backslash are known");
        }
        return meanings[which];
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw ScriptUiError("resource text, character " + std::to_string(mAt + 1) + ": " + what);
    }

    // Counts how deep values lie in each other, as each level takes a part of the stack.
    class Nesting {
    public:
        explicit Nesting(Parser& parser) : mParser(parser) {
            if (++mParser.mDepth > deepest) {
                mParser.fail("too many values inside of each other");
            }
        }
        ~Nesting() { --mParser.mDepth; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        static constexpr int deepest = 32;
        Parser& mParser;
    };

    std::string_view mText;
    std::size_t mAt = 0;
    int mDepth = 0;
};

}  // namespace

ResourceText parseResourceText(std::string_view utf8) {
    return Parser(utf8).parse();
}

}  // namespace TessavoyHost
