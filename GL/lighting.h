// SPDX-License-Identifier: MIT
#ifndef GL_LIGHTING_H
#define GL_LIGHTING_H

#include <vector>

#include <qopengl.h>

namespace GL {

/// One light of the fixed-function pipeline.
///
/// Frame: the position is homogeneous (w = 0: a direction towards the light, w = 1: a point) and
/// is transformed by the model-view matrix that is current when Reposition() runs; a scene object
/// repositions its lights after its camera is set up, so the position is in world coordinates.
/// Units: colours are red, green, blue, alpha, 0 to 1. A plain value; the members that say so need
/// a current GL context. The defaults are those that OpenGL gives to its first light.
struct Light {
    /// Four components, as `glLightfv` takes them.
    struct vector {
        GLfloat x = 0;
        GLfloat y = 0;
        GLfloat z = 0;
        GLfloat w = 0;

        vector() = default;
        vector(GLfloat x_, GLfloat y_, GLfloat z_, GLfloat w_) : x(x_), y(y_), z(z_), w(w_) {}

        /// Component 0 to 3. Expects 0 <= @p i <= 3.
        GLfloat &operator[](int i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
        operator float *() { return &x; } ///< The address of x, with y, z, w behind it.
    };

    GLenum light; ///< GL_LIGHT0 + n.
    char mode;    ///< A letter of the host's choosing; nothing here reads it.
    vector position{0, 0, 1, 0};
    vector ambient{0, 0, 0, 1};
    vector diffuse{1, 1, 1, 1};
    vector specular{1, 1, 1, 1};

    Light(GLenum light_, char mode_) : light(light_), mode(mode_) {}

    void Ambient() { glLightfv(light, GL_AMBIENT, ambient); }    ///< Hands the colour to OpenGL.
    void Diffuse() { glLightfv(light, GL_DIFFUSE, diffuse); }    ///< Hands the colour to OpenGL.
    void Specular() { glLightfv(light, GL_SPECULAR, specular); } ///< Hands the colour to OpenGL.

    /// Switches the light on and hands its three colours to OpenGL. A host calls it once, in Init.
    void Init()
    {
        glEnable(light);
        Ambient();
        Diffuse();
        Specular();
    }

    /// Hands the position to OpenGL. Expects the pass's model-view matrix to be loaded.
    void Reposition() { glLightfv(light, GL_POSITION, position); }
};

/// The lights of one drawing object, in the order in which they are positioned.
using Lights = std::vector<Light>;

} // namespace GL

#endif
