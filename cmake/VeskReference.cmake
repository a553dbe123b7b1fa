# Target `docs`: the reference of what hosts include, in out/build/PRESET/docs/html; fails on any warning. What the
# renderers share among themselves is left out.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    return()
endif()

set(VESK_REFERENCE_DIR "${PROJECT_BINARY_DIR}/docs")
set(VESK_REFERENCE_INPUT "\"${PROJECT_SOURCE_DIR}/docs/reference.md\"")
set(VESK_REFERENCE_STRIP "")
set(VESK_REFERENCE_PREDEFINED "")
set(_headers "${PROJECT_SOURCE_DIR}/docs/reference.md")
foreach(_directory IN LISTS VESK_DIRECTORIES)
    set(_include "${PROJECT_SOURCE_DIR}/${_directory}/include")
    if(_directory MATCHES "^vesk/" AND NOT _directory STREQUAL "vesk/renderers/picture" AND EXISTS "${_include}")
        string(APPEND VESK_REFERENCE_INPUT " \"${_include}\"")
        string(APPEND VESK_REFERENCE_STRIP " \"${_include}\"")
        string(TOUPPER "${_directory}" _macro)
        string(REPLACE "/" "_" _macro "${_macro}")
        string(APPEND VESK_REFERENCE_PREDEFINED " ${_macro}_EXPORT=")
        file(GLOB_RECURSE _of_library CONFIGURE_DEPENDS "${_include}/*.h")
        list(APPEND _headers ${_of_library})
    endif()
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${VESK_REFERENCE_DIR}/Doxyfile" @ONLY)

add_custom_command(OUTPUT "${VESK_REFERENCE_DIR}/complete"
    COMMAND ${CMAKE_COMMAND} -E rm -rf "${VESK_REFERENCE_DIR}/html"
    COMMAND ${DOXYGEN_EXECUTABLE} "${VESK_REFERENCE_DIR}/Doxyfile"
    COMMAND ${CMAKE_COMMAND} -E touch "${VESK_REFERENCE_DIR}/complete"
    DEPENDS ${_headers} "${VESK_REFERENCE_DIR}/Doxyfile"
    COMMENT "Writing the reference to ${VESK_REFERENCE_DIR}/html" VERBATIM)
add_custom_target(docs DEPENDS "${VESK_REFERENCE_DIR}/complete")
if(BUILD_TESTING)
    add_test(NAME docs/TheReferenceHasNoWarnings
        COMMAND ${DOXYGEN_EXECUTABLE} "${VESK_REFERENCE_DIR}/Doxyfile")
    set_tests_properties(docs/TheReferenceHasNoWarnings PROPERTIES LABELS docs)
endif()
