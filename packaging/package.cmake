# `make package`: one Debian binary package holding the plug-in, its headers,
# the reference host, the manual pages and the examples. Its dependencies are
# computed from the installed binaries with dpkg-shlibdeps.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vorna)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "VORNA developers <dev@vorna.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "camera-control plug-in for digital video recorders")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "VORNA is a plug-in that a digital video recorder loads at run time to drive
pan-tilt-zoom and dome cameras on its RS-485/RS-422 lines. It keeps the
recorder's camera table, turns operator and alarm commands into the bytes of
each camera's protocol (Pelco-D, Pelco-P, Panasonic, Sensormatic, Bosch,
American Dynamics MegaPower, GE), runs preset tours and keeps its settings in
VORNA.xml.
.
This package holds the plug-in, the C header and pkg-config file that
recorders build against, and vorna-host, a reference host that drives cameras
from the command line.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION video)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
include(CPack)
