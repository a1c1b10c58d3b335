# What a Windows package needs beside our own files, so that its programs run in an empty folder: Qt, the compiler's
# run-time, and the licences of both.

set(runtime_dlls libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
foreach(dll IN LISTS runtime_dlls)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${dll}" OUTPUT_VARIABLE path
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    file(REAL_PATH "${path}" path)
    if(NOT EXISTS "${path}")
        message(FATAL_ERROR "The compiler has no ${dll}")
    endif()
    install(FILES "${path}" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)
endforeach()
install(FILES "${QUIRE_QT_WINDOWS}/bin/Qt5Core.dll" DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT Runtime)

function(install_licence file name)
    install(FILES "${file}" DESTINATION licences RENAME "${name}" COMPONENT Runtime)
endfunction()

install_licence(/usr/share/doc/libqt5core5a/copyright Qt5Core.txt)
install_licence(/usr/share/common-licenses/LGPL-3 LGPL-3.txt)
install_licence(/usr/share/common-licenses/GPL-3 GPL-3.txt)
install_licence(/usr/share/common-licenses/GPL-2 GPL-2.txt)
install_licence(/usr/share/doc/libcli11-dev/copyright CLI11.txt)
install_licence(/usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright gcc-runtime.txt)
install_licence(/usr/share/doc/mingw-w64-x86-64-dev/copyright mingw-w64-runtime.txt)

install(FILES "${PROJECT_SOURCE_DIR}/packaging/COPYRIGHT-windows.txt" DESTINATION . RENAME COPYRIGHT.txt COMPONENT Runtime)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/README-windows.txt" DESTINATION . RENAME README.txt COMPONENT Runtime)
