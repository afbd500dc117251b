// SPDX-License-Identifier: MIT
#ifndef GL_MOUSE_H
#define GL_MOUSE_H

#include <ctime>

#include "utils/numbers.h"

/// The window's record of pointer, buttons and keyboard modifiers, now and before.
///
/// Frame: logical window pixels, origin at the bottom-left corner, y upwards; y is the window's
/// height minus the widget-local y, so the topmost row has y = height. While an action fires and
/// while a scene object emits Draw3D and Draw2D, x, y, x0 and y0 are in that object's frame (for an
/// action, the tile's); a multi-view's passes leave them in the window's.
/// Units: times are wall-clock microseconds. Sums end at the limits of their type. Owned by the
/// window; a plain value otherwise.
struct Mouse {
    int x = 0;
    int y = 0;
    time_t t = 0;  ///< Time of the last update.
    int dx = 0;    ///< Previous x minus new x: positive when the pointer moved left.
    int dy = 0;    ///< Previous y minus new y: positive when the pointer moved down.
    time_t dt = 0; ///< New t minus previous t; negative if the clock stepped back.
    int area = 0;  ///< Set by a host while it drags a rectangle: non-zero freezes x0 and y0.
    int x0 = 0;    ///< Previous position, or the frozen corner of the dragged rectangle.
    int y0 = 0;
    int button = 0; ///< Qt's button bits, plus 8 for a wheel step up and 16 for one down.
    int last_button = 0;
    int modifier = 0; ///< Qt's keyboard-modifier bits.
    int last_modifier = 0;
    int double_press = 0; ///< Buttons for which a double-click press is in progress.
    int double_click = 0; ///< Buttons whose release just completed a double click.

    /// Keyboard event at time @p t_: takes the modifiers, leaves position and buttons.
    void update(int modifier_, time_t t_);

    /// Pointer event at (@p x_, @p y_), time @p t_, with the buttons and modifiers held after it.
    void update(int x_, int y_, time_t t_, int button_, int modifier_);

    /// Double-click bookkeeping, right after a pointer update. With @p press non-zero the buttons
    /// @p button_ begin a double click; with zero their release ends one, which double_click
    /// shows until the next update.
    void update_double(int button_, int press);

    /// Shifts the position and the reference position.
    Mouse &add(int dx_, int dy_);
    Mouse &sub(int dx_, int dy_);

    int dx0() const
    {
        return bounded::difference(x0, x);
    } ///< Reference x minus x, signed as dx is.
    int dy0() const
    {
        return bounded::difference(y0, y);
    } ///< Reference y minus y, signed as dy is.
};

inline void Mouse::update(int modifier_, time_t t_)
{
    last_modifier = modifier;
    modifier = modifier_;
    dx = dy = 0;
    dt = bounded::difference(t_, t);
    t = t_;
    double_click = 0;
}

inline void Mouse::update(int x_, int y_, time_t t_, int button_, int modifier_)
{
    if (area == 0) {
        x0 = x;
        y0 = y;
    }
    dx = bounded::difference(x, x_);
    dy = bounded::difference(y, y_);
    x = x_;
    y = y_;
    dt = bounded::difference(t_, t);
    t = t_;
    last_button = button;
    button = button_;
    last_modifier = modifier;
    modifier = modifier_;
    double_click = 0;
}

inline void Mouse::update_double(int button_, int press)
{
    if (press) {
        double_press |= button_;
    } else {
        double_click = double_press & button_;
        double_press &= ~button_;
    }
}

inline Mouse &Mouse::add(int dx_, int dy_)
{
    x = bounded::sum(x, dx_);
    y = bounded::sum(y, dy_);
    x0 = bounded::sum(x0, dx_);
    y0 = bounded::sum(y0, dy_);
    return *this;
}

inline Mouse &Mouse::sub(int dx_, int dy_)
{
    x = bounded::difference(x, dx_);
    y = bounded::difference(y, dy_);
    x0 = bounded::difference(x0, dx_);
    y0 = bounded::difference(y0, dy_);
    return *this;
}

#endif
