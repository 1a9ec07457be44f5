#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Host/ImageFiles/ImageFiles.h"
#include "Host/Scene/NumberedName.h"

namespace TessavoyHost {

// The usual suffix of each format that this build writes; never empty.
std::vector<FileSuffix> usualSuffixes();

// A name with a place for a number, as an example: "out.####.png".
std::string namePattern();

// Where frames go: a file name with a place for the frame's number, one file, or "-", the standard output. In the name
// "%%" stands for "%"; folders are taken as they are written.
class OutputPattern {
public:
    // Throws HostError(CommandLine) for a name without a suffix of what this build writes, with a lone "#", with
    // several places for a number, or with one of another form such as "%5d".
    explicit OutputPattern(const std::string& text);

    bool isStandardOutput() const { return mText == "-"; }
    bool isNumbered() const { return mNumbered.has_value(); }
    FileFormat format() const { return mFormat; }  // of files
    const std::string& text() const { return mText; }
    std::filesystem::path folder() const;  // never empty
    std::filesystem::path file(int frame) const;

    // Bits per channel of the worlds where the command line doesn't say.
    int usualDepth() const { return !isStandardOutput() && mFormat == FileFormat::Exr ? 32 : 8; }

private:
    void takeName(const std::string& text);

    std::string mText;
    std::string mFile;  // where there is no place for a number
    FileFormat mFormat = FileFormat::Png;
    std::optional<NumberedName> mNumbered;  // of the whole path
};

}  // namespace TessavoyHost
