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
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

# Manual pages and the changelog, compressed as Debian ships them: scdoc turns
# each page's source into roff, gzip -n keeps the archives reproducible.
find_program(SCDOC scdoc REQUIRED)
find_program(GZIP gzip REQUIRED)
# The pages carry the release date, not the build date.
set(VORNA_RELEASE_EPOCH 1795528800)
set(VORNA_DOC_DIR ${CMAKE_INSTALL_FULL_DOCDIR})
set(VORNA_EXAMPLES_DIR ${CMAKE_INSTALL_FULL_DOCDIR}/examples)
set(VORNA_COMPRESSED_DOCS)
foreach(page vorna-host.1 VORNA.xml.5)
  string(REGEX REPLACE ".*\\." "" section ${page})
  configure_file(packaging/man/${page}.scd man/${page}.scd @ONLY)
  add_custom_command(OUTPUT man/${page}.gz
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${VORNA_RELEASE_EPOCH} ${SCDOC} < man/${page}.scd > man/${page}
    COMMAND ${GZIP} -9nf man/${page}
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/man/${page}.scd VERBATIM)
  list(APPEND VORNA_COMPRESSED_DOCS man/${page}.gz)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
add_custom_command(OUTPUT changelog.gz
  COMMAND ${GZIP} -9nc ${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG > changelog.gz
  DEPENDS CHANGELOG VERBATIM)
add_custom_target(vorna_docs ALL DEPENDS ${VORNA_COMPRESSED_DOCS} changelog.gz)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz DESTINATION ${CMAKE_INSTALL_DOCDIR})

include(packaging/package.cmake)
