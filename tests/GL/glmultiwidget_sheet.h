// SPDX-License-Identifier: MIT
#ifndef TESTS_GL_GLMULTIWIDGET_SHEET_H
#define TESTS_GL_GLMULTIWIDGET_SHEET_H

#include <functional>
#include <string>
#include <utility>

#include <QtTest>
#include <gtest/gtest.h>

#include "GL/glmultiwidget.h"
#include "GL/glwindow.h"

/// Names a table's rows.
inline auto rowName()
{
    return [](const auto &row) { return std::string(row.param.name); };
}

/// A view of 1:1 pixels, without a window, that holds the tiles 1 to @p count.
struct View : GLMultiWidget {
    View(int count, double w, double h) : GLMultiWidget(nullptr, "view")
    {
        setGeometry(QRectF(0, 0, w, h));
        for (int id = 1; id <= count; ++id)
            AddTile(uint(id));
        updateLayout = 0;
    }
    GLTile *tile(int id) { return tiles.value(uint(id)); }
    View &hide(int id)
    {
        tile(id)->setProperty("visible", false);
        return *this;
    }
    View &disable()
    {
        setProperty("enabled", false);
        return *this;
    }
    void set(const QList<int> &ids, const char *name, const QVariant &value)
    {
        for (int id : ids)
            static_cast<QObject *>(tile(id))->setProperty(name, value);
    }
};

/// Keeps each signal of a view as a word, until it is taken: its name and the tile's id, or its
/// numbers.
struct Log {
    std::string text;
    /// Called after each word is written, with the signal's name and the tile or view it carries.
    std::function<void(const std::string &, GLW *)> on;

    explicit Log(GLMultiWidget *v) : view(v)
    {
        using V = GLMultiWidget;
        for (const auto &[name, signal] :
             {std::pair("Init", &V::Init), std::pair("Update", &V::Update),
              std::pair("Pick3D", &V::Pick3D), std::pair("Pick2D", &V::Pick2D),
              std::pair("Draw3D", &V::Draw3D), std::pair("Draw2D", &V::Draw2D),
              std::pair("DrawBG", &V::DrawBG), std::pair("DrawFG", &V::DrawFG)})
            QObject::connect(view, signal, &context, [this, name = std::string(name)](GLW *w) {
                note(name, w == view ? "" : std::to_string(w->id()), w);
            });
        const auto numbers = [this](const char *name) {
            return [this, name](QList<int> l) {
                QStringList all;
                for (int n : l)
                    all << QString::number(n);
                note(name, all.join(',').toStdString(), view);
            };
        };
        QObject::connect(view, &V::DrawEvent, &context, [this] { note("Draw", "", view); });
        QObject::connect(view, &V::TileAdded, &context,
                         [=](uint id) { numbers("added")({int(id)}); });
        QObject::connect(view, &V::TileResized, &context, [=](int w, int h) {
            numbers("share")({w, h});
        });
        QObject::connect(view, &V::VisibleCountChanged, &context,
                         [=](int n) { numbers("visible")({n}); });
        QObject::connect(view, &V::ValueChanged, &context, numbers("values"));
        QObject::connect(view, &V::VisibleChanged, &context, numbers("shown"));
    }
    std::string take() { return std::exchange(text, {}); }

private:
    void note(const std::string &name, const std::string &what, GLW *w)
    {
        text += (text.empty() ? "" : " ") + name + what;
        if (on)
            on(name, w);
    }
    QPointer<GLMultiWidget> view;
    QObject context; // receives: no word is written once the log is gone
};

/// A multi-view named "view" in a window of 600 x 400 pixels that paints when frame() asks for it.
/// The tiles, numbered from 1, were added before the view came into its window; four make a grid of
/// two rows.
struct Sheet {
    QPointer<QGLWindow> window = new QGLWindow(nullptr, "window");
    QPointer<GLMultiWidget> view = new GLMultiWidget(nullptr, "view");
    Log log{view};

    explicit Sheet(int count)
    {
        window->fps(0);
        window->setProperty("drawfps", false);
        window->resize(600, 400);
        for (int id = 1; id <= count; ++id)
            view->AddTile(uint(id));
        window->InsertGLWidget(-1, view);
    }
    ~Sheet()
    {
        delete view;
        delete window;
    }

    /// Returns whether the window is on the screen with a GL context; the layout is done then.
    bool show()
    {
        window->show();
        const bool shown = QTest::qWaitForWindowExposed(window) && window->isValid();
        frame();
        return shown;
    }
    void frame()
    {
        if (window)
            window->updateGL();
    }
    GLTile *tile(int id) { return view->tiles.value(uint(id)); }
    /// The middle of a tile's cell, in the window's pixels from the top.
    QPoint centre(int id) { return tile(id)->orect.center().toPoint(); }
    /// Lets the window believe that the pointer is at @p p.
    void point(QPoint p)
    {
        window->mouse.x = p.x();
        window->mouse.y = window->height() - p.y();
    }
};

#endif
