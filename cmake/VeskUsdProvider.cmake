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

if(VESK_USD_PROVIDER_FOUND STREQUAL "installed")
    add_library(vesk_openusd INTERFACE)
    target_link_libraries(vesk_openusd INTERFACE
        gf tf vt sdf ar usd usdGeom usdLux usdShade usdSkel kind glf cameraUtil)
    # OpenUSD 24.11's headers still include <ext/hash_map>, which GCC reports with a #warning.
    target_compile_options(vesk_openusd INTERFACE $<BUILD_INTERFACE:-Wno-cpp>)
    set(VESK_USD_DESCRIPTION "installed OpenUSD ${PXR_VERSION}")
    install(TARGETS vesk_openusd EXPORT vesk-targets)
    set_property(TARGET vesk_openusd PROPERTY EXPORT_NAME openusd)
    add_library(vesk::openusd ALIAS vesk_openusd)
else()
    add_subdirectory(usd_subset)
    set(VESK_USD_DESCRIPTION "embedded subset of OpenUSD 24.11")
endif()
message(STATUS "vesk ${PROJECT_VERSION} on the ${VESK_USD_DESCRIPTION}")
