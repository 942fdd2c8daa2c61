# What `cpack -G DEB` makes of an installation under /usr (see scripts/package).
set(CPACK_PACKAGE_NAME lumodevice)
set(CPACK_PACKAGE_CONTACT "The LumoDevice developers <lumodevice@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "operate DC electronic loads of the ZAN family")
set(CPACK_PACKAGE_DESCRIPTION
"Programs and a C++ library that operate multi-channel programmable DC electronic
loads of the ZAN family over VISA, USB, sockets and serial ports.
zanctl finds and drives an instrument from the terminal, zansim is one in
software; programs embed the control with the headers and libraries.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/lumodevice ${PROJECT_BINARY_DIR}/platform ${PROJECT_BINARY_DIR}/simulator
  ${PROJECT_BINARY_DIR}/views/qt)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++, cmake, pkg-config")
include(CPack)
