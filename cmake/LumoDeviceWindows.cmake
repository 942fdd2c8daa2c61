# What a build for Windows does otherwise. Debian has no packages for it of the libraries that the programs and tests
# need: those of headers alone are taken as they lie on this machine, GoogleTest from its sources.
if(NOT WIN32)
  return()
endif()

target_compile_definitions(lumodevice_flags INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN STRICT _WIN32_WINNT=0x0601)
if(MINGW)
  # With static libraries alone, what a program does not use stays out of it.
  target_compile_options(lumodevice_flags INTERFACE -ffunction-sections -fdata-sections)
  target_link_options(lumodevice_flags INTERFACE LINKER:--gc-sections)
endif()

# lumodevice_header_library(package folder): the library package::package, which find_package finds, is the headers in
# /usr/include/folder. The whole of /usr/include must not be seen: it has the headers of this machine's C library.
set(LUMODEVICE_HEADERS /usr/include CACHE PATH "Where the folders of header-only libraries lie")
function(lumodevice_header_library package folder)
  set(seen ${PROJECT_BINARY_DIR}/headers/${folder})
  if(NOT EXISTS ${LUMODEVICE_HEADERS}/${folder})
    message(FATAL_ERROR "${LUMODEVICE_HEADERS}/${folder} is not there")
  endif()
  file(MAKE_DIRECTORY ${seen})
  file(CREATE_LINK ${LUMODEVICE_HEADERS}/${folder} ${seen}/${folder} SYMBOLIC)
  add_library(${package}::${package} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${package}::${package} SYSTEM INTERFACE ${seen})
  string(TOLOWER ${package} name)
  file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${name}-config.cmake "")
endfunction()
lumodevice_header_library(CLI11 CLI)
lumodevice_header_library(nlohmann_json nlohmann)

if(LUMODEVICE_TESTS)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
