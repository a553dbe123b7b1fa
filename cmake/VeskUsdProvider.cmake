# vesk::openusd is the scene description that everything above it is built on: an installed OpenUSD where
# there is one, else the embedded subset of its API. Nothing above this file asks which.

function(_vesk_find_installed_openusd OUT)
    # OpenUSD's exported targets name OpenGL's and do not look for it themselves.
    find_package(OpenGL QUIET)
    find_package(pxr QUIET)
    set(found FALSE)
    if(pxr_FOUND AND TARGET usdGeom AND TARGET glf AND TARGET cameraUtil)
        set(found TRUE)
    elseif(pxr_FOUND)
        message(WARNING "The OpenUSD at ${pxr_DIR} was built without imaging (no target glf or cameraUtil); vesk needs it with imaging.")
    endif()
    set(${OUT} ${found} PARENT_SCOPE)
endfunction()

# Whether the project around this one has found a real OpenUSD: asked before this one looks for itself.
set(_vesk_host_has_openusd FALSE)
if(TARGET usdGeom)
    set(_vesk_host_has_openusd TRUE)
endif()

set(VESK_USD_PROVIDER_FOUND subset)
if(VESK_USD_PROVIDER STREQUAL "installed" OR VESK_USD_PROVIDER STREQUAL "auto")
    _vesk_find_installed_openusd(_installed)
    if(_installed)
        set(VESK_USD_PROVIDER_FOUND installed)
        # Once more in this scope: find_package's variables and the imported targets' visibility belong here.
        find_package(OpenGL QUIET)
        find_package(pxr REQUIRED)
    elseif(VESK_USD_PROVIDER STREQUAL "installed")
        message(FATAL_ERROR "VESK_USD_PROVIDER is 'installed' and no OpenUSD with imaging was found. "
            "Point CMAKE_PREFIX_PATH at one (OpenUSD 24.11 or newer), or choose 'auto' or 'subset'.")
    endif()
elseif(NOT VESK_USD_PROVIDER STREQUAL "subset")
    message(FATAL_ERROR "VESK_USD_PROVIDER is '${VESK_USD_PROVIDER}'; it must be 'auto', 'installed' or 'subset'.")
endif()

if(VESK_USD_PROVIDER_FOUND STREQUAL "subset" AND _vesk_host_has_openusd)
    message(FATAL_ERROR "This vesk builds on its embedded subset of OpenUSD, and the project around it has found a "
        "real OpenUSD before it. One program can use only one of them: build vesk with VESK_USD_PROVIDER=installed "
        "on that OpenUSD (24.11 or newer, with imaging), or do not find pxr here.")
endif()

# Goes into the export header of every library that speaks of OpenUSD: a host that compiles our headers with those of
# another OpenUSD is told so by its compiler, not by its linker or its users.
if(VESK_USD_PROVIDER_FOUND STREQUAL "subset")
    set(VESK_USD_PROVIDER_CHECK "
#include <pxr/pxr.h>
#if !defined(VESK_OPENUSD_SUBSET) || defined(PXR_PXR_H)
#error \"This vesk was built on its embedded subset of OpenUSD, and <pxr/pxr.h> is that of a real OpenUSD. Build vesk with VESK_USD_PROVIDER=installed on that OpenUSD, or take its headers off the include path.\"
#endif
")
else()
    set(VESK_USD_PROVIDER_CHECK "
#include <pxr/pxr.h>
#ifdef VESK_OPENUSD_SUBSET
#error \"This vesk was built on an installed OpenUSD, and <pxr/pxr.h> is that of the subset which another vesk carries. Take that vesk off the include path.\"
#elif PXR_VERSION != ${PXR_VERSION}
#error \"This vesk was built on OpenUSD ${PXR_VERSION}, and <pxr/pxr.h> is of another version. Build vesk on that OpenUSD, or use the one that it was built on.\"
#endif
")
endif()

if(VESK_USD_PROVIDER_FOUND STREQUAL "installed")
    add_library(vesk_openusd INTERFACE)
    target_link_libraries(vesk_openusd INTERFACE
        gf tf vt sdf ar usd usdGeom usdLux usdShade usdSkel kind glf cameraUtil)
    get_target_property(_vesk_usd_libraries vesk_openusd INTERFACE_LINK_LIBRARIES)
    list(TRANSFORM _vesk_usd_libraries REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE _vesk_usd_files)
    list(JOIN _vesk_usd_files " " _vesk_usd_files)
    set(_vesk_usd_includes "$<REMOVE_DUPLICATES:$<TARGET_PROPERTY:usd,INTERFACE_INCLUDE_DIRECTORIES>>")
    set(_vesk_usd_includes "$<FILTER:${_vesk_usd_includes},EXCLUDE,^/usr/include$>")
    _vesk_write_pkg_config(vesk_openusd DESCRIPTION "The OpenUSD that vesk was built on"
        # As system headers: hosts are spared the warnings in them.
        CFLAGS "-isystem $<JOIN:${_vesk_usd_includes}, -isystem >" LIBS "${_vesk_usd_files}")
    # OpenUSD 24.11's headers still include <ext/hash_map>, which GCC reports with a #warning.
    target_compile_options(vesk_openusd INTERFACE $<BUILD_INTERFACE:-Wno-cpp>)
    set(VESK_USD_DESCRIPTION "installed OpenUSD ${PXR_VERSION}")
    install(TARGETS vesk_openusd EXPORT vesk-targets)
    set_property(TARGET vesk_openusd PROPERTY EXPORT_NAME openusd)
    add_library(vesk::openusd ALIAS vesk_openusd)
else()
    add_subdirectory(usd_subset)
    set(VESK_USD_DESCRIPTION "embedded subset of OpenUSD 24.11")
    _vesk_write_pkg_config(vesk_openusd DESCRIPTION "The embedded subset of OpenUSD that vesk was built on"
        CFLAGS "-I\${includedir}/vesk-usd-subset" LIBS "-L\${libdir} -lvesk_openusd_subset")
    if(NOT PROJECT_IS_TOP_LEVEL)
        # The project around this one may look for a real OpenUSD later.
        set(pxr_DIR "${PROJECT_SOURCE_DIR}/cmake/refuse-pxr" PARENT_SCOPE)
    endif()
endif()
message(STATUS "vesk ${PROJECT_VERSION} on the ${VESK_USD_DESCRIPTION}")
