#!/bin/bash
# Builds Qt 5 for 64-bit Windows once, with MinGW-w64 (POSIX threads), and prints where it lies.
#
#   prefix=$(cmake/qt-windows.sh)            Core: all that the library, the command line and their tests use
#   prefix=$(cmake/qt-windows.sh widgets)    Core, Gui, Widgets and Test, for the desk; takes many times as long
#
# The result goes to $QUIRE_CACHE (default: ${XDG_CACHE_HOME:-~/.cache}/quire), in a folder named after Qt's version and
# a hash of compiler and configuration. A second call returns at once; two calls at the same time build once.
set -euo pipefail

# shellcheck source=cmake/qt-source.sh
source "$(dirname "${BASH_SOURCE[0]}")/qt-source.sh"

QT_COMPILER=x86_64-w64-mingw32-g++-posix
QT_FLAGS=(-release -xplatform win32-g++ -device-option CROSS_COMPILE=x86_64-w64-mingw32-)

# Of two arguments that contradict each other the later one counts. The source package lacks the header for tablets.
QT_WIDGETS_FLAGS=(
    -gui -widgets -feature-testlib -pch -qt-libpng -qt-freetype -qt-harfbuzz
    -no-feature-graphicsview -no-feature-printer -no-feature-tabletevent
)

case ${1:-} in
"")
    QT_VARIANT=windows
    ;;
widgets)
    QT_VARIANT=windows-widgets
    QT_FLAGS+=("${QT_WIDGETS_FLAGS[@]}")
    ;;
*)
    echo "qt-windows: no such variant: $1" >&2
    exit 2
    ;;
esac

# Qt's mkspec calls the compilers by their plain names, which on Debian may mean the variant without std::thread.
put_posix_compilers_first() {
    local tool
    mkdir "$QT_WORK/bin"
    for tool in gcc g++; do
        ln -s "$(command -v "x86_64-w64-mingw32-$tool-posix")" "$QT_WORK/bin/x86_64-w64-mingw32-$tool"
    done
    PATH=$QT_WORK/bin:$PATH
}

# install_modules FOLDER...: what these folders of the build made, into the stage.
install_modules() {
    local folder
    for folder in "$@"; do
        make -C "$folder" install INSTALL_ROOT="$QT_STAGE"
    done
}

# install_tools NAME...: these run on this machine; "make install" knows only those of the target.
install_tools() {
    mkdir -p "$QT_STAGE$QT_PREFIX/bin"
    install -s -t "$QT_STAGE$QT_PREFIX/bin" "${@/#/bin/}"
}

make_core() {
    make -j"$(nproc)" -C src sub-corelib sub-rcc sub-winmain
    install_modules src/corelib src/winmain
    install_tools moc rcc qmake
}

# Of the plugins only the one for the platform: the desk brings its style along, and Gui itself reads and writes PNG.
make_widgets() {
    make -j"$(nproc)" -C src sub-widgets sub-testlib sub-platformsupport
    make -j"$(nproc)" -C src/plugins/platforms sub-windows
    install_modules src/gui src/widgets src/testlib src/plugins/platforms/windows
    install_tools uic
}

qt_make() {
    put_posix_compilers_first
    qt_configure
    make -j"$(nproc)" sub-src-qmake_all
    make_core
    [[ $QT_VARIANT != windows-widgets ]] || make_widgets
    mkdir -p "$QT_STAGE$QT_PREFIX/mkspecs"
    cp -r "$QT_SOURCE"/mkspecs/{win32-g++,common,features} "$QT_STAGE$QT_PREFIX/mkspecs"
}

qt_build_once
