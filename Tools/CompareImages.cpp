// Compares two pictures of any format that the host reads, and shows how they differ.
//
//     CompareImages EXPECTED ACTUAL [--threshold 255THS] [--output FOLDER] [--name NAME]
//
// Exit status: 0 when they are the same within the threshold, 1 when they aren't, 2 when they can't be compared.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Support/ImageComparison.h"

namespace {

struct Options {
    std::filesystem::path expected, actual, output;
    std::string name;
    double threshold = 0.0;
};

void describe(CLI::App& application, Options& options) {
    application.add_option("EXPECTED", options.expected, "the picture as it should be")->required();
    application.add_option("ACTUAL", options.actual, "the picture as it is")->required();
    application
        .add_option("--threshold", options.threshold, "largest difference of a sample that is let pass, in 255ths (0)")
        ->check(CLI::NonNegativeNumber);
    application.add_option("--output", options.output,
                           "folder for NAME-expected.png, NAME-actual.png and NAME-difference.png, written when the "
                           "pictures differ");
    application.add_option("--name", options.name, "what these names begin with (the name of ACTUAL)");
}

int compare(const Options& options) {
    const TessavoyHost::Image expected = TessavoyHost::readImage(options.expected);
    const TessavoyHost::Image actual = TessavoyHost::readImage(options.actual);
    const TessavoyHost::ImageDifference difference = TessavoyHost::compareImages(expected, actual, options.threshold);
    std::puts(difference.describe(expected, actual, options.threshold).c_str());
    if (difference.within())
        return 0;
    if (!options.output.empty()) {
        const std::string name = options.name.empty() ? options.actual.stem().string() : options.name;
        TessavoyHost::writeComparison(options.output, name, expected, actual);
        std::printf("see %s\n", (options.output / (name + "-*.png")).c_str());
    }
    return 1;
}

int run(int argc, char** argv) {
    CLI::App application("Compares two pictures.");
    Options options;
    describe(application, options);
    try {
        application.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return application.exit(error) == 0 ? 0 : 2;
    }
    return compare(options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
