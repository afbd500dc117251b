# SPDX-License-Identifier: MIT
# Precompiled headers, for builds that have to be quick. TESTS leaves the module and the viewer without, so that
# each of their files has to include what it uses.
set(GLWINDOW_PRECOMPILE OFF CACHE STRING "Precompile the headers of Qt and GoogleTest: OFF, TESTS or ON")

# glwindow_precompile(TARGET [LIBRARY HEADER])
# Lets a target begin with the precompiled headers of Qt and that of a library. Targets with the same share them.
function(glwindow_precompile target)
    list(POP_FRONT ARGN library)
    if(NOT GLWINDOW_PRECOMPILE OR (GLWINDOW_PRECOMPILE STREQUAL "TESTS" AND NOT library))
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
