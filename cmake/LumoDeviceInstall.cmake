# What `cmake --install` puts under the prefix: headers, libraries static and shared with what finds them, the
# programs, manuals, documents and examples. Nothing in it knows the prefix, so the whole can be moved.
include(CMakePackageConfigHelpers)

# All libraries in one, as most hosts want them.
add_library(lumodevice_all INTERFACE)
target_link_libraries(lumodevice_all INTERFACE lumodevice_shared lumodevice_system_shared lumodevice_recordings_shared
  zansim_core_shared)
set_target_properties(lumodevice_all PROPERTIES EXPORT_NAME LumoDevice)
add_library(lumodevice_all_static INTERFACE)
target_link_libraries(lumodevice_all_static INTERFACE lumodevice lumodevice_system lumodevice_recordings zansim_core)
set_target_properties(lumodevice_all_static PROPERTIES EXPORT_NAME static)

set(delivered lumodevice lumodevice_shared lumodevice_system lumodevice_system_shared lumodevice_recordings
  lumodevice_recordings_shared zansim_core zansim_core_shared)
set(delivered_qt)
if(LUMODEVICE_WITH_QT)
  set(delivered_qt lumodevice_qt lumodevice_qt_shared)
endif()
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  # The shared libraries find each other wherever they lie.
  set_target_properties(${delivered} ${delivered_qt} PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()
install(TARGETS ${delivered} lumodevice_all lumodevice_all_static EXPORT LumoDeviceTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
# In an export of its own, which is looked at only by those who ask for Qt.
if(LUMODEVICE_WITH_QT)
  install(TARGETS ${delivered_qt} EXPORT LumoDeviceQtTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
# Loaded by its path, like any VISA library; nothing links with it.
install(TARGETS zansim_visa LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/lumodevice)
install(TARGETS zanctl zansim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(TARGET lumodevice_ocx)
  install(TARGETS lumodevice_ocx LIBRARY DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
if(TARGET zanpanel)
  install(TARGETS zanpanel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES docs/man/zanpanel.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES hosts/zanpanel/desktop/zanpanel.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES hosts/zanpanel/desktop/zanpanel.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
  install(FILES hosts/zanpanel/desktop/org.lumodevice.zanpanel.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
endif()

# The headers that a host includes, or needs to make a part of its own.
file(GLOB toplevel_headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/lumodevice/*.hpp)
file(GLOB toolkit_headers RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/lumodevice/toolkit/*.hpp)
list(REMOVE_ITEM toolkit_headers lumodevice/toolkit/handling.hpp)  # the component's own business
set(io_headers bytes clock drive fault forwarding_visa serial_port visa visa_com visa_com_over_visa)
list(TRANSFORM io_headers REPLACE "(.+)" "lumodevice/io/\\1.hpp")
foreach(header IN LISTS toplevel_headers toolkit_headers io_headers
        ITEMS lumodevice/text/fault.hpp)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${folder})
endforeach()
if(LUMODEVICE_WITH_QT)
  install(DIRECTORY views/qt/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()
install(DIRECTORY platform/include/ recordings/include/ simulator/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)
  install(DIRECTORY platform/windows/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endif()

# For find_package.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/LumoDevice)
configure_package_config_file(cmake/LumoDeviceConfig.cmake.in LumoDeviceConfig.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(LumoDeviceConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/LumoDeviceConfig.cmake ${PROJECT_BINARY_DIR}/LumoDeviceConfigVersion.cmake
  DESTINATION ${package_folder})
install(EXPORT LumoDeviceTargets NAMESPACE LumoDevice:: DESTINATION ${package_folder})
if(LUMODEVICE_WITH_QT)
  install(EXPORT LumoDeviceQtTargets NAMESPACE LumoDevice:: DESTINATION ${package_folder})
endif()

if(UNIX)
  # For pkg-config, which tells where its files lie.
  file(RELATIVE_PATH prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
  foreach(name lumodevice lumodevice-simulator)
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  endforeach()
endif()

# What shells complete command lines with.
set(LUMODEVICE_ZSH_COMPLETIONS share/zsh/site-functions CACHE STRING "Folder of zsh's functions, under the prefix")
if(NOT CMAKE_CROSSCOMPILING)
  set(completions ${PROJECT_BINARY_DIR}/completions)
  file(MAKE_DIRECTORY ${completions})
  foreach(shell bash zsh fish)
    add_custom_command(OUTPUT ${completions}/${shell} DEPENDS zanctl VERBATIM
      COMMAND zanctl --completion ${shell} > ${completions}/${shell})
  endforeach()
  add_custom_target(completions ALL DEPENDS ${completions}/bash ${completions}/zsh ${completions}/fish)
  install(FILES ${completions}/bash DESTINATION share/bash-completion/completions RENAME zanctl)
  install(FILES ${completions}/zsh DESTINATION ${LUMODEVICE_ZSH_COMPLETIONS} RENAME _zanctl)
  install(FILES ${completions}/fish DESTINATION share/fish/vendor_completions.d RENAME zanctl.fish)
endif()

# Who may use instruments on USB, and their lasting names.
if(CMAKE_SYSTEM_NAME STREQUAL Linux)
  install(FILES platform/posix/70-lumodevice.rules DESTINATION lib/udev/rules.d)
  install(FILES hosts/zanctl/service/zanlog@.service DESTINATION lib/systemd/system)
  install(FILES hosts/zanctl/service/bench.conf DESTINATION ${CMAKE_INSTALL_DATADIR}/lumodevice)
endif()

if(UNIX)
  install(FILES docs/man/zanctl.1 docs/man/zansim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
install(FILES docs/installed/README.md LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs PATTERN man EXCLUDE PATTERN installed EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN examples/CMakeLists.txt EXCLUDE)

# The examples of this tree find the targets of this tree.
set(delivered_aliases)
if(LUMODEVICE_WITH_QT)
  set(delivered_aliases lumodevice_qt:qt_static lumodevice_qt_shared:qt)
endif()
foreach(target ${delivered_aliases} lumodevice:core_static lumodevice_shared:core lumodevice_system:system_static
        lumodevice_system_shared:system lumodevice_recordings:recordings_static lumodevice_recordings_shared:recordings
        zansim_core:simulator_static zansim_core_shared:simulator
        lumodevice_all:LumoDevice lumodevice_all_static:static)
  string(REPLACE ":" ";" pair ${target})
  list(GET pair 0 name)
  list(GET pair 1 alias)
  add_library(LumoDevice::${alias} ALIAS ${name})
endforeach()
file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/lumodevice-config.cmake "")

# All that an installation for Windows needs built, and no tests.
if(WIN32)
  add_custom_target(packaged DEPENDS ${delivered} zansim_visa zanctl zansim $<TARGET_NAME_IF_EXISTS:lumodevice_ocx>)
endif()
