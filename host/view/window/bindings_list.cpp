// SPDX-License-Identifier: MIT
#include "host/view/window/bindings_list.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>

#include "host/ui/metrics.h"
#include "host/view/window/panel.h"

namespace host {

namespace {

double heightOf(const QFont &font, double width, const QString &text)
{
    return QFontMetricsF(font)
        .boundingRect(QRectF(0, 0, width, 10000), Qt::TextWordWrap, text)
        .height();
}

/// Columns of rows, all of the same width and height, from the upper left corner on.
struct Columns {
    int count = 1;
    double width = 0;
    double keyWidth = 0;
    double height = 0;
    double gap = 0;
    QVector<double> rows; ///< Heights.

    /// Fills the columns with rows from @p row on. Returns the row that has no room any more.
    int fill(int row, const QPointF &corner, QVector<BindingsLayout::Place> *places) const
    {
        for (int column = 0; column < count; ++column) {
            const double x = corner.x() + column * (width + gap);
            for (double y = 0; row < rows.size() && y + rows[row] <= height; ++row) {
                const double top = corner.y() + y;
                if (places)
                    places->append(
                        {QRectF(x, top, keyWidth, rows[row]),
                         QRectF(x + keyWidth + gap, top, width - keyWidth - gap, rows[row])});
                y += rows[row];
            }
        }
        return row;
    }
};

} // namespace

BindingsLayout::BindingsLayout(const QRectF &bounds, const QFont &font,
                               const QVector<BindingRow> &rows, int wanted)
{
    const QFont strong = bold(font);
    const QFontMetricsF metrics(font), strongMetrics(strong);
    const double line = std::ceil(metrics.height() * 1.35);
    const double edge = Metrics::px(8);
    Columns columns;
    columns.gap = Metrics::px(16);
    double textWidth = 0;
    for (const BindingRow &row : rows) {
        columns.keyWidth = std::max(columns.keyWidth, strongMetrics.horizontalAdvance(row.keys));
        textWidth = std::max(textWidth, metrics.horizontalAdvance(row.text));
    }
    // A few long rows are wrapped rather than all columns be as wide as they.
    columns.keyWidth = std::min(std::ceil(columns.keyWidth) + 1, Metrics::type(200));
    textWidth = std::min(std::ceil(textWidth) + 1, Metrics::type(240));
    columns.width = columns.keyWidth + columns.gap + textWidth;

    const QRectF room = bounds.adjusted(edge, edge, -edge, -edge);
    const double inside = room.width() - 2 * columns.gap;
    columns.height = room.height() - 2 * columns.gap - 1.5 * line;
    // Where it is narrower the longest keys would run into the text beside them.
    if (inside < Metrics::type(180) || columns.height < 2 * line)
        return;
    const int most = int((inside + columns.gap) / (columns.width + columns.gap));
    if (most < 1) {
        columns.width = inside;
        columns.keyWidth = std::min(columns.keyWidth, std::floor(0.42 * inside));
    }
    const double wrapped = columns.width - columns.keyWidth - columns.gap;
    for (const BindingRow &row : rows)
        columns.rows.append(line - metrics.height() +
                            std::max(heightOf(strong, columns.keyWidth, row.keys),
                                     heightOf(font, wrapped, row.text)));
    // As few columns as hold all, and then as low as that allows.
    while (columns.count < most && columns.fill(0, {}, nullptr) < rows.size())
        ++columns.count;
    if (columns.fill(0, {}, nullptr) == rows.size()) {
        const double tallest = columns.height;
        columns.height = line;
        while (columns.fill(0, {}, nullptr) < rows.size() && columns.height < tallest)
            columns.height += line / 2;
        columns.height = std::min(columns.height, tallest);
    }
    while (last < rows.size() - 1 && columns.fill(last, {}, nullptr) < rows.size())
        ++last;
    first = std::clamp(wanted, 0, last);

    panel.setSize({columns.count * (columns.width + columns.gap) + columns.gap,
                   columns.height + 1.5 * line + 2 * columns.gap});
    panel.moveCenter(bounds.center());
    const QPointF corner = panel.topLeft() + QPointF(columns.gap, columns.gap);
    heading = QRectF(corner, QSizeF(panel.width() - 2 * columns.gap, line));
    columns.fill(first, corner + QPointF(0, 1.5 * line), &places);
}

int paintBindings(QPainter *painter, const QRectF &bounds, const QString &heading,
                  const QVector<BindingRow> &rows, int first, const Theme &theme)
{
    const QFont plain = painter->font(), strong = bold(plain);
    const BindingsLayout layout(bounds, plain, rows, first);
    if (layout.places.isEmpty())
        return 0;
    painter->save();
    Theme solid = theme;
    solid.panel.setAlpha(240);
    paintPanel(painter, layout.panel, solid);
    const auto text = [&](const QFont &font, const QColor &colour, const QRectF &r, int flags,
                          const QString &words) {
        painter->setFont(font);
        painter->setPen(colour);
        painter->drawText(r, flags, words);
    };
    text(strong, theme.accent, layout.heading, Qt::AlignTop, heading);
    const int shown = layout.places.size();
    if (layout.last > 0)
        text(plain, theme.faint, layout.heading, Qt::AlignTop | Qt::AlignRight,
             QCoreApplication::translate("BindingsList", "%1 to %2 of %3: scroll")
                 .arg(layout.first + 1)
                 .arg(layout.first + shown)
                 .arg(rows.size()));
    for (int i = 0; i < shown; ++i) {
        const BindingRow &row = rows[layout.first + i];
        text(strong, theme.text, layout.places[i].keys, Qt::TextWordWrap, row.keys);
        text(plain, theme.text, layout.places[i].text, Qt::TextWordWrap, row.text);
    }
    painter->restore();
    return layout.last;
}

} // namespace host
