# Packages to hand on, by cpack: Debian's (-G DEB), one for each purpose, and the zip for Windows hosts (-G ZIP).

set(CPACK_PACKAGE_NAME quire)
set(CPACK_PACKAGE_VENDOR "Quire developers")
set(CPACK_PACKAGE_CONTACT "Quire developers <quire@localhost>")
set(CPACK_PACKAGE_FILE_NAME "quire-${PROJECT_VERSION}-win64")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Runtime Development Tools)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
    "The library: the object model of a newsroom server for programs in which journalists write.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "What hosts are built with: headers, libraries, examples, and a newsroom in a box with a test kit.")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
    "The command line: looks around, reads, edits, searches and watches on a newsroom server.")

set(exactly "libquire${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libquire${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquire-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${exactly}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME quire)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${exactly}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
# Where the command line's libraries are while their own package is not installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")

# Each package says whose it is.
if(NOT WIN32)
    foreach(component Runtime Development Tools)
        string(TOUPPER "${component}" name)
        install(FILES "${PROJECT_SOURCE_DIR}/packaging/copyright" COMPONENT ${component}
                DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME}")
    endforeach()
endif()

include(CPack)
