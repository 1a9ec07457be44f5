#include "Host/Scene/SceneScriptText.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace TessavoyHost {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

// Half-open, in bytes.
struct Range {
    std::size_t begin;
    std::size_t end;
};

// Goes through JSON with remarks that the parser took, so that nothing in it can be wrong.
class JsonWalk {
public:
    explicit JsonWalk(std::string_view text) : mText(text) {}

    // Where the first value begins, behind a byte order mark.
    std::size_t root() const { return skipBlanks(mText.starts_with(byteOrderMark) ? byteOrderMark.size() : 0); }

    // Where the value of a member of the object that begins at a place stands.
    std::optional<Range> member(std::size_t object, const std::string& key) const {
        std::size_t at = skipBlanks(object + 1);
        while (mText.at(at) != '}') {
            const std::size_t keyEnd = endOfText(at);
            const std::size_t value = skipBlanks(skipBlanks(keyEnd) + 1);
            const Range place = {value, endOfValue(value)};
            if (nlohmann::json::parse(mText.substr(at, keyEnd - at)) == key) {
                return place;
            }
            at = skipBlanks(place.end);
            at = mText.at(at) == ',' ? skipBlanks(at + 1) : at;
        }
        return std::nullopt;
    }

private:
    // Blanks and remarks.
    std::size_t skipBlanks(std::size_t at) const {
        for (;;) {
            at = std::min(mText.find_first_not_of(blanks, at), mText.size());
            const std::string_view rest = mText.substr(at);
            if (rest.starts_with("//")) {
                at = std::min(mText.find('\n', at), mText.size());
            } else if (rest.starts_with("/*")) {
                at = mText.find("*/", at + 2) + 2;
            } else {
                return at;
            }
        }
    }

    std::size_t endOfText(std::size_t at) const {
        for (++at; mText.at(at) != '"'; ++at) {
            at += mText[at] == '\\' ? 1 : 0;
        }
        return at + 1;
    }

    std::size_t endOfValue(std::size_t at) const {
        switch (mText.at(at)) {
            case '"':
                return endOfText(at);
            case '{':
            case '[':
                return endOfBrackets(at);
            default:
                return std::min(mText.find_first_of(",]}/ \t\r\n", at), mText.size());
        }
    }

    std::size_t endOfBrackets(std::size_t at) const {
        int depth = 0;
        do {
            at = skipBlanks(at);
            const char c = mText.at(at);
            depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
            at = c == '"' ? endOfText(at) : at + 1;
        } while (depth > 0);
        return at;
    }

    std::string_view mText;
};

}  // namespace

std::string withScriptText(const std::string& sceneJson, const std::string& script) {
    const JsonWalk walk(sceneJson);
    const auto effect = walk.member(walk.root(), "effect");
    if (!effect) {
        throw std::invalid_argument("a scene without an effect");
    }
    const std::string value = nlohmann::json(script).dump();
    const std::string_view text = sceneJson;
    if (const auto old = walk.member(effect->begin, "scriptText")) {
        return std::string(text.substr(0, old->begin)) + value + std::string(text.substr(old->end));
    }
    // In front of what the effect has, which is its layer at least, and set off as that is.
    const std::size_t inside = effect->begin + 1;
    const std::string_view gap = text.substr(inside, text.find_first_not_of(blanks, inside) - inside);
    return std::string(text.substr(0, inside)) + std::string(gap) + "\"scriptText\": " + value + ',' +
           std::string(gap.empty() ? " " : gap) + std::string(text.substr(inside + gap.size()));
}

}  // namespace TessavoyHost
