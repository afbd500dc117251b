# SPDX-License-Identifier: MIT
# glview_room(SOURCES file... [LIBRARIES target...])
# The library of the current folder, a room of host/: glview_NAME, NAME being the last part of its path. It links
# the rooms that cmake/rooms.txt lets it include, and LIBRARIES beside them.
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY
             CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/rooms.txt)
function(glview_room)
    cmake_parse_arguments(R "" "" "SOURCES;LIBRARIES" ${ARGN})
    file(RELATIVE_PATH room ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/rooms.txt row REGEX "^${room}:")
    if(NOT row)
        message(FATAL_ERROR "cmake/rooms.txt has no row for ${room}")
    endif()
    string(REGEX MATCHALL "host/[a-z/]+" below "${row}")
    list(REMOVE_ITEM below ${room})
    list(TRANSFORM below REPLACE ".*/" "glview_")
    get_filename_component(name ${room} NAME)
    add_library(glview_${name} STATIC ${R_SOURCES})
    target_compile_features(glview_${name} PUBLIC cxx_std_17)
    target_link_libraries(glview_${name}
        PUBLIC glwindow::headers ${below}
        PRIVATE ${R_LIBRARIES} glwindow_warnings)
    glwindow_quick_build(glview_${name})
endfunction()
