#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace TessavoyHost {

// Descriptors of the C library, by the system's own calls. What fails says so in errno.

inline constexpr int standardOutput = 1;
inline constexpr int standardError = 2;

// To be called at the start of the program: descriptors 0 to 2 that are closed are opened on the null device, so that
// no file lands there; all three pass bytes unchanged; a console takes what is written for UTF-8. False when there was
// no standard output.
bool prepareStandardDescriptors();

// A copy that programs started from here don't get, above 2. -1 at an error. Signal handlers may call it.
int copyOfDescriptor(int descriptor) noexcept;

// Makes one descriptor point where another one does. Signal handlers may call it.
void pointDescriptor(int descriptor, int where) noexcept;

// Signal handlers may call it.
void closeDescriptor(int descriptor) noexcept;

// The null device, for writing. Signal handlers may call it.
int openNullDevice() noexcept;

// What is written to the descriptor from then on goes nowhere. Signal handlers may call it.
inline void silenceDescriptor(int descriptor) noexcept {
    const int nowhere = openNullDevice();
    if (nowhere == -1) {
        closeDescriptor(descriptor);
        return;
    }
    pointDescriptor(descriptor, nowhere);
    closeDescriptor(nowhere);
}

// A file without a name, for writing and reading, that is gone once closed. -1 at an error.
int openNamelessFile();

// To the beginning of a file.
void rewindDescriptor(int descriptor);

// The ends for reading and for writing, or false.
bool openPipe(std::array<int, 2>& ends);

// How many bytes were read, 0 at the end and at an error. Waits for the first one.
std::size_t readSome(int descriptor, char* to, std::size_t count) noexcept;

// Writes all bytes, past any buffer. False at an error. Signal handlers may call it.
bool writeAll(int descriptor, std::string_view bytes) noexcept;

bool isTerminal(int descriptor);

}  // namespace TessavoyHost
