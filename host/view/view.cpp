// SPDX-License-Identifier: MIT
#include "host/view/view.h"

#include <QAction>
#include <QFontMetricsF>
#include <QMetaMethod>
#include <QPainter>
#include <QScopedValueRollback>

#include "host/view/window/binding.h"
#include "host/view/window/menu_tree.h"
#include "host/view/window/window.h"

namespace host {

namespace {

/// Connects a signal that class @p base of @p scene declares, even where a derived class declares
/// one of the same name.
void connectBase(QObject *scene, const char *base, const char *signal, QObject *receiver,
                 const char *slot)
{
    const QMetaObject *meta = scene->metaObject();
    while (meta && qstrcmp(meta->className(), base) != 0)
        meta = meta->superClass();
    const int from = meta ? meta->indexOfSignal(signal) : -1;
    const int to = receiver->metaObject()->indexOfSlot(slot);
    if (from >= 0 && to >= 0)
        QObject::connect(scene, meta->method(from), receiver, receiver->metaObject()->method(to));
}

/// Of frames that are drawn again to smooth what stays, in seconds: meanwhile nothing answers.
constexpr double slowest = 0.5;

/// Frames that smooth are timed by the window's clock, like all else that moves.
Refinement::Pace paceIn(Window &window)
{
    Refinement::Pace pace;
    pace.now = [&window] { return qint64(window.clock().seconds() * 1000); };
    return pace;
}

} // namespace

View::View(Window &window, const char *className, bool single)
    : window_(window),
      area_(window),
      lateClear_(window.widget()),
      refinement_(
          window.widget(),
          [this] { return isSettled() && !window_.clock().isContinuous() && frameTook_ < slowest; },
          paceIn(window))
{
    refinement_.setParent(this);
    scene_ = window.addScene(className, "scene");
    controls_ = new Controls(
        scene_,
        [this](GLW *glw) {
            Item *shown = item(glw);
            return shown ? &shown->steering() : nullptr;
        },
        single, this);
    connect(controls_, &Controls::steered, this, [this] { changed(); });
    connect(controls_, &Controls::areaDragged, this, [this] { changed(); });
    connect(controls_, &Controls::areaEnded, this, [this](GLW *, bool through) {
        area_.dragEnded(through);
        changed();
    });
    connect(controls_, &Controls::menuAsked, this, &View::askMenu);
    connect(controls_, &Controls::clicked, this,
            [this](GLW *glw, const QPointF &at, Qt::KeyboardModifiers modifiers) {
                Item *shown = item(glw);
                if (!toolClicked(glw, at) && (!shown || !shown->click(glw, at)))
                    clicked(glw, at, modifiers);
                changed();
            });
    connect(&budget_, &FrameBudget::due, this, [this] {
        if (QWidget *widget = window_.widget())
            widget->update();
    });
    bindDisplay();
    window.widget()->installEventFilter(this);
}

void View::wire()
{
    QMetaObject::invokeMethod(scene_, "Connect", Q_ARG(QObject *, this));
    // A scene with tiles declares a signal of this name of its own, which never comes.
    if (qstrcmp(scene_->metaObject()->className(), "GLWidget") != 0)
        connectBase(scene_, "GLWidget", "InitContextMenuTree(GLW*,QObject*)", this,
                    "InitContextMenuTree(GLW*,QObject*)");
}

View::~View()
{
    endSparing();
    delete controls_; // its bindings go with it
    if (window_.widget())
        window_.widget()->makeCurrent();
    for (auto &[glw, slot] : slots_)
        if (slot.item && window_.widget())
            slot.item->release();
    slots_.clear();
    window_.removeScene(scene_);
    for (const QPointer<QAction> &action : qAsConst(viewKeys_))
        delete action.data();
}

void View::setShown(bool on)
{
    endSparing();
    QWidget *widget = window_.widget();
    scene_->setProperty("visible", on);
    for (const QPointer<QAction> &action : qAsConst(viewKeys_)) {
        if (action && on)
            widget->insertAction(widget->actions().value(0), action); // as the window does
        else if (action)
            widget->removeAction(action);
    }
    changed();
}

void View::changed()
{
    refinement_.interrupt();
    window_.clock().requestFrame();
}

void View::changedSoon()
{
    refinement_.interrupt();
    budget_.request();
}

Item *View::item(GLW *glw) const
{
    const auto found = slots_.find(glw);
    return found == slots_.end() ? nullptr : found->second.item.get();
}

quint64 View::itemNumber(GLW *glw) const
{
    const auto found = slots_.find(glw);
    return found == slots_.end() ? 0 : found->second.number;
}

void View::setItem(GLW *glw, std::shared_ptr<Item> item)
{
    window_.widget()->makeCurrent();
    Slot &slot = slots_[glw];
    if (slot.item)
        slot.item->release();
    {
        const std::shared_ptr<Item> before = std::move(slot.item);
        slot = Slot();
        slot.item = std::move(item);
        slot.number = ++items_;
        if (slot.item)
            turnLike(glw, before.get(), slot.item.get());
    }
    if (slot.item)
        cut(slot.item.get());
    // Before the window is first shown there is no context; Init comes then.
    if (slot.item && window_.widget()->isVisible())
        begin(glw, slot.item.get());
    if (!slot.item)
        slots_.erase(glw);
}

/// A file that is read again stays on the axis that a person chose for it; any other stands as the
/// view was told, unless it came with an axis of its own.
void View::turnLike(GLW *glw, const Item *before, Item *item) const
{
    if (before) {
        if (const std::optional<FileAxes::Axis> up = before->chosenUp()) {
            item->standOn(glw, *up);
            return;
        }
    }
    if (up_ && !item->chosenUp())
        item->standOn(glw, *up_);
}

/// As the view was told; who cut it otherwise keeps that.
void View::cut(Item *item) const
{
    if (item->section() && item->section()->planes.empty())
        item->cutBy(section_);
}

/// Makes what the item draws with, and looks at it as the one before was looked at.
void View::begin(GLW *glw, Item *item) const
{
    item->setInsets(covered(glw));
    item->init(glw);
    GL::Camera look = look_.value_or(glw->camera);
    look.ortho = orthographic_;
    if (look_ || orthographic_)
        item->steering().lookAlong(glw, look);
}

std::optional<GL::Camera> View::camera() const
{
    const Item *shown = item(mainGLW());
    return shown && shown->isSpatial() ? std::optional(mainGLW()->camera) : std::nullopt;
}

bool View::isOrthographic() const
{
    for (const auto &[glw, slot] : slots_)
        if (slot.item && slot.item->isSpatial())
            return slot.item->steering().isOrthographic(glw);
    return orthographic_;
}

std::shared_ptr<Item> View::takeItem(GLW *glw)
{
    const auto found = slots_.find(glw);
    if (found == slots_.end())
        return nullptr;
    const std::shared_ptr<Item> taken = found->second.item;
    setItem(glw, nullptr);
    return taken;
}

void View::lookFrom(Steering::Side side)
{
    if (Item *shown = item(mainGLW())) {
        shown->steering().lookFrom(mainGLW(), side);
        changed();
    }
}

void View::Init(GLW *glw)
{
    if (Item *shown = item(glw))
        begin(glw, shown);
}

void View::advance(GLW *glw)
{
    const auto found = slots_.find(glw);
    if (found == slots_.end())
        return;
    Slot &slot = found->second;
    const bool first = !slot.advanced;
    const double now = window_.clock().seconds();
    const double seconds = now - slot.advanced.value_or(now);
    slot.advanced = passed_ = now;
    slot.item->setInsets(covered(glw));
    const bool moved = slot.item->steering().advance(glw, seconds);
    const bool played = slot.item->play(seconds);
    const bool due = slot.item->passed({moved || played, display_.reduces, seconds, frameTook_});
    if (played || due || (moved && !first))
        changed();
    // Where an item finds its place at first nobody moved it, and hundreds may arrive.
    else if (moved)
        changedSoon();
    if (slot.item->isBusy())
        changedSoon();
    if (slot.item->isReduced())
        refinement_.interrupt(); // the mean is that of whole models
}

/// Takes how long the frame takes that is under way: when events come again, it is on the screen.
void View::timeFrame()
{
    QMetaObject::invokeMethod(
        this, [this, begin = passed_] { frameTook_ = window_.clock().seconds() - begin; },
        Qt::QueuedConnection);
}

bool View::isQuiet() const
{
    for (const auto &[glw, slot] : slots_)
        if (slot.item->isReduced() && glw->property<bool>("visible"))
            return false;
    return refinement_.isAtRest() && !budget_.isPending();
}

void View::Draw3D(GLW *glw)
{
    if (fillsWindow())
        LateClear::clearDepths();
    drawItem(glw, true);
}

void View::drawItem(GLW *glw, bool marked)
{
    drawBackdrop(display_.theme());
    Item *shown = item(glw);
    if (!shown)
        return;
    std::optional<Refinement::Shift> shift;
    if (shown->isSpatial())
        shift.emplace(refinement_);
    Display shownAs = display_;
    shownAs.hover = display_.hover && marked;
    drawContents(glw, shownAs);
    if (shown->isReduced())
        window_.clock().touch(); // the passes go on, in which it comes to rest
}

void View::drawContents(GLW *glw, const Display &display)
{
    if (Item *shown = item(glw))
        shown->draw3D(glw, display);
}

void View::Draw2D(GLW *glw)
{
    if (Item *shown = item(glw))
        shown->draw2D(glw, display_);
    shadeFrameRate(glw);
    if (glw == mainGLW())
        drawn();
}

/// The module writes the frame rate in white into the window's upper right corner.
void View::shadeFrameRate(const GLW *glw) const
{
    if (!window_.clock().isContinuous() || !glw->gl)
        return;
    const QRectF place(glw->x(), glw->y(), glw->width(), glw->height());
    const QFontMetricsF metrics(glw->gl->font());
    const QPointF corner(glw->gl->width() - 1, 1);
    if (place.contains(corner))
        drawShade(place.size(), metrics.horizontalAdvance("0000 fps 000%gfx") + 6,
                  metrics.height() + 2);
}

/// All that is painted over what was drawn.
void View::paintOver(GLW *glw, QPainter *painter)
{
    painter->setFont(window_.widget()->font());
    for (auto &[each, slot] : slots_)
        if (slot.item && each->property<bool>("visible"))
            slot.item->paintForeground(each, painter, display_);
    paintText(glw, painter);
}

PictureContents View::pictured(bool transparent, bool overlays)
{
    endSparing();
    const QScopedValueRollback<bool> wanted(display_.overlays, display_.overlays && overlays);
    PictureContents contents(display_, transparent);
    fillPicture(contents);
    return contents;
}

void View::fillPicture(PictureContents &contents)
{
    contents.addItem(mainGLW(), item(mainGLW()));
    addTextTo(contents);
}

void View::addTextTo(PictureContents &contents)
{
    const auto paint = [this, overlays = display_.overlays](GLW *at, QPainter *painter) {
        // Where the pointer happens to be is no part of a picture.
        const QScopedValueRollback<bool> quiet(display_.hover, false);
        const QScopedValueRollback<bool> picture(paintsPicture_, true);
        const QScopedValueRollback<bool> wanted(display_.overlays, overlays);
        paintOver(at, painter);
    };
    contents.addText(mainGLW(), window_.widget()->rect(), paint);
}

void View::PaintForeground(GLW *glw, QPainter *painter)
{
    paintOver(glw, painter);
    area_.paint(painter, display_.theme().accent);
    if (area_.isTaking())
        endArea();
    if (showsBindings_)
        paintList(painter);
    budget_.measure();
    timeFrame();
    painter->beginNativePainting();
    emit framePainted();
    painter->endNativePainting();
}

/// The passes of this frame took what the rectangle holds.
void View::endArea()
{
    areaSelected(area_.finish());
    changed();
}

void View::fitTurn()
{
    for (auto &[glw, slot] : slots_)
        slot.item->steering().fitTurn(glw);
}

} // namespace host
