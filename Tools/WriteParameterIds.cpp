// Writes the parameter ids in panel order, one C string literal a line, for the host's table of ids.

#include "Source/Parameter/Catalogue.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
        return EXIT_FAILURE;
    }
    std::ofstream file(argv[1]);
    for (const auto& id : Tessavoy::registrationList()) {
        file << '"' << id << "\",\n";
    }
    file.close();
    if (!file) {
        std::fprintf(stderr, "%s: can't be written\n", argv[1]);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
