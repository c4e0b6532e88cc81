# Builds for 64-bit Windows with Debian's MinGW-w64, in its "posix" variant: Qt needs std::thread.
# The environment variable WINDOWS_LIBRARIES is the folder of the libraries that
# packaging/windows/libraries has built.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries and headers come only from there, not from the build machine. Programs, such as Qt's
# tools, come from the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 $ENV{WINDOWS_LIBRARIES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(QT_HOST_PATH /usr CACHE PATH "Where Qt's tools are")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake
    CACHE PATH "Where the CMake files of Qt's tools are")

# The same source gives the same bytes at any time.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--no-insert-timestamp")
endforeach()
