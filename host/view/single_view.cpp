// SPDX-License-Identifier: MIT
#include "host/view/single_view.h"

#include <QFileInfo>
#include <QPainter>

#include "host/read/import.h"
#include "host/view/model_item.h"
#include "host/view/panel.h"
#include "host/view/window.h"

namespace host {

SingleView::SingleView(Window &window, const QString &path)
    : View(window, "GLWidget", true), path_(path)
{
    connect(&reader_, &MeshReader::progressed, this, [this](double fraction, const QString &stage) {
        fraction_ = fraction;
        stage_ = stage;
        changed();
    });
    connect(&reader_, &MeshReader::finished, this, &SingleView::show);
    connect(&reader_, &MeshReader::failed, this, &SingleView::fail);
    wire();
    if (!path_.isEmpty())
        reader_.start(path_);
}

QString SingleView::title() const
{
    return QFileInfo(path_).fileName();
}

bool SingleView::isSettled() const
{
    const Item *shown = item(glw());
    return shown && !shown->isBusy();
}

void SingleView::show(const MeshPtr &mesh)
{
    setItem(glw(), std::make_unique<ModelItem>(title(), mesh));
    changed();
}

void SingleView::fail(const QString &reason)
{
    fault_ = readFailure(path_, reason);
    changed();
}

void SingleView::paintText(GLW *, QPainter *painter)
{
    const Theme &theme = display().theme();
    const QRectF area = window().widget()->rect();
    if (const Item *shown = item(glw())) {
        paintNote(painter, area, Qt::AlignTop | Qt::AlignLeft, shown->name(), shown->details(),
                  theme);
        paintNote(painter, area, Qt::AlignBottom | Qt::AlignLeft, {}, shown->underPointer(), theme);
    } else if (!fault_.isEmpty()) {
        paintMessage(painter, area, fault_, tr("Drop another file here or press Ctrl+O."), -1,
                     theme);
    } else if (path_.isEmpty()) {
        paintMessage(painter, area, tr("Drop a model here or press Ctrl+O."),
                     tr("F1 lists the controls."), -1, theme);
    } else {
        paintMessage(painter, area, tr("Reading %1").arg(title()), stage_, fraction_, theme);
    }
}

} // namespace host
