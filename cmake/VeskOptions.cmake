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

# ccache makes the second build quick; hash_dir off lets build folders share its results.
find_program(VESK_CCACHE ccache)
if(VESK_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_NOHASHDIR=1 ${VESK_CCACHE})
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ${PROJECT_IS_TOP_LEVEL})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
