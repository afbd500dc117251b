// SPDX-License-Identifier: MIT
// The multi-view's selection and visibility.
#include <algorithm>

#include <QSet>

#include "GL/glmultiwidget.h"

/// Ids of the tiles whose property @p name is true.
QList<int> GLMultiWidget::idsWhere(const char *name) const
{
    QList<int> ids;
    for (auto it = tiles.constBegin(); it != tiles.constEnd(); ++it)
        if (it.value()->property<bool>(name))
            ids.append(int(it.key()));
    return ids;
}

QList<int> GLMultiWidget::GetSelected()
{
    return idsWhere("selected");
}

QList<int> GLMultiWidget::GetVisible()
{
    return idsWhere("visible");
}

void GLMultiWidget::LeftMouse(GLW *glw, bool state)
{
    pressOrRelease(glw, state, 0);
}

void GLMultiWidget::CtrlLeftMouse(GLW *glw, bool state)
{
    pressOrRelease(glw, state, 1);
}

/// A click: press and release on the same tile, unless the release ends a double click.
void GLMultiWidget::pressOrRelease(GLW *glw, bool state, int multi)
{
    if (!property<bool>("enabled") || !glw || !glw->gl)
        return;
    const Mouse &mouse = glw->gl->mouse;
    if (state) {
        if (mouse.button != mouse.last_button)
            tilePressed = glw->id();
        return;
    }
    if (doublePress || glw->id() == -1 || glw->id() != tilePressed)
        return;
    localSelect(glw->id(), multi);
}

void GLMultiWidget::LeftDoubleMouse(GLW *glw, bool)
{
    if (!property<bool>("enabled") || !glw || !glw->gl)
        return;
    const QPointer<GLMultiWidget> self(this);
    const QPointer<GLWindow> window = glw->gl;
    const int id = glw->id();
    if (window->mouse.double_click && id != -1) {
        if (setSelected({}))
            emit ValueChanged({});
        if (self)
            toggleSingleView(quint32(id));
    }
    if (self && window)
        doublePress = window->mouse.double_press;
}

void GLMultiWidget::localSelect(int id, int multi)
{
    if (!property<bool>("enableSelection") || visibleTiles().size() < 2)
        return;
    QList<int> selection = GetSelected();
    if (!multi) {
        const QList<int> only{id};
        selection = selection == only ? QList<int>() : only;
    } else if (!selection.removeOne(id)) {
        selection.append(id);
        std::sort(selection.begin(), selection.end());
    }
    if (setSelected(selection))
        emit ValueChanged(selection);
}

/// Returns false if the view died of it.
bool GLMultiWidget::setSelected(const QList<int> &ids)
{
    const QSet<int> wanted(ids.begin(), ids.end());
    return forEachTile(
        [&](GLTile *tile) { tile->setProperty("selected", wanted.contains(tile->id())); });
}

void GLMultiWidget::SetVisible(QList<int> ids, bool visible)
{
    const QPointer<GLMultiWidget> self(this);
    for (int id : qAsConst(ids)) {
        if (GLTile *tile = tiles.value(uint(id)))
            tile->setProperty("visible", visible);
        if (!self)
            return;
    }
    layoutIsStale();
}

void GLMultiWidget::toggleSingleView(quint32 id)
{
    if (tiles.size() == 1)
        return;
    const bool all = visibleTiles().size() == 1;
    if (!forEachTile(
            [&](GLTile *tile) { tile->setProperty("visible", all || quint32(tile->id()) == id); }))
        return;
    layoutIsStale();
    emit VisibleCountChanged(visibleTiles().size());
}

void GLMultiWidget::SelectAll()
{
    const bool select = GetSelected().size() != tiles.size();
    QList<int> ids;
    if (forEachTile([&](GLTile *tile) {
            if (select)
                ids.append(tile->id());
            tile->setProperty("selected", select);
        }))
        emit ValueChanged(ids);
}

void GLMultiWidget::ToggleVisible()
{
    const QList<int> selected = GetSelected();
    const bool onlySelected = !selected.isEmpty() && selected != GetVisible();
    if (!forEachTile([&](GLTile *tile) {
            tile->setProperty("visible", onlySelected ? tile->property<bool>("selected") : true);
        }))
        return;
    const QPointer<GLMultiWidget> self(this);
    emit VisibleCountChanged(visibleTiles().size());
    if (self)
        layoutIsStale();
}
