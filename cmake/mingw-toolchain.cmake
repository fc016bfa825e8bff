# Cross-building for 64-bit Windows with MinGW-w64 and its POSIX threads. KORVAN_WINDOWS_PREFIX, as a variable of CMake or
# of the environment, names the folder of the libraries (scripts/windows_dependencies.sh makes it).

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KORVAN_WINDOWS_PREFIX)
if(NOT KORVAN_WINDOWS_PREFIX)
  set(KORVAN_WINDOWS_PREFIX "$ENV{KORVAN_WINDOWS_PREFIX}")
endif()
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${KORVAN_WINDOWS_PREFIX})
set(CMAKE_PREFIX_PATH ${KORVAN_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows 10 and Server 2016 on.
set(CMAKE_C_FLAGS_INIT "-D_WIN32_WINNT=0x0A00 -DWINVER=0x0A00")
set(CMAKE_CXX_FLAGS_INIT "-D_WIN32_WINNT=0x0A00 -DWINVER=0x0A00")
# The compiler's own libraries go into our files: nothing but Windows is needed beside them.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()
