# How the module is linked on Linux.

set_target_properties(Tessavoy PROPERTIES SUFFIX ".so" LINK_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/Shell/Module.map")
# -z nodelete: EGL keeps a display for the life of the process, and unloading the module with the last reference to libEGL would
# drop it half way, with Mesa's threads still running; loading it again would make another.
target_link_options(Tessavoy PRIVATE -Wl,-z,nodelete)
target_link_options(Tessavoy PRIVATE "-Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/Shell/Module.map" -Wl,-Bsymbolic)
if(NOT TESSAVOY_SANITIZE)
  target_link_options(Tessavoy PRIVATE -Wl,--no-undefined)
endif()
