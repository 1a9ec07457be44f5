#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TessavoyHost {

// A place for a number in a file name: "####" or "[####]" (as many digits as hash signs), "%04d" or "%d".
struct NumberPlace {
    std::size_t start;   // byte in the name
    std::size_t length;  // bytes
    int digits;          // numbers are filled up to this with zeros; longer ones take more
    bool isLoneHash;     // one "#" or "[#]": tools disagree on whether it means a number
};

// All such places, in order. "%%" and other uses of "%" are ordinary text.
std::vector<NumberPlace> findNumberPlaces(std::string_view name);

// A name with one place for a number.
class NumberedName {
public:
    NumberedName(std::string_view name, const NumberPlace& place);
    std::string with(int number) const;  // number >= 0

private:
    std::string mBefore, mAfter;
    std::size_t mDigits;
};

}  // namespace TessavoyHost
