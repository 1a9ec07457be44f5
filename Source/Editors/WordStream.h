#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace Tessavoy {

/// Reads a printed value as a stream of words and numbers between white space, in the classic locale.
///
/// A missing word is read as an empty one, so that it equals no expected word. A number that can't be read, or is out
/// of range, leaves the stream failed: all later words are missing.
class WordStream {
public:
    explicit WordStream(std::string_view text) : mStream(std::string(text)) { mStream.imbue(std::locale::classic()); }

    /// Whether only white space is left.
    bool atEnd() {
        mStream >> std::ws;
        return mStream.eof();
    }

    std::string word() {
        std::string result;
        mStream >> result;
        return result;
    }

    /// Takes the next word; whether it is `expected`.
    bool word(std::string_view expected) { return word() == expected; }

    /// Takes the next word; its place in `choices`, or nothing if it is none of them.
    template <std::size_t Count>
    std::optional<std::int32_t> choice(const std::array<std::string_view, Count>& choices) {
        const auto found = std::find(choices.begin(), choices.end(), word());
        return found == choices.end() ? std::nullopt
                                      : std::optional(static_cast<std::int32_t>(found - choices.begin()));
    }

    /// Takes a word and a number; the number, or nothing if the word isn't `label` or the number can't be read.
    std::optional<float> labelled(std::string_view label) {
        float number = 0.0f;
        if (!word(label) || !(mStream >> number)) {
            return std::nullopt;
        }
        return number;
    }

    /// Calls `takeGroup` until nothing is left; false as soon as it says that its words don't belong.
    template <class TakeGroup>
    bool groups(TakeGroup takeGroup) {
        while (!atEnd()) {
            if (!takeGroup()) {
                return false;
            }
        }
        return true;
    }

private:
    std::istringstream mStream;
};

/// A stream that writes numbers as the standard streams do by default, whatever the program's locale is.
inline std::ostringstream classicTextStream() {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    return stream;
}

}  // namespace Tessavoy
