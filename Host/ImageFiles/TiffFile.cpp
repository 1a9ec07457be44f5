#include "Host/ImageFiles/TiffFile.h"

#include <cstdarg>
#include <cstdio>
#include <memory>

namespace TessavoyHost {

namespace {

template <class File>
tmsize_t readFrom(thandle_t file, void* to, tmsize_t count) {
    return static_cast<tmsize_t>(static_cast<File*>(file)->read(to, static_cast<std::size_t>(count)));
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t) {
    return 0;
}

tmsize_t writeTo(thandle_t file, void* from, tmsize_t count) {
    return static_cast<AtomicFile*>(file)->write(from, static_cast<std::size_t>(count)) ? count : 0;
}

template <class File>
toff_t seekIn(thandle_t handle, toff_t offset, int whence) {
    auto* file = static_cast<File*>(handle);
    const toff_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file->position() : file->size();
    file->seek(base + offset);
    return file->position();
}

template <class File>
toff_t sizeOf(thandle_t file) {
    return static_cast<File*>(file)->size();
}

// The files belong to those who made them.
int closeNothing(thandle_t) {
    return 0;
}

int ignoreWarning(TIFF*, void*, const char*, const char*, va_list) {
    return 1;  // handled: nobody else is told
}

using Options = std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)>;

Options openOptions(TIFFErrorHandlerExtR keepError, void* self) {
    Options options(TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (options) {
        TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepError, self);
        TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreWarning, nullptr);
    }
    return options;
}

}  // namespace

// "m" in the mode: the file isn't mapped into memory.
TiffFile::TiffFile(InputFile& file) {
    const Options options = openOptions(keepError, this);
    mTiff = TIFFClientOpenExt("picture", "rm", &file, readFrom<InputFile>, writeNothing, seekIn<InputFile>,
                              closeNothing, sizeOf<InputFile>, nullptr, nullptr, options.get());
}

TiffFile::TiffFile(AtomicFile& file, bool large) {
    const Options options = openOptions(keepError, this);
    mTiff = TIFFClientOpenExt("picture", large ? "w8m" : "wm", &file, readFrom<AtomicFile>, writeTo, seekIn<AtomicFile>,
                              closeNothing, sizeOf<AtomicFile>, nullptr, nullptr, options.get());
}

bool TiffFile::close() {
    if (mTiff == nullptr)
        return mMessage[0] == '\0';
    const bool written = TIFFFlush(mTiff) == 1;
    TIFFClose(mTiff);
    mTiff = nullptr;
    return written && mMessage[0] == '\0';
}

int TiffFile::keepError(TIFF*, void* self, const char*, const char* format, va_list arguments) {
    auto& message = static_cast<TiffFile*>(self)->mMessage;
    if (message[0] == '\0')
        std::vsnprintf(message, sizeof message, format, arguments);
    return 1;  // handled: nobody else is told
}

}  // namespace TessavoyHost
