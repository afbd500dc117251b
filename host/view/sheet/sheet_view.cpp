// SPDX-License-Identifier: MIT
// A sheet's tiles in the passes.
#include "host/view/sheet/sheet_view.h"

#include <QPainter>

#include "host/ui/metrics.h"
#include "host/view/window/binding.h"
#include "host/view/window/panel.h"
#include "host/view/window/window.h"

namespace host {

SheetView::SheetView(Window &window, ReadQueue &queue, const QString &name,
                     const QStringList &paths)
    : View(window, "GLMultiWidget", false), name_(name), search_(window.widget()), queue_(queue)
{
    header_ = TilePainter::header();
    scene()->setProperty("header", header_);
    spacing_ = qRound(Metrics::px(4));
    scene()->setProperty("spacing", spacing_);
    connect(scene(), SIGNAL(ValueChanged(QList<int>)), this, SLOT(SelectionChanged()));
    connect(&controls(), &Controls::pressed, this, [this](GLW *glw) { passOn(glw, true); });
    connect(scene(), SIGNAL(TileResized(int, int)), this, SLOT(AdaptTo(int, int)));
    connect(&controls(), &Controls::steered, this, [this](GLW *glw) {
        if (linked_.contains(glw->id()))
            leader_ = glw->id();
    });
    // Tiles and text move together: only when both are painted.
    connect(this, &View::framePainted, this, &SheetView::glide, Qt::QueuedConnection);
    connect(&search_, &SheetSearch::changed, this, &SheetView::searched);
    connect(&search_, &SheetSearch::closed, this, &SheetView::arrange);
    gaps_ = window.addScene("GLWidget", "gaps", Window::Behind);
    bindMouse(gaps_, RightButton, 0, "menu", {}, this, SLOT(GapMenu(GLW *, bool)));
    bindKeys();
    bindChoosing();
    bindScrolling();
    setTileSize(0);
    // Hundreds of small pictures that hold four samples a pixel: what more would bring is little.
    refinement().setMost(200);
    connect(&hovering_, &FrameBudget::due, window.widget(), qOverload<>(&QWidget::update));
    wire();
    connectQueue();
    open(paths);
}

SheetView::~SheetView()
{
    window().clock().setLookRate();
    window().removeScene(gaps_);
    queue_.disconnect(this); // cancelling tells of totals
    queue_.cancel(list_);
    for (auto &[id, entry] : entries_)
        queue_.cancel(entry.job);
}

void SheetView::addTiles(const QStringList &files)
{
    entries_ = makeEntries(files);
    sortBy(SheetOrder::Name);
}

void SheetView::Update(GLW *glw)
{
    endSparing();
    entries_.at(glw->id()).lastSeen = ++passes_;
    hover(glw);
    advance(glw);
    followLeader(glw);
}

void SheetView::fillPicture(PictureContents &contents)
{
    contents.addGround(mainGLW(), window().widget()->rect(), [this] { drawPlain(ground()); });
    for (int id : qAsConst(inView_))
        contents.addItem(tile(id), item(tile(id)));
    addTextTo(contents);
}

/// Notes whether the pointer is over the tile.
void SheetView::hover(const GLW *glw)
{
    const GLWindow *widget = window().widget();
    const QPointF pointer(widget->mouse.x, widget->height() - widget->mouse.y);
    const bool over = widget->underMouse() && glw->orect.contains(pointer);
    if (over == (hovered_ == glw->id()))
        return;
    // Only the tile under the pointer is picked, so the one before would go on showing its mark.
    forgetPointer(tile(hovered_));
    hovered_ = over ? glw->id() : -1;
    markChanged();
}

void SheetView::GapMenu(GLW *, bool pressed)
{
    if (!pressed)
        askMenu(mainGLW());
}

bool SheetView::isSettled() const
{
    if (entries_.empty())
        return false;
    return std::all_of(inView_.begin(), inView_.end(), [this](int id) {
        const Item *shown = item(tile(id));
        return entries_.at(id).state == State::Failed || (shown && shown->isWhole());
    });
}

QString SheetView::fault() const
{
    if (entries_.empty())
        return notice_;
    const bool failed = std::all_of(entries_.begin(), entries_.end(), [](const auto &entry) {
        return entry.second.state == State::Failed;
    });
    return failed ? tr("none of the files can be shown") : QString();
}

QStringList SheetView::remarks() const
{
    QStringList all;
    if (!entries_.empty() && !notice_.isEmpty())
        all << notice_.split('\n');
    for (const auto &[id, entry] : entries_)
        if (entry.state == State::Failed)
            all << tr("%1: %2").arg(entry.name, entry.reason);
    return all;
}

QString SheetView::title() const
{
    return tr("%1 files").arg(entries_.size()) + QStringLiteral(" – ") + name_;
}

QString SheetView::progress() const
{
    if (queue_.isIdle())
        return {};
    const QString failures =
        queue_.failures() ? tr("  ·  %1 cannot be read").arg(queue_.failures()) : QString();
    return tr("Reading %1 of %2").arg(queue_.done() + queue_.failures()).arg(queue_.total()) +
           failures;
}

void SheetView::paintText(GLW *, QPainter *painter)
{
    hovering_.measure();
    const Theme &theme = display().theme();
    const QRectF bounds = window().widget()->rect();
    if (search_.isOpen())
        search_.setTheme(theme);
    if (list_ != 0) {
        paintMessage(painter, bounds, tr("Looking through %1").arg(name_), {}, -1, theme);
        return;
    }
    if (entries_.empty()) {
        paintMessage(painter, bounds, notice_.isEmpty() ? tr("The sheet is empty.") : notice_,
                     tr("Drop files or a folder here or press Ctrl+O."), -1, theme);
        return;
    }
    if (shown_.isEmpty() && !search_.isEmpty())
        paintMessage(painter, bounds, tr("No name of a tile holds that."),
                     tr("Esc shows all again."), -1, theme);
    else if (shown_.isEmpty())
        paintMessage(painter, bounds, tr("All tiles are hidden."), tr("V shows them again."), -1,
                     theme);
    else if (display().overlays && !cramped_)
        paintTiles(painter);
    if (display().overlays)
        paintBottomNote(painter, bounds);
}

/// The tile under the pointer, which is no part of a picture; -1 if there is none.
int SheetView::pointed() const
{
    return paintsPicture() ? -1 : hovered_;
}

void SheetView::paintTiles(QPainter *painter)
{
    const int under = pointed();
    for (int id : qAsConst(inView_)) {
        const GLW *glw = tile(id);
        painter_.paint(painter, id, entries_.at(id), {glw->orect, glw->geometry(false)},
                       {selected_.contains(id), under == id, isLinked(id)}, display().theme());
    }
    if (header_ > 0 && under > 0)
        painter_.paintWholeName(painter, entries_.at(under).name, tile(under)->orect,
                                isLinked(under), window().widget()->rect(), display().theme());
}

/// What goes on, what the pointer is on, or else what was left out; in a picture only that.
void SheetView::paintBottomNote(QPainter *painter, const QRectF &bounds)
{
    const int under = pointed();
    QString name, note;
    if (!paintsPicture())
        note = hint_.isEmpty() ? progress() : hint_;
    if (note.isEmpty() && under > 0) {
        if (const Item *shown = item(tile(under)))
            note = shown->underPointer();
        if (header_ == 0) // which would name it
            name = entries_.at(under).name;
    }
    if (note.isEmpty() && name.isEmpty() && !search_.isEmpty())
        note = tr("%1 of %2 files").arg(shown_.size()).arg(entries_.size());
    if (note.isEmpty() && name.isEmpty())
        note = QString(notice_).replace('\n', "  ·  ");
    if (bounds.height() >= Metrics::type(90)) // else it would cover the tiles
        paintNote(painter, bounds, Qt::AlignBottom | Qt::AlignLeft, name, note, display().theme());
}

} // namespace host
