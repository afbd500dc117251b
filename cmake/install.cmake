# SPDX-License-Identifier: MIT
# Where an installation puts things, relative to its prefix, in three components:
#   glwindow      LIBDIR/glwindow/glwindow.so    the one place where hosts find the module
#   glwindow-dev  include/glwindow/              headers, in the layout of this repository
#                 LIBDIR/cmake/glwindow/, LIBDIR/pkgconfig/, share/doc/glwindow-dev/
#   glview        bin/glview, its man page, desktop file, icon and MIME types
# The prefix can be moved: whatever is installed finds its neighbours from its own place.
include(CMakePackageConfigHelpers)

set(dev_doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/glwindow-dev)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/glwindow)

install(TARGETS glwindow EXPORT glwindow
        LIBRARY DESTINATION ${GLWINDOW_INSTALL_MODULEDIR} COMPONENT glwindow)

foreach(folder GL Qt math utils)
    install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/glwindow
            COMPONENT glwindow-dev FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/generated/GL/export.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/glwindow/GL COMPONENT glwindow-dev)

install(TARGETS glwindow_headers EXPORT glwindow)
install(EXPORT glwindow NAMESPACE glwindow:: FILE glwindow-targets.cmake
        DESTINATION ${package_dir} COMPONENT glwindow-dev)
configure_package_config_file(
    cmake/glwindow-config.cmake.in ${PROJECT_BINARY_DIR}/glwindow-config.cmake
    INSTALL_DESTINATION ${package_dir} PATH_VARS GLWINDOW_INSTALL_MODULEDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/glwindow-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/glwindow-config.cmake
              ${PROJECT_BINARY_DIR}/glwindow-config-version.cmake
        DESTINATION ${package_dir} COMPONENT glwindow-dev)
# The pkg-config file finds the prefix from its own place.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
configure_file(cmake/glwindow.pc.in ${PROJECT_BINARY_DIR}/glwindow.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/glwindow.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT glwindow-dev)
install(DIRECTORY docs DESTINATION ${dev_doc} COMPONENT glwindow-dev
        OPTIONAL FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.png")
install(DIRECTORY examples/ DESTINATION ${dev_doc}/examples COMPONENT glwindow-dev
        OPTIONAL PATTERN "__pycache__" EXCLUDE)

if(TARGET glview)
    install(TARGETS glview RUNTIME COMPONENT glview)
    install(FILES packaging/glview.desktop
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications COMPONENT glview)
    install(FILES packaging/glview.svg
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps COMPONENT glview)
    install(FILES packaging/glview-mime.xml RENAME glview.xml
            DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/mime/packages COMPONENT glview)
    find_program(GZIP gzip REQUIRED)
    set(manual ${PROJECT_BINARY_DIR}/glview.1.gz)
    add_custom_command(
        OUTPUT ${manual} DEPENDS packaging/glview.1
        COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/glview.1 > ${manual})
    add_custom_target(manual ALL DEPENDS ${manual})
    install(FILES ${manual}
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT glview)
endif()
