# How the module is linked on Windows.

set_target_properties(Tessavoy PROPERTIES SUFFIX ".aex")

# The resource is written while the module is built, by a program that runs on the machine that builds: in a cross build the
# module's own compiler can't make it.
set(resource_folder "${PROJECT_BINARY_DIR}/generated/PluginResource")
set(resource_writer_source "${PROJECT_SOURCE_DIR}/Tools/WritePluginResource.cpp")
if(CMAKE_CROSSCOMPILING)
  find_program(TESSAVOY_NATIVE_COMPILER NAMES c++ g++ clang++ REQUIRED
               DOC "A C++ compiler for the machine that builds")
  set(resource_writer "${resource_folder}/WritePluginResource")
  add_custom_command(OUTPUT "${resource_writer}"
                     COMMAND "${CMAKE_COMMAND}" -E make_directory "${resource_folder}"
                     COMMAND "${TESSAVOY_NATIVE_COMPILER}" -std=c++20 "-I${PROJECT_SOURCE_DIR}" -o "${resource_writer}"
                             "${resource_writer_source}"
                     DEPENDS "${resource_writer_source}" "${CMAKE_CURRENT_SOURCE_DIR}/Shell/ProductIdentity.h"
                     COMMENT "Building the writer of the plug-in resource")
else()
  add_executable(WritePluginResource "${resource_writer_source}")
  set(resource_writer WritePluginResource)
endif()
add_custom_command(OUTPUT "${resource_folder}/Tessavoy.rc"
                   COMMAND "${CMAKE_COMMAND}" -E make_directory "${resource_folder}"
                   COMMAND "${resource_writer}" "${resource_folder}/Tessavoy.bin" "${resource_folder}/Tessavoy.rc"
                   DEPENDS "${resource_writer}"
                   COMMENT "Writing the plug-in resource")
target_sources(Tessavoy PRIVATE "${resource_folder}/Tessavoy.rc")
