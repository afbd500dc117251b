# SPDX-License-Identifier: MIT
# Large headers are precompiled for viewer and tests, in every build, so that none can lack an include that another
# has. Builds that take half the time again compile several files of a target as one. TESTS leaves the module and the
# viewer as they are: each of their files has to include what it uses of this tree, and the module's, which hosts
# include, everything.
set(GLWINDOW_QUICK_BUILD OFF CACHE STRING "Compile several files of a target at a time: OFF, TESTS or ON")

# glwindow_quick_build(TARGET [LIBRARY HEADER])
# Precompiled are the headers of Qt and that of a library. Targets with the same share them.
function(glwindow_quick_build target)
    list(POP_FRONT ARGN library)
    if(GLWINDOW_QUICK_BUILD STREQUAL "ON" OR (GLWINDOW_QUICK_BUILD STREQUAL "TESTS" AND library))
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON)
    elseif(target STREQUAL "glwindow")
        return()
    endif()
    get_target_property(visibility ${target} CXX_VISIBILITY_PRESET)
    if(visibility) # compiled with options of its own
        target_precompile_headers(${target} PRIVATE <QtWidgets> <QtOpenGL> ${ARGN})
        return()
    endif()
    string(MAKE_C_IDENTIFIER "glwindow_precompiled_${library}" shared)
    if(NOT TARGET ${shared})
        file(WRITE ${PROJECT_BINARY_DIR}/${shared}.cpp "")
        add_library(${shared} OBJECT ${PROJECT_BINARY_DIR}/${shared}.cpp)
        target_link_libraries(${shared} PRIVATE glwindow::headers ${library} glwindow_warnings)
        target_precompile_headers(${shared} PRIVATE <QtWidgets> <QtOpenGL> ${ARGN})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${shared})
endfunction()
