# How every target of this house is compiled, and how headers become <quire/...>.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC OFF)

# One folder for programs and DLLs: a Windows program finds its DLLs beside itself.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
if(NOT WIN32)
    set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN")
endif()

set(QUIRE_INCLUDE_DIR "${CMAKE_BINARY_DIR}/include")

# The locks of the library check their order, see <quire/session/LockOrder.h>.
add_compile_definitions("$<$<CONFIG:Debug>:QUIRE_CHECK_LOCK_ORDER>")

set(QUIRE_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined or thread")
if(QUIRE_SANITIZE)
    add_compile_options(-fsanitize=${QUIRE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QUIRE_SANITIZE})
endif()

# quire_target(TARGET): the warnings and the Qt rules that all targets share.
function(quire_target target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
                                             $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
    # A story's destructor is not virtual, and hosts are built for that: who deletes one knows its class.
    target_compile_options(${target} PRIVATE
                           $<$<CXX_COMPILER_ID:Clang>:-Wno-delete-non-abstract-non-virtual-dtor>)
    if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # To gcc every source in a unity file is a header, where a type must not have members of unnamed namespaces.
        target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
    endif()
    if(WIN32)
        # The 64-bit COM headers of MinGW-w64 are not clean under -Wpedantic.
        target_compile_definitions(${target} PRIVATE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
    endif()
    target_compile_definitions(
        ${target} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
                          QT_STRICT_ITERATORS QT_DEPRECATED_WARNINGS QT_MESSAGELOGCONTEXT)
    target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${QUIRE_INCLUDE_DIR}>"
                                                "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
endfunction()

# quire_headers(PREFIX FILE...): makes each file reachable as <quire/PREFIX/FILE> in the build tree, through a one-line
# header that includes it where it lies, and installs the file itself at the same place. The reference is made from the
# same files, see QuireDocs.
function(quire_headers prefix)
    foreach(file IN LISTS ARGN)
        set(name "quire/${prefix}/${file}")
        cmake_path(NORMAL_PATH name)
        set(text "#include \"${CMAKE_CURRENT_SOURCE_DIR}/${file}\"\n")
        set_property(GLOBAL APPEND PROPERTY QUIRE_HEADERS "${name}=${CMAKE_CURRENT_SOURCE_DIR}/${file}")
        file(CONFIGURE OUTPUT "${QUIRE_INCLUDE_DIR}/${name}" CONTENT "${text}" @ONLY)
        cmake_path(GET name PARENT_PATH folder)
        install(FILES "${file}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT Development)
    endforeach()
endfunction()

# quire_install(TARGET): installs a library of the CMake package Quire: what programs run with, and what they are built
# with.
function(quire_install target)
    install(
        TARGETS ${target}
        EXPORT QuireTargets
        RUNTIME COMPONENT Runtime
        LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE COMPONENT Development)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL STATIC_LIBRARY)
        quire_strip_archive(${target})
    endif()
endfunction()

# quire_strip_archive(TARGET): "install --strip" leaves static libraries as they are, and most of ours is debug information.
function(quire_strip_archive target)
    set(archive "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:${target}>")
    install(
        CODE "if(CMAKE_INSTALL_DO_STRIP)
                  execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug \"${archive}\" COMMAND_ERROR_IS_FATAL ANY)
              endif()"
        COMPONENT Development)
endfunction()
