// SPDX-License-Identifier: MIT
// What a person does with measurements beside making them.
#include <QClipboard>
#include <QGuiApplication>

#include "host/item/model_item.h"
#include "host/view/measure_tool.h"
#include "host/view/window/menu_tree.h"

namespace host {

/// In the order of Kind.
QVector<MeasureTool::KindText> MeasureTool::kinds()
{
    const QString first = tr("click the first point");
    return {{tr("Distance"), {first, tr("click the second point")}},
            {tr("Point"), {tr("click a point")}},
            {tr("Angle of faces"), {tr("click the first face"), tr("click the second face")}},
            {tr("Angle of points"),
             {first, tr("click the point at the angle"), tr("click the last point")}},
            {tr("Radius"), {tr("click a round edge or face")}}};
}

void MeasureTool::CopyMeasurements()
{
    QString text;
    for (const Measurement &m : all_)
        text += m.text() + '\n';
    QGuiApplication::clipboard()->setText(text);
}

void MeasureTool::fillMenu(MenuTree *tree)
{
    if (!model())
        return;
    MenuTree *menu = tree->addMenu(tr("Measure"));
    const QVector<KindText> all = kinds();
    for (int i = 0; i < all.size(); ++i)
        menu->addCheck(all[i].name, {}, isActive() && int(kind_) == i, this,
                       [this, i] { choose(Kind(i)); });
    menu->add(tr("Measure area and volume"), "Shift+D", this, [this] { MeasureSurface(); });
    menu->addSeparator();
    menu->add(tr("Measure; the next kind of measure"), "D", this, [this] { Measure(); });
    if (isActive())
        menu->add(tr("Stop measuring"), {}, this, [this] { leave(); });
    if (all_.empty())
        return;
    menu->add(tr("Copy the measures as text"), "Ctrl+C", this, [this] { CopyMeasurements(); });
    menu->add(tr("Remove the last measure"), "Backspace", this, [this] { RemoveLast(); });
    MenuTree *list = menu->addMenu(tr("Remove"));
    for (std::size_t i = 0; i < all_.size(); ++i) {
        const QString value = all_[i].values.join(QStringLiteral("  "));
        list->add(QStringLiteral("%1: %2").arg(all_[i].name, value), {}, this, [this, value, i] {
            // The menu may have been open for long.
            if (i < all_.size() && all_[i].values.join(QStringLiteral("  ")) == value)
                all_.erase(all_.begin() + std::ptrdiff_t(i));
            say({});
        });
    }
    list->add(tr("All of them"), {}, this, [this] {
        all_.clear();
        say({});
    });
}

} // namespace host
