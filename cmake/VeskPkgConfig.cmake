# pkg-config files for hosts that are not built with CMake. They lie in lib/pkgconfig and speak of paths relative to
# themselves, so that an install can be moved.
set(VESK_PKG_CONFIG_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# _vesk_write_pkg_config(NAME DESCRIPTION text REQUIRES text CFLAGS text LIBS text): NAME.pc, installed. The texts may
# hold generator expressions.
function(_vesk_write_pkg_config NAME)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "DESCRIPTION;REQUIRES;CFLAGS;LIBS" "")
    cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
        BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${VESK_PKG_CONFIG_DIR}" OUTPUT_VARIABLE to_prefix)
    set(file "${PROJECT_BINARY_DIR}/pkgconfig/${NAME}.pc")
    file(GENERATE OUTPUT "${file}" CONTENT "\
prefix=\${pcfiledir}/${to_prefix}
libdir=\${prefix}/${CMAKE_INSTALL_LIBDIR}
includedir=\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}

Name: ${NAME}
Description: ${ARG_DESCRIPTION}
Version: ${PROJECT_VERSION}
Requires: ${ARG_REQUIRES}
Cflags: ${ARG_CFLAGS}
Libs: ${ARG_LIBS}
")
    install(FILES "${file}" DESTINATION "${VESK_PKG_CONFIG_DIR}")
endfunction()

# vesk_add_pkg_config(TARGET DESCRIPTION text PUBLIC dependencies...): the file of one library.
function(vesk_add_pkg_config TARGET)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "DESCRIPTION" "PUBLIC")
    set(requires "")
    foreach(dependency IN LISTS ARG_PUBLIC)
        if(dependency MATCHES "^vesk::(.+)")
            list(APPEND requires "vesk_${CMAKE_MATCH_1} = ${PROJECT_VERSION}")
        else()
            # spdlog::spdlog and fmt::fmt: their files have the names of their packages.
            string(REGEX REPLACE "::.*" "" package "${dependency}")
            list(APPEND requires "${package}")
        endif()
    endforeach()
    list(JOIN requires ", " requires)
    get_target_property(type ${TARGET} TYPE)
    set(libs "")
    if(NOT type STREQUAL "INTERFACE_LIBRARY")
        set(libs "-L\${libdir} -l${TARGET}")
    endif()
    if(NOT ARG_DESCRIPTION)
        set(ARG_DESCRIPTION "A library of vesk")
    endif()
    _vesk_write_pkg_config(${TARGET} DESCRIPTION "${ARG_DESCRIPTION}" REQUIRES "${requires}"
        CFLAGS "-I\${includedir}" LIBS "${libs}")
endfunction()
