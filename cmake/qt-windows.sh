#!/bin/bash
# Builds Qt 5 Core for 64-bit Windows once, with MinGW-w64 (POSIX threads), and prints where it lies.
#
#   prefix=$(cmake/qt-windows.sh)
#
# The result goes to $QUIRE_CACHE (default: ${XDG_CACHE_HOME:-~/.cache}/quire), in a folder named after Qt's version and
# a hash of compiler and configuration. A second call returns at once; two calls at the same time build once.
set -euo pipefail

# shellcheck source=cmake/qt-source.sh
source "$(dirname "${BASH_SOURCE[0]}")/qt-source.sh"

QT_VARIANT=windows
QT_COMPILER=x86_64-w64-mingw32-g++-posix
QT_FLAGS=(-release -xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32-)

# Qt's mkspec calls the compilers by their plain names, which on Debian may mean the variant without std::thread.
put_posix_compilers_first() {
    local tool
    mkdir "$QT_WORK/bin"
    for tool in gcc g++; do
        ln -s "$(command -v "x86_64-w64-mingw32-$tool-posix")" "$QT_WORK/bin/x86_64-w64-mingw32-$tool"
    done
    PATH=$QT_WORK/bin:$PATH
}

qt_make() {
    put_posix_compilers_first
    qt_configure
    make -j"$(nproc)" sub-src-qmake_all
    make -j"$(nproc)" -C src sub-corelib sub-rcc sub-winmain
    make -C src/corelib install INSTALL_ROOT="$QT_STAGE"
    make -C src/winmain install INSTALL_ROOT="$QT_STAGE"
    # The tools run on this machine; "make install" knows only those of the target.
    mkdir -p "$QT_STAGE$QT_PREFIX"/{bin,mkspecs}
    install -s -t "$QT_STAGE$QT_PREFIX/bin" bin/{moc,rcc,qmake}
    cp -r "$QT_SOURCE"/mkspecs/{win32-g++,common,features} "$QT_STAGE$QT_PREFIX/mkspecs"
}

qt_build_once
