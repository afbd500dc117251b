// SPDX-License-Identifier: MIT
#ifndef HOST_VIEW_COMPARE_LEGEND_H
#define HOST_VIEW_COMPARE_LEGEND_H

#include <optional>

#include <QStringList>

#include "host/view/compare/colour_scale.h"
#include "host/view/overlay/overlay.h"

namespace host {

/// What the colours of distances mean, at the right edge of the window, and what they come to.
class Legend : public Overlay {
    Q_OBJECT
public:
    struct Content {
        ColourScale scale;
        double tolerance = 0; ///< Marked along the colours.
        QString title;
        QString subtitle;
        QStringList lines; ///< Below the colours; the last one is about the tolerance.
    };
    Legend(const Underlay &under, Window &window);

    void setContent(std::optional<Content> content) { content_ = std::move(content); }

protected:
    QRectF place(const QSizeF &size) const override;
    bool isShown() const override { return content_.has_value(); }
    void paint(QPainter *painter, const QRectF &bounds) override;

private:
    void paintBar(QPainter *painter, const QRectF &bar) const;
    void paintLine(QPainter *painter, const QRectF &line, const QColor &colour,
                   const QString &text) const;

    std::optional<Content> content_; // nothing: it is not there
};

} // namespace host

#endif
