// SPDX-License-Identifier: MIT
#ifndef MATH_VECTOR_H
#define MATH_VECTOR_H

#include <cmath>

/// The scalar of all vector arithmetic: 32-bit IEEE single precision.
using Real = float;

/// Three single-precision components: a position, a direction, a triple of angles or a scale.
///
/// Frame and units are those of whoever holds it. Arithmetic is component-wise in single
/// precision; only the rotations take their sine and cosine in double. Nothing here fails.
class Vector {
public:
    Real x = 0;
    Real y = 0;
    Real z = 0;

    Vector() = default; ///< The zero vector.
    Vector(const Vector &) = default;
    Vector(Real x_, Real y_, Real z_) : x(x_), y(y_), z(z_) {}
    Vector(const Real *p) : x(p[0]), y(p[1]), z(p[2]) {} ///< Copies p[0] to p[2].

    Vector &operator=(const Vector &) = default;
    Vector &operator=(Real v); ///< Sets all three components to @p v.
    Vector &zero() { return *this = Real(0); }

    /// The address of x, with y and z behind it, as `glVertex3fv` and its like take it.
    operator Real *() { return &x; }
    operator const Real *() const { return &x; }

    /// Component 0, 1 or 2: x, y or z. Expects 0 <= @p i <= 2.
    Real operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }
    Real &operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }

    /// Exact equality of all three components; false as soon as one is NaN.
    bool operator==(const Vector &o) const { return x == o.x && y == o.y && z == o.z; }
    bool operator!=(const Vector &o) const { return !(*this == o); }
    /// Whether it is the zero vector.
    bool operator!() const { return x == 0 && y == 0 && z == 0; }

    Vector &operator+=(const Vector &o);
    Vector &operator-=(const Vector &o);
    Vector &operator*=(const Vector &o); ///< Component-wise product.
    Vector &operator*=(Real v);
    Vector &operator/=(Real v);

    Real length_sq() const { return x * x + y * y + z * z; }
    /// Infinite beyond about 1.8e19 and zero below about 1e-23, where the squares leave the range
    /// of a Real: normalize() makes the former zero and leaves the latter.
    Real length() const { return std::sqrt(length_sq()); }

    /// Rescales to length @p v, longer or shorter. The zero vector stays zero.
    Vector &normalize(Real v);

    /// Turn in place by @p a degrees about an axis through the origin, counter-clockwise for an
    /// observer towards whom the axis points (right-handed frame).
    Vector &rotate_x(Real a);
    Vector &rotate_y(Real a);
    Vector &rotate_z(Real a);

private:
    struct Turn {
        double c, s;
        explicit Turn(Real degrees)
            : c(std::cos(degrees * 0.017453292519943295)),
              s(std::sin(degrees * 0.017453292519943295))
        {
        }
    };
};

inline Vector &Vector::operator=(Real v)
{
    x = y = z = v;
    return *this;
}

inline Vector &Vector::operator+=(const Vector &o)
{
    x += o.x;
    y += o.y;
    z += o.z;
    return *this;
}

inline Vector &Vector::operator-=(const Vector &o)
{
    x -= o.x;
    y -= o.y;
    z -= o.z;
    return *this;
}

inline Vector &Vector::operator*=(const Vector &o)
{
    x *= o.x;
    y *= o.y;
    z *= o.z;
    return *this;
}

inline Vector &Vector::operator*=(Real v)
{
    x *= v;
    y *= v;
    z *= v;
    return *this;
}

inline Vector &Vector::operator/=(Real v)
{
    x /= v;
    y /= v;
    z /= v;
    return *this;
}

inline Vector &Vector::normalize(Real v)
{
    const Real l = length();
    return l > 0 ? *this *= v / l : *this;
}

inline Vector &Vector::rotate_x(Real a)
{
    const Turn t(a);
    const Real y0 = y, z0 = z;
    y = Real(y0 * t.c - z0 * t.s);
    z = Real(y0 * t.s + z0 * t.c);
    return *this;
}

inline Vector &Vector::rotate_y(Real a)
{
    const Turn t(a);
    const Real x0 = x, z0 = z;
    x = Real(x0 * t.c + z0 * t.s);
    z = Real(-x0 * t.s + z0 * t.c);
    return *this;
}

inline Vector &Vector::rotate_z(Real a)
{
    const Turn t(a);
    const Real x0 = x, y0 = y;
    x = Real(x0 * t.c - y0 * t.s);
    y = Real(x0 * t.s + y0 * t.c);
    return *this;
}

inline Vector operator+(const Vector &a, const Vector &b)
{
    return Vector(a.x + b.x, a.y + b.y, a.z + b.z);
}

inline Vector operator-(const Vector &a, const Vector &b)
{
    return Vector(a.x - b.x, a.y - b.y, a.z - b.z);
}

inline Vector operator*(const Vector &a, Real v)
{
    return Vector(a.x * v, a.y * v, a.z * v);
}

inline Real dot(const Vector &a, const Vector &b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The dot product.
inline Real operator*(const Vector &a, const Vector &b)
{
    return dot(a, b);
}

#endif
