# Cross build for 64-bit Windows with Debian's mingw-w64, its POSIX threads flavour: std::thread and std::mutex need it.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# What is built runs here under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../Tools/RunUnderWine")

# Nothing of this machine's own is for Windows: libraries and headers come from what Tools/BuildWindowsDependencies built.
get_filename_component(dependencies "${CMAKE_CURRENT_LIST_DIR}/../build/windows-dependencies/prefix" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${dependencies}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${dependencies}/lib/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
