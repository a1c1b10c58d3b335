#!/bin/bash
# Builds the native Qt 5 Core with ThreadSanitizer once and prints where it lies.
#
#   LD_LIBRARY_PATH=$(cmake/qt-tsan.sh)/lib ctest --preset tsan
#
# QMutex synchronises inside Qt, where ThreadSanitizer sees nothing unless Qt itself is instrumented: with the
# distribution's library it reports races on contended mutexes that are none. Only the library is for use; headers and
# tools remain those of the distribution, which is the same version. Where the result lies: see qt-windows.sh.
set -euo pipefail

# shellcheck source=cmake/qt-source.sh
source "$(dirname "${BASH_SOURCE[0]}")/qt-source.sh"

QT_VARIANT=tsan
QT_COMPILER=g++
QT_FLAGS=(-platform linux-g++ -debug -sanitize thread -no-glib)

qt_make() {
    qt_configure
    make -j"$(nproc)" sub-src-qmake_all
    make -j"$(nproc)" -C src sub-corelib
    make -C src/corelib install INSTALL_ROOT="$QT_STAGE"
}

qt_build_once
