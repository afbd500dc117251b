# SPDX-License-Identifier: MIT
# Precompiled headers, for a build that has to be quick. The others go without, so that there each file has to
# include what it uses.
option(GLWINDOW_PRECOMPILE "Precompile the headers of Qt, and for tests those of GoogleTest" OFF)

# glwindow_precompile(TARGET [LIBRARY HEADER])
# Lets a target begin with the precompiled headers of Qt and that of a library. Targets with the same share them.
function(glwindow_precompile target)
    list(POP_FRONT ARGN library)
    if(NOT GLWINDOW_PRECOMPILE)
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
