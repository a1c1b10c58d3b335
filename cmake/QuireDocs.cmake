# Writes what the documentation site is made from: build/PRESET/docs/Doxyfile over the pages of docs/ and the headers that
# are installed, less those that hosts have no business with. "./dev docs" makes the site.

get_property(headers GLOBAL PROPERTY QUIRE_HEADERS)

# The system has its own documentation of what the native automation layer offers in its place.
list(FILTER headers EXCLUDE REGEX "/src/platform/native/|/src/platform/(ThreadSafety|Unloading)\\.h$")
# How the library reads the hits of a search.
list(FILTER headers EXCLUDE REGEX "/src/notify/(RecordArray|SearchHitReader|StartingSearches)\\.h$")
# How the stand-in makes COM objects of the newsroom.
string(CONCAT insides "CallScope|ClassFactory|ComObject|ConnectionPoint|Connections|DirectoryObject|DispatchBase|EntryObject|"
                      "Enumerator|ErrorInfo|LateBinding|ObjectList|OutValue|Owned|QueueObject|RecordInfo|Results|SearchJob|"
                      "ServerCore|Session|SignonObject|StoryObject|StrangerObject|VariantIndex")
list(FILTER headers EXCLUDE REGEX "/newsroom/server/(${insides})\\.h$")
# How the newsroom reads and writes what hosts give it as text.
list(FILTER headers EXCLUDE REGEX "/newsroom/(model/Zeko|store/FileNames|store/FileText)\\.h$")

# The reference calls the headers what an #include line calls them.
set(QUIRE_DOCS_HEADERS "${PROJECT_BINARY_DIR}/docs/headers")
file(REMOVE_RECURSE "${QUIRE_DOCS_HEADERS}")
foreach(header IN LISTS headers)
    string(REGEX MATCH "^(.+)=(.+)$" header "${header}")
    set(file "${CMAKE_MATCH_2}")
    cmake_path(GET CMAKE_MATCH_1 PARENT_PATH folder)
    file(MAKE_DIRECTORY "${QUIRE_DOCS_HEADERS}/${folder}")
    file(CREATE_LINK "${file}" "${QUIRE_DOCS_HEADERS}/${CMAKE_MATCH_1}" COPY_ON_ERROR SYMBOLIC)
endforeach()

configure_file("${PROJECT_SOURCE_DIR}/docs/site/Doxyfile.in" "${PROJECT_BINARY_DIR}/docs/Doxyfile" @ONLY)
