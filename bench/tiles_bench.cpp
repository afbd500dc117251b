// SPDX-License-Identifier: MIT
// Layout, hit test and selection, beside plain arrays that hold what the tiles' objects hold.
#include <algorithm>
#include <cmath>
#include <vector>

#include <QSize>

#include "GL/glmultiwidget.h"
#include "bench/compare.h"

namespace {

constexpr double width = 1920, height = 1080;
constexpr int spacing = 2;

struct PlainTile {
    int id;
    bool visible = true, enabled = true, selected = false;
    QSize hint{1, 1};
    QRectF cell{};
};
using PlainTiles = std::vector<PlainTile>;

struct Tiles {
    GLMultiWidget view{nullptr, "view"};
    PlainTiles plain;

    explicit Tiles(int count)
    {
        view.setGeometry(QRectF(0, 0, width, height));
        for (int id = 0; id < count; ++id) {
            view.AddTile(uint(id));
            plain.push_back({id});
        }
        view.SetOrder({});
    }
    bool sameCells() const
    {
        return std::all_of(plain.begin(), plain.end(), [this](const PlainTile &t) {
            return view.tiles.value(uint(t.id))->orect == t.cell;
        });
    }
};

/// The rows and columns whose cells let tiles of that aspect ratio be largest.
QSize plainGrid(int count, float aspect)
{
    QSize best;
    float bestArea = 0;
    for (int r = 1; r <= count;) {
        const int cols = std::max(1, int(float(count) / float(r) + 0.5));
        const int rows = std::max(r, r + count - cols * r);
        const float w = float(width) / float(cols), h = float(height) / float(rows);
        const float tileH = aspect > w / h ? w / aspect : h;
        const float area = aspect * tileH * tileH;
        if (area > bestArea) {
            bestArea = area;
            best = QSize(cols, rows);
        }
        r = rows + 1;
    }
    return best;
}

void placePlain(PlainTiles &tiles, const std::vector<int> &sequence)
{
    QSize hint;
    int count = 0;
    for (const PlainTile &t : tiles) {
        if (t.visible) {
            hint = hint.expandedTo(t.hint);
            ++count;
        }
    }
    const QSize grid = plainGrid(count, float(hint.width()) / float(hint.height()));
    const int cols = grid.width(), rows = grid.height();
    const int w = int((width - (cols + 1) * spacing) / cols);
    const int h = int((height - (rows + 1) * spacing) / rows);
    int i = 0;
    for (int index : sequence) {
        PlainTile &t = tiles[size_t(index)];
        if (!t.visible)
            continue;
        const int row = i / cols, col = i % cols;
        t.cell = QRectF((col + 1) * spacing + w * col, (row + 1) * spacing + h * row, w, h);
        ++i;
    }
}

void Layout(benchmark::State &state)
{
    const int count = int(state.range(0));
    Tiles tiles(count);
    std::vector<int> sequence(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        sequence[size_t(i)] = i;
    Contest c;
    c.module = [&] { tiles.view.SetOrder({}); };
    c.bare = [&] { placePlain(tiles.plain, sequence); };
    c.correct = [&] { return tiles.sameCells(); };
    c.items = count;
    compare(state, c);
}

/// With every second tile named, from the last to the first; the baseline is the straightforward
/// search of the order for every tile, whose steps grow with the square of the count.
void LayoutInOrder(benchmark::State &state)
{
    const int count = int(state.range(0));
    Tiles tiles(count);
    QVariantList order;
    std::vector<int> named;
    for (int id = count - 1; id >= 0; id -= 2) {
        order << id;
        named.push_back(id);
    }
    Contest c;
    c.module = [&] { tiles.view.SetOrder(order); };
    c.bare = [&] {
        std::vector<int> sequence = named;
        for (int id = 0; id < count; ++id)
            if (std::find(named.begin(), named.end(), id) == named.end())
                sequence.push_back(id);
        placePlain(tiles.plain, sequence);
    };
    c.correct = [&] { return tiles.sameCells(); };
    c.items = count;
    compare(state, c);
}

void HitTest(benchmark::State &state)
{
    const int count = int(state.range(0));
    Tiles tiles(count);
    for (PlainTile &t : tiles.plain)
        t.cell = tiles.view.tiles.value(uint(t.id))->orect;
    const auto pointAt = [](int i) { return QPoint(i * 607 % int(width), i * 353 % int(height)); };
    int at = 0, moduleSum = 0, bareSum = 0;
    Contest c;
    c.module = [&] {
        const QPoint p = pointAt(++at);
        const GLW *w = tiles.view.hit(p.x(), p.y());
        moduleSum += w ? w->id() : -1;
    };
    c.bare = [&] {
        const QPointF p = pointAt(at);
        const auto found = std::find_if(tiles.plain.begin(), tiles.plain.end(), [&](auto &t) {
            return t.enabled && t.visible && t.cell.contains(p);
        });
        bareSum += found == tiles.plain.end() ? -1 : found->id;
    };
    c.correct = [&] {
        for (int i = 0; i < 100; ++i) {
            c.module();
            c.bare();
        }
        return moduleSum == bareSum && moduleSum != 0;
    };
    c.items = count;
    compare(state, c);
}

/// One SelectAll(), which selects and clears in turn, and the list of the selected.
void Selection(benchmark::State &state)
{
    const int count = int(state.range(0));
    Tiles tiles(count);
    QList<int> module, bare;
    Contest c;
    c.module = [&] {
        tiles.view.SelectAll();
        module = tiles.view.GetSelected();
    };
    c.bare = [&] {
        const bool select = !std::all_of(tiles.plain.begin(), tiles.plain.end(),
                                         [](const PlainTile &t) { return t.selected; });
        bare.clear();
        for (PlainTile &t : tiles.plain)
            t.selected = select;
        for (const PlainTile &t : tiles.plain)
            if (t.selected)
                bare << t.id;
    };
    c.correct = [&] { return module == bare && module.size() == count; };
    c.items = count;
    compare(state, c);
}

void counts(benchmark::internal::Benchmark *b)
{
    for (int count : {16, 256, 4096, 65536})
        b->Arg(count);
    b->UseManualTime()->MinTime(0.5);
}

BENCHMARK(Layout)->Apply(counts);
BENCHMARK(LayoutInOrder)->Apply(counts);
BENCHMARK(HitTest)->Apply(counts);
BENCHMARK(Selection)->Apply(counts);

} // namespace
