#pragma once

#include <tiffio.h>

#include <string>

#include "Host/ImageFiles/AtomicFile.h"
#include "Host/ImageFiles/InputFile.h"

namespace TessavoyHost {

// libtiff's handle over one of our files, with its messages kept for the caller instead of printed.
class TiffFile {
public:
    explicit TiffFile(InputFile& file);
    TiffFile(AtomicFile& file, bool large);  // large: 64-bit offsets, for files of 4 GB and more
    ~TiffFile() { close(); }
    TiffFile(const TiffFile&) = delete;
    TiffFile& operator=(const TiffFile&) = delete;

    TIFF* get() const { return mTiff; }  // null when the file can't be opened as TIFF

    std::string message() const { return mMessage; }  // the first error so far

    // Writes what is outstanding; false after an error.
    bool close();

private:
    static int keepError(TIFF*, void* self, const char* module, const char* format, va_list arguments);

    TIFF* mTiff = nullptr;
    char mMessage[200] = "";
};

}  // namespace TessavoyHost
