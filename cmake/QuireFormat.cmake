# Build targets "format", "format-check", "cppcheck" and "tidy" over our own sources.

file(GLOB_RECURSE QUIRE_SOURCES CONFIGURE_DEPENDS
    "${CMAKE_SOURCE_DIR}/src/*.cpp" "${CMAKE_SOURCE_DIR}/src/*.h" "${CMAKE_SOURCE_DIR}/orvex/*.h"
    "${CMAKE_SOURCE_DIR}/newsroom/*.cpp" "${CMAKE_SOURCE_DIR}/newsroom/*.h" "${CMAKE_SOURCE_DIR}/models/*.cpp"
    "${CMAKE_SOURCE_DIR}/models/*.h" "${CMAKE_SOURCE_DIR}/testkit/*.cpp" "${CMAKE_SOURCE_DIR}/testkit/*.h"
    "${CMAKE_SOURCE_DIR}/examples/*.cpp" "${CMAKE_SOURCE_DIR}/examples/*.h" "${CMAKE_SOURCE_DIR}/tools/*.cpp"
    "${CMAKE_SOURCE_DIR}/tools/*.h" "${CMAKE_SOURCE_DIR}/tests/*.cpp" "${CMAKE_SOURCE_DIR}/tests/*.h"
    "${CMAKE_SOURCE_DIR}/bench/*.cpp" "${CMAKE_SOURCE_DIR}/bench/*.h" "${CMAKE_SOURCE_DIR}/fuzz/*.cpp"
    "${CMAKE_SOURCE_DIR}/fuzz/*.h")

find_program(QUIRE_CLANG_FORMAT clang-format)
if(QUIRE_CLANG_FORMAT)
    add_custom_target(format COMMAND ${QUIRE_CLANG_FORMAT} -i ${QUIRE_SOURCES} VERBATIM)
    add_custom_target(format-check COMMAND ${QUIRE_CLANG_FORMAT} --dry-run -Werror ${QUIRE_SOURCES} VERBATIM)
endif()

find_program(QUIRE_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(QUIRE_CLANG_TIDY)
    # Over whatever the build compiles but what others have written: Qt's tools, and GoogleTest. The preset "tidy" compiles several sources as one,
    # which takes a fraction of the time; such a batch lies in the build folder and finds its configuration there.
    add_custom_target(tidy COMMAND ${QUIRE_CLANG_TIDY} -quiet -p "${CMAKE_BINARY_DIR}"
                                   "^(?!.*/(mocs_compilation|qrc_|gtest|gmock)).*\\.(cpp|cxx)$" VERBATIM)
    foreach(folder bench tests)
        configure_file(${folder}/.clang-tidy "${CMAKE_BINARY_DIR}/${folder}/.clang-tidy" COPYONLY)
    endforeach()
endif()

find_program(QUIRE_CPPCHECK cppcheck)
if(QUIRE_CPPCHECK)
    # What a build of one file does not see. What is let pass says why, here or on its line.
    add_custom_target(
        cppcheck COMMAND ${QUIRE_CPPCHECK} --quiet --std=c++17 --library=qt --enable=warning,performance,portability,style
                         --inline-suppr "--suppressions-list=${CMAKE_SOURCE_DIR}/.cppcheck-suppressions"
                         --error-exitcode=1 -D__linux__ -U_WIN32 -I "${QUIRE_INCLUDE_DIR}" "${CMAKE_SOURCE_DIR}/src"
                         "${CMAKE_SOURCE_DIR}/newsroom" "${CMAKE_SOURCE_DIR}/models" "${CMAKE_SOURCE_DIR}/testkit"
                         "${CMAKE_SOURCE_DIR}/examples" "${CMAKE_SOURCE_DIR}/tools" VERBATIM)
endif()
