# SPDX-License-Identifier: MIT
# Debian packages, one per component of the installation: `cpack` in the build folder of the preset
# `package` writes them there.
option(GLWINDOW_DEBIAN "Install what a Debian package holds besides: changelog and copyright" OFF)
if(GLWINDOW_DEBIAN)
    find_program(GZIP gzip REQUIRED)
    set(changelog ${PROJECT_BINARY_DIR}/changelog.Debian.gz)
    add_custom_command(
        OUTPUT ${changelog} DEPENDS packaging/debian/changelog
        COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/debian/changelog > ${changelog})
    add_custom_target(debian_files ALL DEPENDS ${changelog})
    foreach(package glwindow glwindow-dev glview)
        set(doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
        install(FILES packaging/debian/copyright ${changelog} DESTINATION ${doc}
                COMPONENT ${package})
    endforeach()
endif()

set(CPACK_GENERATOR DEB)
# Empty, for each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "the glwindow developers")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL glwindow glwindow-dev glview)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE glwindow)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "glwindow developers <glwindow@example.org>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_GLWINDOW_PACKAGE_NAME glwindow)
set(CPACK_DEBIAN_GLWINDOW_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_GLWINDOW_DESCRIPTION "OpenGL views for Qt 5 applications, loaded at run time
A module that a Qt 5 application loads by name. It gives the application
OpenGL windows, scene objects with an orbiting camera, tiled views of many
scenes and bindings of keys and mouse; the application draws their content
in slots that the module calls.")

set(CPACK_DEBIAN_GLWINDOW-DEV_PACKAGE_NAME glwindow-dev)
set(CPACK_DEBIAN_GLWINDOW-DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_GLWINDOW-DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_GLWINDOW-DEV_PACKAGE_DEPENDS
    "libgl-dev, libglu1-mesa-dev, libqt5opengl5-dev, qtbase5-dev (>= 5.15)")
set(CPACK_COMPONENT_GLWINDOW-DEV_DEPENDS glwindow)
set(CPACK_DEBIAN_GLWINDOW-DEV_DESCRIPTION "OpenGL views for Qt 5 applications, development files
Headers, a CMake package, a pkg-config file, the guide and examples for
programs that load or link the module of the package glwindow.")

set(CPACK_DEBIAN_GLVIEW_PACKAGE_NAME glview)
set(CPACK_DEBIAN_GLVIEW_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_GLVIEW_PACKAGE_RECOMMENDS libgl1-mesa-dri)
set(CPACK_DEBIAN_GLVIEW_PACKAGE_SUGGESTS ffmpeg)
set(CPACK_COMPONENT_GLVIEW_DEPENDS glwindow)
set(CPACK_DEBIAN_GLVIEW_DESCRIPTION "viewer of 3D models and series of numbers
Shows one 3D model, or many side by side with a camera each, in any of the
formats that the library assimp reads, and plots the columns of CSV files.
It writes pictures and recordings without a hand on the mouse as well.")
include(CPack)
