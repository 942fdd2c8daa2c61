# Windows of 32 bit, built with mingw-w64.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(triplet i686-w64-mingw32)
# Floating point as everywhere else: with the x87 the last digits depend on what the compiler keeps in registers.
# Hosts call with a stack that is aligned to 4 bytes alone.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
foreach(kind EXE MODULE SHARED)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT " -Wl,--enable-stdcall-fixup")
endforeach()
