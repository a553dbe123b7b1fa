# vesk_compile_settings(TARGET): what every target of the project is compiled with.
find_package(Threads REQUIRED)

set(VESK_COMPILE_OPTIONS
    # No fused operations: arithmetic is the same from machine to machine.
    -ffp-contract=off
    # File names in log records start at the source root.
    "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/="
)
if(VESK_BUILDS_INSIDE_SOURCE)
    # ccache hands the compiler paths relative to the build folder.
    file(RELATIVE_PATH _from_build "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
    list(APPEND VESK_COMPILE_OPTIONS "-fmacro-prefix-map=${_from_build}=")
endif()
set(VESK_WARNINGS -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 reports false null dereferences out of inlined standard library code.
    list(REMOVE_ITEM VESK_WARNINGS -Wnull-dereference)
endif()

function(vesk_compile_settings TARGET)
    target_compile_features(${TARGET} PUBLIC cxx_std_17)
    set_target_properties(${TARGET} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
    )
    target_compile_options(${TARGET} PRIVATE ${VESK_COMPILE_OPTIONS} ${VESK_WARNINGS})
    if(VESK_WARNINGS_AS_ERRORS)
        target_compile_options(${TARGET} PRIVATE -Werror)
    endif()
    if(VESK_SANITIZE)
        set(flags -fsanitize=${VESK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -g1)
        if(VESK_SANITIZE MATCHES "undefined")
            list(APPEND flags -fsanitize=float-cast-overflow)
        endif()
        target_compile_options(${TARGET} PRIVATE ${flags})
        target_link_options(${TARGET} PRIVATE ${flags})
    endif()
    if(VESK_BUILD_FUZZERS)
        # Lets fuzzers see which code an input reaches. Types of classes that stay inside a library cannot be checked.
        target_compile_options(${TARGET} PRIVATE -fsanitize=fuzzer-no-link -fno-sanitize=vptr,function)
    endif()
endfunction()
