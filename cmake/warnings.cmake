# SPDX-License-Identifier: MIT
# Warnings and sanitizers, as one interface target that every target of ours links.
add_library(glwindow_warnings INTERFACE)
# Where files are compiled as one, what each has for itself shadows nothing that anybody meant.
target_compile_options(glwindow_warnings INTERFACE
    -Wall -Wextra -Wpedantic $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>
    $<$<BOOL:${GLWINDOW_WERROR}>:-Werror>)
if(GLWINDOW_SANITIZE)
    target_compile_options(glwindow_warnings INTERFACE
        -fsanitize=${GLWINDOW_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined,float-cast-overflow
        # GCC takes what the sanitizers insert for uses of values that were never set.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(glwindow_warnings INTERFACE -fsanitize=${GLWINDOW_SANITIZE})
    target_sources(glwindow_warnings INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${PROJECT_SOURCE_DIR}/cmake/keep_loaded.cpp>)
endif()
