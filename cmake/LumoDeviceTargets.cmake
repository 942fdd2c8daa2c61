# What every target of the project shares: warnings as errors, the include root, the sanitizers.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(lumodevice_flags INTERFACE)
target_include_directories(lumodevice_flags INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_compile_options(lumodevice_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in "literal" + std::string that are none (its bug 105651).
  target_compile_options(lumodevice_flags INTERFACE -Wno-restrict)
endif()
if(LUMODEVICE_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_options(lumodevice_flags INTERFACE ${sanitizers})
  target_link_options(lumodevice_flags INTERFACE ${sanitizers})
endif()

# lumodevice_test(name SOURCES a.cpp ... LIBS x ...): a GoogleTest program; every test in it is one ctest test.
function(lumodevice_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE lumodevice_flags ${ARG_LIBS} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 60)
endfunction()
