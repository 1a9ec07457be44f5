# How every target is compiled. Included once, before any target is made.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

# No contraction, so that the evaluation gives the same bits from every compiler. NDEBUG is left out on purpose: assertions
# stay in the product.
if(MSVC)
  set(CMAKE_CXX_FLAGS_RELEASE "/O2 /Zi")
  # The runtime goes into every file that is built, so that nothing has to be installed beside it.
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  add_compile_options(/utf-8 /permissive- /Zc:__cplusplus /fp:precise /W4)
  add_compile_definitions(NOMINMAX _CRT_SECURE_NO_WARNINGS)
else()
  set(CMAKE_CXX_FLAGS_RELEASE "-O2 -g1")
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1 -fno-omit-frame-pointer")
  set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g")
  file(RELATIVE_PATH wayToSource "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
  string(REGEX REPLACE "/$" "" wayToSource "${wayToSource}")
  add_compile_options(
    -ffp-contract=off
    -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -Wpedantic -Werror
    # Assertions and reports name a file from the repository's root, wherever it was built; a cache of compiled files may
    # have made the paths relative to the build folder.
    "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=" "-fmacro-prefix-map=${wayToSource}/=")
endif()

if(MINGW)
  # The stack of 64-bit Windows is aligned to 16 bytes, and this compiler moves spilled registers of 32 bytes as if it were
  # aligned to 32; the assembler is told to write moves that don't care.
  add_compile_options(-Wa,-muse-unaligned-vector-move)
  add_compile_definitions(TESSAVOY_UNALIGNED_VECTOR_MOVES)
  # The compiler's own libraries go into every file that is built, so that nothing has to be installed beside it.
  add_link_options(-static)
endif()

if(TESSAVOY_SANITIZE)
  add_compile_options("-fsanitize=${TESSAVOY_SANITIZE}" -fno-sanitize-recover=all)
  add_link_options("-fsanitize=${TESSAVOY_SANITIZE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC's flow analysis loses its way in instrumented code (it says so of std::regex's own); the plain build keeps the
    # warning.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(TESSAVOY_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

include_directories("${PROJECT_SOURCE_DIR}")
