# Installation and the Debian package.
#
# The module is a plug-in: hosts load it with dlopen by the path that
# pkg-config publishes, and nothing links against it. So it lives in its own
# directory under the library directory, where neither the dynamic linker nor
# a linker searching for -lvorna will pick it up by accident.
include(GNUInstallDirs)

set(VORNA_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/vorna)
set(VORNA_FULL_PLUGIN_DIR ${CMAKE_INSTALL_FULL_LIBDIR}/vorna)
set(VORNA_MODULE_FILE libvorna.so.${PROJECT_VERSION_MAJOR})
set(VORNA_INSTALLED_MODULE ${VORNA_FULL_PLUGIN_DIR}/${VORNA_MODULE_FILE})

set_target_properties(vorna PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
install(TARGETS vorna LIBRARY DESTINATION ${VORNA_PLUGIN_DIR} NAMELINK_SKIP
  PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
install(DIRECTORY include/vorna DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

configure_file(packaging/vorna.pc.in vorna.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vorna.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET vorna-host)
  target_compile_definitions(vorna-host PRIVATE VORNA_INSTALLED_MODULE="${VORNA_INSTALLED_MODULE}")
  install(TARGETS vorna-host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(FILES examples/VORNA.xml examples/demo.script DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)
