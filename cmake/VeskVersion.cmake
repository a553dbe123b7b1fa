# The changelog names the version once; reading it from there keeps the two from drifting apart.
function(vesk_read_version OUT CHANGELOG)
    file(STRINGS "${CHANGELOG}" heading REGEX "^## [0-9]+\\.[0-9]+\\.[0-9]+" LIMIT_COUNT 1)
    if(NOT heading MATCHES "^## ([0-9]+\\.[0-9]+\\.[0-9]+)")
        message(FATAL_ERROR "${CHANGELOG} has no heading of the form '## MAJOR.MINOR.PATCH'.")
    endif()
    set(${OUT} "${CMAKE_MATCH_1}" PARENT_SCOPE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${CHANGELOG}")
endfunction()
