// SPDX-License-Identifier: MIT
// What a person does with measurements beside making them.
#include <QClipboard>
#include <QGuiApplication>

#include "host/item/model_item.h"
#include "host/view/measure_tool.h"
#include "host/view/window/menu_tree.h"

namespace host {

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
    const std::pair<Kind, QString> kinds[] = {{Kind::Distance, tr("Distance")},
                                              {Kind::Point, tr("Point")},
                                              {Kind::FaceAngle, tr("Angle of two faces")},
                                              {Kind::PointAngle, tr("Angle of three points")},
                                              {Kind::Radius, tr("Radius")}};
    for (const auto &[kind, text] : kinds)
        menu->addCheck(text, {}, isActive() && kind_ == kind, this,
                       [this, chosen = kind] { choose(chosen); });
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
