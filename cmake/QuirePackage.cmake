# What `cmake --install` leaves behind: the CMake package Quire, whose components are the targets Quire::Quire,
# Quire::Models, Quire::Newsroom and Quire::TestKit, and what QuirePkgConfig, QuireWindowsPackage and QuireArchives add.
include(CMakePackageConfigHelpers)

set(QUIRE_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/Quire")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/QuireConfig.cmake.in" "${CMAKE_BINARY_DIR}/QuireConfig.cmake"
                              INSTALL_DESTINATION "${QUIRE_CMAKE_DIR}"
                              PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/QuireConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/QuireConfig.cmake" "${CMAKE_BINARY_DIR}/QuireConfigVersion.cmake"
        DESTINATION "${QUIRE_CMAKE_DIR}" COMPONENT Development)
install(EXPORT QuireTargets NAMESPACE Quire:: DESTINATION "${QUIRE_CMAKE_DIR}" COMPONENT Development)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/quire" COMPONENT Development)

# All that is installed, for those who want nothing else built.
add_custom_target(installed)
foreach(target Quire QuirePlatform QuireModels QuireNewsroom QuireTestKit OrvexCOM OrvexCOMU_64 quire translations)
    if(TARGET ${target})
        add_dependencies(installed ${target})
    endif()
endforeach()

if(WIN32)
    include(QuireWindowsPackage)
else()
    include(QuirePkgConfig)
endif()
include(QuireArchives)
