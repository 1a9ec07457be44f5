#pragma once

#include <iostream>
#include <sstream>
#include <streambuf>
#include <string>

namespace Tessavoy::Testing {

/// Takes what is written to the standard output stream while it lives; contexts describe themselves there.
class QuietOutput {
public:
    QuietOutput() : mPrevious(std::cout.rdbuf(mText.rdbuf())) {}
    ~QuietOutput() { std::cout.rdbuf(mPrevious); }

    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

    std::string text() const { return mText.str(); }

private:
    std::ostringstream mText;
    std::streambuf* mPrevious;
};

}  // namespace Tessavoy::Testing
