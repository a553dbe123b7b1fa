# One shape for every library: names of targets, macros and test binaries follow from the folder.
include(GenerateExportHeader)
include(VeskPkgConfig)

# vesk/framework/usd_viewport -> framework/usd_viewport, vesk_framework_usd_viewport, framework_usd_viewport
macro(_vesk_names)
    file(RELATIVE_PATH _path "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    string(REPLACE "/" "_" _target "${_path}")
    string(REGEX REPLACE "^vesk_" "" _short "${_target}")
    string(REGEX REPLACE "^vesk/" "" _inner "${_path}")
endmacro()

# vesk_add_library(DESCRIPTION "..." HEADERS ... SOURCES ... PUBLIC ... PRIVATE ...)
#
# HEADERS are the public ones, relative to include/<path>/: a header becomes public by being named here.
# PUBLIC and PRIVATE are link dependencies. A library without SOURCES is an interface library.
# DESCRIPTION is one line for packagers.
function(vesk_add_library)
    cmake_parse_arguments(PARSE_ARGV 0 ARG "" "DESCRIPTION" "HEADERS;SOURCES;PUBLIC;PRIVATE")
    _vesk_names()
    vesk_check_headers(${ARG_HEADERS})
    list(TRANSFORM ARG_HEADERS PREPEND "include/${_path}/")
    if(NOT ARG_SOURCES)
        add_library(${_target} INTERFACE)
        target_include_directories(${_target} INTERFACE
            $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
        target_link_libraries(${_target} INTERFACE ${ARG_PUBLIC})
        target_compile_features(${_target} INTERFACE cxx_std_17)
    else()
        add_library(${_target} SHARED ${ARG_SOURCES} ${ARG_HEADERS})
        vesk_compile_settings(${_target})
        set(export_header "${CMAKE_CURRENT_BINARY_DIR}/generated/${_path}/export.h")
        string(TOUPPER "${_target}" macro_base)
        set(provider_check "")
        if(NOT _path STREQUAL "vesk/base")
            set(provider_check "${VESK_USD_PROVIDER_CHECK}")
        endif()
        generate_export_header(${_target} BASE_NAME ${macro_base} EXPORT_FILE_NAME "${export_header}"
            CUSTOM_CONTENT_FROM_VARIABLE provider_check)
        target_include_directories(${_target}
            PUBLIC
                $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
                $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/generated>
                $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
            PRIVATE src)
        target_link_libraries(${_target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} Threads::Threads)
        # Log records carry the library's name as their module tag.
        target_compile_definitions(${_target} PRIVATE VESK_LOG_TAG="${_target}")
        # Error codes outlive a dlclose(): their categories must stay mapped.
        target_link_options(${_target} PRIVATE LINKER:-z,nodelete LINKER:--no-undefined)
        if(VESK_SANITIZE)
            set_property(TARGET ${_target} PROPERTY LINK_OPTIONS LINKER:-z,nodelete -fsanitize=${VESK_SANITIZE})
        endif()
        set_target_properties(${_target} PROPERTIES
            VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
            INSTALL_RPATH "$ORIGIN" INSTALL_RPATH_USE_LINK_PATH ON BUILD_WITH_INSTALL_RPATH OFF)
        install(FILES "${export_header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${_path}")
    endif()
    add_library(vesk::${_short} ALIAS ${_target})
    set_property(TARGET ${_target} PROPERTY EXPORT_NAME ${_short})
    if(ARG_HEADERS)
        install(DIRECTORY include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
    endif()
    install(TARGETS ${_target} EXPORT vesk-targets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    vesk_add_pkg_config(${_target} DESCRIPTION "${ARG_DESCRIPTION}" PUBLIC ${ARG_PUBLIC})
endfunction()

# vesk_add_tests(SOURCES ... [LIBRARIES ...] [NAME suffix] [LABELS ...])
#
# One test binary for the library of this folder. Test names in ctest start with the library's path.
# Private headers of the library can be included; its objects are never linked a second time.
function(vesk_add_tests)
    if(NOT BUILD_TESTING)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 0 ARG "" "NAME" "SOURCES;LIBRARIES;LABELS")
    _vesk_names()
    set(name ${_target}_tests)
    if(ARG_NAME)
        set(name ${_target}_${ARG_NAME}_tests)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    vesk_compile_settings(${name})
    # Optimising tests takes longer than running them.
    target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O0>)
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}/tests")
    if(TARGET ${_target})
        target_link_libraries(${name} PRIVATE ${_target})
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main Threads::Threads)
    if(NOT ARG_LABELS)
        set(ARG_LABELS unit)
    endif()
    string(REPLACE "/" "." prefix "${_inner}")
    gtest_discover_tests(${name} TEST_PREFIX "${prefix}/" DISCOVERY_MODE PRE_TEST PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 120)
endfunction()

# vesk_check_headers(header.h ...): builds one source for each of this folder's public headers, which includes it
# first and twice. A header that leans on another one's includes does not compile.
function(vesk_check_headers)
    if(NOT BUILD_TESTING)
        return()
    endif()
    _vesk_names()
    set(sources "")
    foreach(header IN LISTS ARGN)
        set(source "${CMAKE_CURRENT_BINARY_DIR}/headers/${header}.cpp")
        file(CONFIGURE OUTPUT "${source}" CONTENT "#include <@_path@/@header@>\n#include <@_path@/@header@>\n" @ONLY)
        list(APPEND sources "${source}")
    endforeach()
    add_library(${_target}_headers OBJECT ${sources})
    vesk_compile_settings(${_target}_headers)
    target_compile_options(${_target}_headers PRIVATE $<$<CONFIG:Release>:-O0>)
    target_link_libraries(${_target}_headers PRIVATE ${_target})
endfunction()

# vesk_add_benchmarks(SOURCES ... [LIBRARIES ...]): one Google Benchmark binary for the library of this folder.
function(vesk_add_benchmarks)
    if(NOT VESK_BUILD_BENCHMARKS)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 0 ARG "" "" "SOURCES;LIBRARIES")
    _vesk_names()
    add_executable(${_target}_benchmarks ${ARG_SOURCES})
    vesk_compile_settings(${_target}_benchmarks)
    target_include_directories(${_target}_benchmarks PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/src")
    target_link_libraries(${_target}_benchmarks PRIVATE ${_target} ${ARG_LIBRARIES} vesk::tests_benchmarking)
endfunction()
