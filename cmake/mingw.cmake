# The tool chain for 64-bit Windows: Debian's MinGW-w64, in the variant whose threads the standard library knows.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Nothing of the building system's own libraries and headers fits the target.
# Qt's are where tools/windows/qt_sdk put them; without ".." in the path, which would not be known again.
cmake_path(SET qt_for_windows NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../build/qt-windows)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${qt_for_windows})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests run under Wine, in a prefix of their own.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/under_wine)
