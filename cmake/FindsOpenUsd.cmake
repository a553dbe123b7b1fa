# cmake -DVESK_SOURCE=... -P FindsOpenUsd.cmake: exit 0 where an installed OpenUSD with imaging can be found.
#
# find_package needs a project, so a small one is configured in a folder that is removed afterwards.
if(DEFINED ENV{TMPDIR})
    set(base "$ENV{TMPDIR}")
else()
    set(base /tmp)
endif()
string(RANDOM LENGTH 12 suffix)
set(folder "${base}/vesk-find-openusd-${suffix}")
file(WRITE "${folder}/CMakeLists.txt" [[
cmake_minimum_required(VERSION 3.25)
project(find_openusd CXX)
find_package(OpenGL QUIET)
find_package(pxr QUIET)
if(NOT (pxr_FOUND AND TARGET usdGeom AND TARGET glf AND TARGET cameraUtil))
    message(FATAL_ERROR "no OpenUSD with imaging")
endif()
]])
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${folder}" -B "${folder}/build" RESULT_VARIABLE result
    OUTPUT_QUIET ERROR_QUIET)
file(REMOVE_RECURSE "${folder}")
if(NOT result EQUAL 0)
    message(FATAL_ERROR "no OpenUSD with imaging was found")
endif()
