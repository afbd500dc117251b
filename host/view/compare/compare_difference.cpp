// SPDX-License-Identifier: MIT
// How far the second model lies from the first one's surface, in colours.
#include <new>
#include <utility>

#include <QLocale>
#include <QPainter>

#include "host/view/compare/compare_view.h"
#include "host/view/compare/difference_item.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

MeshPtr CompareView::meshOf(int model) const
{
    Item *shown = shownItem(model);
    return shown && shown->model() ? shown->model()->sharedMesh() : nullptr;
}

QString CompareView::differenceFault() const
{
    if (!areThere())
        return {};
    if (difference_.lackedMemory() || lacksMemory_)
        return tr("There is not enough memory for the distances.");
    return Difference::fault(*meshOf(first()), *meshOf(second()));
}

/// From a tile that stays: that of the difference changes.
void CompareView::leadByFirst()
{
    follow();
    leader_ = tiles_[0];
}

/// Gives up what was measured: one of the two is another one now.
void CompareView::forgetDifference()
{
    difference_.stop();
    lacksMemory_ = false;
    leadByFirst();
    setItem(tiles_[differenceTile], nullptr);
    end_ = tolerance_ = 0;
    legend_->setContent({});
}

void CompareView::measureDifference()
{
    if (way_ == CompareWay::Difference && areThere() && !difference_.isStarted() &&
        differenceFault().isEmpty())
        difference_.start(meshOf(first()), meshOf(second()));
}

/// Once it is measured, or is to be coloured up to @p end; 0: not chosen yet. What there is no
/// memory for leaves the colours that are there.
void CompareView::showDifference(double end)
{
    const double before = std::exchange(end_, end);
    try {
        colour(*difference_.get());
        lacksMemory_ = false;
    } catch (const std::bad_alloc &) {
        if (item(tiles_[differenceTile]))
            end_ = before;
        else
            forgetDifference();
        lacksMemory_ = true;
    }
    place();
}

void CompareView::colour(const Difference::Found &found)
{
    const Deviation &deviation = found.deviation;
    if (end_ == 0) {
        end_ = ColourScale::roundUp(deviation.largest);
        tolerance_ = ColourScale::roundUp(end_ / 20);
    }
    const ColourScale scale{deviation.isSigned, end_};
    auto coloured = std::make_shared<Mesh>(*found.mesh);
    coloured->colours = scale.colours(deviation.distances);
    for (MeshPart &part : coloured->parts)
        part.colour = {1, 1, 1, 1};
    auto item = std::make_shared<DifferenceItem>(sides_[std::size_t(second())].name, coloured,
                                                 meshOf(first()), deviation.distances);
    leadByFirst();
    setItem(tiles_[differenceTile], std::move(item));
    tellDifference();
}

/// Writes the legend.
void CompareView::tellDifference()
{
    const Deviation &deviation = difference_.get()->deviation;
    const QString unit = difference_.get()->mesh->unit;
    const QLocale locale;
    const auto number = [&](double value) { return locale.toString(value, 'g', 4); };
    Legend::Content content;
    content.scale = {deviation.isSigned, end_};
    content.tolerance = tolerance_;
    content.title = unit.isEmpty() ? tr("Distance") : tr("Distance in %1").arg(unit);
    content.subtitle = tr("from %1").arg(sides_[std::size_t(first())].name);
    content.lines << tr("%1 to %2").arg(number(deviation.least), number(deviation.greatest))
                  << tr("mean %1").arg(number(deviation.mean))
                  << tr("RMS %1").arg(number(deviation.rms))
                  << tr("%1 % within %2")
                         .arg(locale.toString(100 * deviation.shareWithin(tolerance_), 'f', 1),
                              (deviation.isSigned ? QStringLiteral("±") : QString()) +
                                  number(tolerance_));
    legend_->setContent(content);
}

void CompareView::stepColours(bool up)
{
    if (item(tiles_[differenceTile]))
        showDifference(ColourScale::step(end_, up));
}

void CompareView::stepTolerance(bool up)
{
    if (!item(tiles_[differenceTile]))
        return;
    tolerance_ = ColourScale::step(tolerance_, up);
    tellDifference();
    changed();
}

/// Esc stops the work.
bool CompareView::leaveTool()
{
    if (way_ != CompareWay::Difference || !difference_.isBusy())
        return false;
    forgetDifference();
    setWay(CompareWay::Beside);
    return true;
}

/// Why there is nothing to see yet, or ever.
void CompareView::paintDifferenceState(QPainter *painter)
{
    const QRectF bounds = window().widget()->rect();
    const Theme &theme = display().theme();
    const QString fault = differenceFault();
    if (!fault.isEmpty())
        return void(paintMessage(painter, bounds, fault, tr("D shows the next way."), -1, theme));
    if (item(tiles_[differenceTile]))
        return;
    paintMessage(painter, bounds, tr("Measuring the distances"), tr("Esc stops it."),
                 difference_.fraction(), theme);
    changedSoon();
}

} // namespace host
