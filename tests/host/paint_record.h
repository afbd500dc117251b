// SPDX-License-Identifier: MIT
#ifndef TESTS_HOST_PAINT_RECORD_H
#define TESTS_HOST_PAINT_RECORD_H

#include <functional>
#include <map>
#include <vector>

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <gtest/gtest.h>

namespace host {

/// What is painted: texts, with boxes from the font's ascent to its descent, lines, and fills in
/// the colour of their rim where they are empty; its width, and its colour where it has another.
class PaintRecord : public QImage, private QPaintEngine {
public:
    struct Text {
        QRectF box;
        QFont font;
        QColor color;
    };
    std::multimap<QString, Text> texts;
    std::vector<std::pair<QLineF, QPen>> lines;
    std::vector<std::pair<QRectF, QColor>> fills;
    std::vector<QString> rims;
    bool isRough = false; ///< Some lines or fills are not smoothed.

    PaintRecord(const QSize &size, const std::function<void(QPainter *)> &paint)
        : QImage(size, Format_RGB32), QPaintEngine(AllFeatures)
    {
        QPainter painter(this);
        const QFont font = painter.font();
        const QPen pen = painter.pen();
        paint(&painter);
        EXPECT_TRUE(painter.transform().isIdentity() && painter.font() == font);
        EXPECT_EQ(painter.pen(), pen);
    }
    Text operator[](const QString &text) const // which has to be there once
    {
        EXPECT_EQ(texts.count(text), 1u) << text.toStdString();
        return texts.count(text) > 0 ? texts.find(text)->second : Text();
    }
    std::string all() const ///< The texts, sorted.
    {
        QStringList words;
        for (const auto &[text, how] : texts)
            words << text;
        return words.join('|').toStdString();
    }
    /// A place in the text's box: @p x and @p y from 0 to 1 are left to right and top to bottom.
    QPointF at(const QString &text, double x, double y) const
    {
        const QRectF box = (*this)[text].box;
        return {box.left() + x * box.width(), box.top() + y * box.height()};
    }

private:
    QPaintEngine *paintEngine() const override { return const_cast<PaintRecord *>(this); }
    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void drawPixmap(const QRectF &, const QPixmap &, const QRectF &) override {}
    void updateState(const QPaintEngineState &) override {}
    QRectF placed(const QRectF &r) const { return painter()->transform().mapRect(r); }
    void drawTextItem(const QPointF &at, const QTextItem &item) override
    {
        const QRectF box(at.x(), at.y() - item.ascent(), item.width(),
                         item.ascent() + item.descent());
        texts.insert({item.text(), {placed(box), item.font(), painter()->pen().color()}});
    }
    void drawLines(const QLineF *all, int count) override
    {
        for (int i = 0; i < count; ++i)
            lines.emplace_back(painter()->transform().map(all[i]), painter()->pen());
        isRough = isRough || !painter()->testRenderHint(QPainter::Antialiasing);
    }
    void fill(const QRectF &box)
    {
        const bool full = painter()->brush().style() != Qt::NoBrush;
        const QPen &pen = painter()->pen();
        const QString width = ' ' + QString::number(pen.widthF());
        const QString rim = full ? " in " + pen.color().name(QColor::HexArgb).mid(1) : QString();
        fills.emplace_back(placed(box), full ? painter()->brush().color() : pen.color());
        rims.push_back(pen.style() == Qt::NoPen ? QString() : rim + width);
        isRough = isRough || !painter()->testRenderHint(QPainter::Antialiasing);
    }
    void drawPath(const QPainterPath &path) override { fill(path.boundingRect()); }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode) override
    {
        QPolygonF all;
        for (int i = 0; i < count; ++i)
            all << points[i];
        fill(all.boundingRect());
    }
};

} // namespace host

#endif
