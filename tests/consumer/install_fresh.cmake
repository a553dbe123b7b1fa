# Installs, then moves the prefix: nothing that is installed may remember where it was.
file(REMOVE_RECURSE "${PREFIX}" "${PREFIX}-before")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PREFIX}-before" OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
file(RENAME "${PREFIX}-before" "${PREFIX}")
