# Toolchain file: 64-bit Windows by MinGW-w64 with POSIX threads, Qt from qt-windows.sh, programs run by wine-run.
#
#   cmake -DCMAKE_TOOLCHAIN_FILE=cmake/windows-x64.cmake -DQUIRE_QT_WINDOWS="$(cmake/qt-windows.sh)" ...
#
# QUIRE_QT_WINDOWS may come from the environment instead. Packages in other folders are found by setting their
# <Package>_DIR or by giving the folder in CMAKE_FIND_ROOT_PATH.

set(QUIRE_QT_WINDOWS "$ENV{QUIRE_QT_WINDOWS}" CACHE PATH "Where cmake/qt-windows.sh put Qt for Windows")
if(NOT EXISTS "${QUIRE_QT_WINDOWS}/lib/cmake/Qt5Core")
    message(FATAL_ERROR "QUIRE_QT_WINDOWS (\"${QUIRE_QT_WINDOWS}\") holds no Qt: give the folder that cmake/qt-windows.sh prints")
endif()

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
# CMake reads this file again for each of its trial compilations.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUIRE_QT_WINDOWS)

# The plain names may mean the variant without std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Headers and libraries of this machine are not for Windows; its tools are for building.
list(APPEND CMAKE_FIND_ROOT_PATH "${QUIRE_QT_WINDOWS}" /usr/x86_64-w64-mingw32)
list(REMOVE_DUPLICATES CMAKE_FIND_ROOT_PATH)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/wine-run" --dll-dir "${QUIRE_QT_WINDOWS}/bin")
