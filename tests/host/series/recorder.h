// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_SERIES_RECORDER_H
#define TESTS_HOST_SERIES_RECORDER_H

#include <algorithm>
#include <iterator>
#include <vector>

#include <QLineF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

namespace host {

/// What was painted: texts with their boxes and lines with their pens.
struct Painting {
    struct Text {
        QString text;
        QRectF box; // from the font's ascent to its descent
        QFont font;
        QColor color;
    };
    struct Line {
        QLineF line;
        QPen pen;
    };

    std::vector<Text> find(const QString &text) const
    {
        std::vector<Text> found;
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(found),
                     [&text](const Text &t) { return t.text == text; });
        return found;
    }

    std::vector<Text> texts;
    std::vector<Line> lines;
};

/// A device of 800 x 500 pixels that keeps what is painted on it.
class Recorder : public QPaintDevice, private QPaintEngine, public Painting {
public:
    Recorder() : QPaintEngine(AllFeatures) {}
    QPaintEngine *paintEngine() const override { return const_cast<Recorder *>(this); }

private:
    int metric(PaintDeviceMetric m) const override
    {
        return m == PdmWidth ? 800 : m == PdmHeight ? 500 : m == PdmDpiX || m == PdmDpiY ? 96 : 1;
    }
    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void updateState(const QPaintEngineState &now) override
    {
        if (now.state() & DirtyTransform)
            transform_ = now.transform();
        if (now.state() & DirtyPen)
            pen_ = now.pen();
    }
    void drawTextItem(const QPointF &at, const QTextItem &item) override
    {
        const QRectF box(at.x(), at.y() - item.ascent(), item.width(),
                         item.ascent() + item.descent());
        texts.push_back({item.text(), transform_.mapRect(box), item.font(), pen_.color()});
    }
    void drawLines(const QLineF *all, int count) override
    {
        for (int i = 0; i < count; ++i)
            lines.push_back({transform_.map(all[i]), pen_});
    }
    void drawPath(const QPainterPath &) override {}

    QTransform transform_;
    QPen pen_;
};

} // namespace host

#endif
