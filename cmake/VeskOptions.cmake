option(BUILD_TESTING "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(VESK_BUILD_BENCHMARKS "Build the benchmarks (Google Benchmark)" OFF)
option(VESK_BUILD_FUZZERS "Build the fuzz targets (clang's libFuzzer)" OFF)
option(VESK_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
set(VESK_SANITIZE "" CACHE STRING "Sanitizers to build with: empty, 'address,undefined' or 'thread'")
set(VESK_USD_PROVIDER auto CACHE STRING "OpenUSD to build on: auto, installed or subset")
set_property(CACHE VESK_USD_PROVIDER PROPERTY STRINGS auto installed subset)

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# ccache makes the second build quick. Where the build folder lies inside the source folder, as the presets put it,
# paths are made relative, so that another clone shares the results.
find_program(VESK_CCACHE ccache)
cmake_path(IS_PREFIX PROJECT_SOURCE_DIR "${PROJECT_BINARY_DIR}" VESK_BUILDS_INSIDE_SOURCE)
if(VESK_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(_ccache_settings CCACHE_NOHASHDIR=1)
    if(VESK_BUILDS_INSIDE_SOURCE)
        list(APPEND _ccache_settings "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}")
    endif()
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env ${_ccache_settings} ${VESK_CCACHE})
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ${PROJECT_IS_TOP_LEVEL})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
