# What every target of the project shares: warnings as errors, the include root, the sanitizers.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(lumodevice_flags INTERFACE)
target_include_directories(lumodevice_flags INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
# The one place that tells compilers apart: those that take the options of GCC (clang and mingw-w64 among
# them) and those that take the options of MSVC (clang-cl among them).
if(MSVC)
  target_compile_options(lumodevice_flags INTERFACE /W4 /WX /utf-8 /permissive- /EHsc /Zc:__cplusplus)
else()
  target_compile_options(lumodevice_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    # Not in a release: what an optimiser guesses must not keep a user from building.
    $<$<NOT:$<CONFIG:Release>>:-Werror>)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in "literal" + std::string that are none (its bug 105651).
  target_compile_options(lumodevice_flags INTERFACE -Wno-restrict)
endif()
if(LUMODEVICE_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # Set in the folder of the tests. Checks of every pointer that a test follows are most of what the sanitizers
  # put into one; what it tests has them all, and a null pointer is seen by the address sanitizer.
  define_property(TARGET PROPERTY LUMODEVICE_IS_TEST INITIALIZE_FROM_VARIABLE LUMODEVICE_IS_TEST)
  target_compile_options(lumodevice_flags INTERFACE ${sanitizers}
    $<$<BOOL:$<TARGET_PROPERTY:LUMODEVICE_IS_TEST>>:-fno-sanitize=null,alignment,object-size,vptr>)
  # A program that lies at a fixed place needs no list of the places in it that the loader corrects: a quarter of it.
  target_link_options(lumodevice_flags INTERFACE ${sanitizers}
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>)
endif()

# For folders whose static libraries stay in the tree: they name their objects and have no copies of them.
macro(lumodevice_thin_archives)
  if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang" AND NOT APPLE)
    set(CMAKE_CXX_ARCHIVE_CREATE "<CMAKE_AR> qcT <TARGET> <LINK_FLAGS> <OBJECTS>")
    set(CMAKE_CXX_ARCHIVE_APPEND "<CMAKE_AR> qT <TARGET> <LINK_FLAGS> <OBJECTS>")
  endif()
endmacro()

# For a program whose libraries of the system keep memory until its end.
function(lumodevice_ignore_leaks_of_others program)
  if(LUMODEVICE_SANITIZE)
    target_sources(${program} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/leaks_of_others.cpp)
  endif()
endfunction()

# lumodevice_library(name EXPORT e [INCLUDE folder] [SOURCES a.cpp ...] [LIBS x ...] [SYSTEM y ...]): a static library of the
# project, and of the same objects a shared one, name_shared. Programs that find the package know the shared
# one as LumoDevice::e, the static one as LumoDevice::e_static. A shared library exports what is marked with
# LUMODEVICE_API. Where there are no shared ones, name_shared stands for the static one. LIBS are made in this way
# too, SYSTEM are not.
if(WIN32)
  # With the run-time parts of GCC inside each, exceptions would not get from one to the other.
  set(LUMODEVICE_SHARED OFF)
else()
  set(LUMODEVICE_SHARED ON)
endif()
function(lumodevice_library name)
  cmake_parse_arguments(ARG "" "EXPORT;INCLUDE" "SOURCES;LIBS;SYSTEM" ${ARGN})
  if(ARG_EXPORT STREQUAL core)
    set(file lumodevice)
  else()
    set(file lumodevice-${ARG_EXPORT})
  endif()
  add_library(${name} STATIC ${ARG_SOURCES})
  set(kinds "")
  if(LUMODEVICE_SHARED)
    list(APPEND kinds _shared)
    add_library(${name}_shared SHARED $<TARGET_OBJECTS:${name}>)
    # Before 1.0 every minor version may break what was built against another.
    set_target_properties(${name}_shared PROPERTIES LINKER_LANGUAGE CXX
      VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  else()
    add_library(${name}_shared INTERFACE)
    target_link_libraries(${name}_shared INTERFACE ${name})
  endif()
  set_target_properties(${name} PROPERTIES EXPORT_NAME ${ARG_EXPORT}_static
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  set_target_properties(${name}_shared PROPERTIES EXPORT_NAME ${ARG_EXPORT})
  foreach(kind "" ${kinds})
    set_target_properties(${name}${kind} PROPERTIES OUTPUT_NAME ${file})
    target_compile_features(${name}${kind} PUBLIC cxx_std_20)
    target_include_directories(${name}${kind} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${ARG_INCLUDE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_link_libraries(${name}${kind} PRIVATE $<BUILD_INTERFACE:lumodevice_flags> ${ARG_SYSTEM})
    foreach(library IN LISTS ARG_LIBS)
      target_link_libraries(${name}${kind} PUBLIC ${library}${kind})
    endforeach()
  endforeach()
  if(LUMODEVICE_SHARED)
    # What the shared libraries below do not export and this one needs comes from the static ones, and stays inside.
    foreach(library IN LISTS ARG_LIBS)
      target_link_libraries(${name}_shared PRIVATE $<BUILD_INTERFACE:${library}>)
    endforeach()
    if(NOT MSVC AND NOT APPLE)
      target_link_options(${name}_shared PRIVATE LINKER:--exclude-libs,ALL)
    endif()
  endif()
endfunction()

# lumodevice_test(name SOURCES a.cpp ... LIBS x ...): a GoogleTest program; every test in it is one ctest test, or
# the program is where a process takes long to start: under an emulator.
function(lumodevice_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE lumodevice_flags ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  if(CMAKE_CROSSCOMPILING)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60)
  endif()
endfunction()
