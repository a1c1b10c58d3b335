# The package for builds without CMake: pkg-config --cflags --libs quire, and one name for each further library.

file(RELATIVE_PATH prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")

# install_pkg_config(NAME TARGET REQUIRES LIBRARIES DESCRIPTION): nothing when there is no such target.
function(install_pkg_config name target requires libraries description)
    if(TARGET ${target})
        configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/quire.pc.in" "${CMAKE_BINARY_DIR}/pkgconfig/${name}.pc" @ONLY)
        install(FILES "${CMAKE_BINARY_DIR}/pkgconfig/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
                COMPONENT Development)
    endif()
endfunction()

install_pkg_config(quire Quire "Qt5Core >= 5.15" "-lQuire -lQuirePlatform" "${PROJECT_DESCRIPTION}")
install_pkg_config(quire-models QuireModels quire -lQuireModels "Qt item models over a newsroom server")
install_pkg_config(quire-newsroom QuireNewsroom quire -lQuireNewsroom "Newsroom in a box that stands in for a server")
install_pkg_config(quire-testkit QuireTestKit quire-newsroom -lQuireTestKit "Test kit for programs that use Quire")
