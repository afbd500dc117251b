// SPDX-License-Identifier: MIT
#include "host/view/compare/compare_view.h"

#include <algorithm>
#include <new>

#include <QFileInfo>

#include "host/item/model_item.h"
#include "host/measure/common_frame.h"
#include "host/read/file_kind.h"
#include "host/view/compare/half_clip.h"
#include "host/view/window/window.h"

namespace host {

CompareView::CompareView(Window &window, ReadQueue &queue, const Model &first, const Model &second,
                         CompareWay way)
    : View(window, "GLMultiWidget", true), way_(way), queue_(queue)
{
    addTiles();
    const auto under = [this](std::size_t tile) {
        return Underlay{tiles_[tile], [] { return nullptr; },
                        [this]() -> const Display & { return display(); }};
    };
    divider_ = std::make_unique<Divider>(under(0), window);
    legend_ = std::make_unique<Legend>(under(differenceTile), window);
    connect(divider_.get(), &Divider::moved, this, [this] { changed(); });
    connect(&controls(), &Controls::steered, this, [this](GLW *glw) { leader_ = glw; });
    bindKeys();
    wire();
    connectQueue();
    const std::array<const Model *, 2> models{&first, &second};
    for (std::size_t i = 0; i < 2; ++i) {
        sides_[i].path = models[i]->path;
        sides_[i].name = QFileInfo(models[i]->path).fileName();
        sides_[i].mesh = models[i]->mesh;
        if (!sides_[i].mesh)
            read(sides_[i]);
    }
    place();
}

CompareView::~CompareView()
{
    queue_.disconnect(this); // cancelling tells of totals
    for (const Side &side : sides_)
        queue_.cancel(side.job);
}

/// Both fill the window: nothing is between or around them.
void CompareView::addTiles()
{
    scene()->setProperty("spacing", 0);
    scene()->setProperty("enableSelection", false);
    // Its double click would hide all other tiles.
    QMetaObject::invokeMethod(scene(), "DeleteAction",
                              Q_ARG(const char *, "scene_leftdoublemouse"));
    for (std::size_t i = 0; i < tiles_.size(); ++i) {
        QObject *made = nullptr;
        QMetaObject::invokeMethod(scene(), "AddTile", Q_RETURN_ARG(QObject *, made),
                                  Q_ARG(uint, uint(i + 1)));
        tiles_[i] = static_cast<GLW *>(made);
    }
}

void CompareView::read(Side &side)
{
    queue_.cancel(side.job);
    side.job = queue_.add(side.path, ReadQueue::Opened);
}

CompareView::Side *CompareView::sideOf(int job)
{
    const auto found = std::find_if(sides_.begin(), sides_.end(),
                                    [job](const Side &side) { return side.job == job; });
    return found == sides_.end() ? nullptr : &*found;
}

void CompareView::connectQueue()
{
    connect(&queue_, &ReadQueue::progressed, this,
            [this](int job, double fraction, const QString &stage) {
                if (Side *side = sideOf(job)) {
                    side->fraction = fraction;
                    side->stage = stage;
                    changedSoon();
                }
            });
    connect(&queue_, &ReadQueue::finished, this, [this](int job, const Content &content) {
        if (Side *side = sideOf(job))
            take(*side, content);
    });
    connect(&queue_, &ReadQueue::failed, this, [this](int job, const QString &reason) {
        if (Side *side = sideOf(job)) {
            side->fault = readFailure(side->path, reason);
            changed();
        }
    });
}

void CompareView::take(Side &side, const Content &content)
{
    side.fault = content.mesh ? QString()
                              : tr("%1 is no model: only models can be compared.").arg(side.name);
    if (content.mesh) { // else what was there stays, with what a person did to it
        side.mesh = content.mesh;
        if (areThere())
            makeItems();
    }
    changed();
}

/// Once both are read: where one stands depends on the other. Who looked at them goes on so.
void CompareView::makeItems()
{
    if (!sides_[0].mesh || !sides_[1].mesh)
        return;
    std::array<MeshPtr, 2> meshes{sides_[0].mesh, nullptr};
    try {
        meshes[1] = inFrameOf(*sides_[0].mesh, sides_[1].mesh);
    } catch (const std::bad_alloc &) {
        sides_[1].fault = tr("There is not enough memory to show both models.");
        return;
    }
    for (std::size_t i = 0; i < 2; ++i) {
        Item *before = item(tiles_[i]);
        const std::optional<ItemState> state =
            before ? std::optional(before->state(tiles_[i])) : std::nullopt;
        const auto made = std::make_shared<ModelItem>(sides_[i].name, meshes[i], meshes[1 - i]);
        setItem(tiles_[i], made);
        if (state)
            made->restore(tiles_[i], *state);
    }
    forgetDifference();
    place();
}

bool CompareView::areThere() const
{
    return shownItem(0) && shownItem(1);
}

/// Shows the tiles that the way needs, in their order, as they are looked at now.
void CompareView::place()
{
    follow();
    const bool beside = way_ == CompareWay::Beside;
    const bool coloured = way_ == CompareWay::Difference;
    tiles_[0]->setProperty("visible", !coloured);
    tiles_[1]->setProperty("visible", beside);
    tiles_[differenceTile]->setProperty("visible", coloured);
    const QVariantList order{first() + 1, second() + 1, int(differenceTile) + 1};
    scene()->setProperty("order", order); // which lays out at once
    if (item(shownTile()))
        leader_ = shownTile();
    measureDifference();
    divider_->setOn(way_ == CompareWay::Divider && areThere());
    changed();
}

GLW *CompareView::shownTile() const
{
    const auto shown = std::find_if(tiles_.begin(), tiles_.end(),
                                    [](GLW *glw) { return glw->property<bool>("visible"); });
    return shown == tiles_.end() ? tiles_[0] : *shown;
}

/// All stand and are looked at as the tile that a hand moved last.
void CompareView::follow()
{
    Item *leading = item(leader_);
    if (!leading)
        return;
    const GL::Camera &pose = leader_->camera;
    const auto same = [&pose](const GL::Camera &c) {
        return c.rot == pose.rot && c.setTarget == pose.setTarget && c.radius == pose.radius &&
               c.ortho == pose.ortho;
    };
    for (GLW *glw : tiles_) {
        Item *other = item(glw);
        if (glw == leader_ || !other)
            continue;
        const auto up = leading->chosenUp();
        const bool turns = up && other->chosenUp() != up;
        if (turns) {
            window().widget()->makeCurrent();
            other->standOn(glw, *up);
        }
        if (!turns && same(glw->camera))
            continue;
        other->steering().restore(glw, pose, leading->steering().wholeIn());
        changed();
    }
}

void CompareView::Update(GLW *glw)
{
    // Not before the first frame: until then the view is told how to look.
    if (!areThere() && fault().isEmpty())
        makeItems();
    if (difference_.get() && !item(tiles_[differenceTile]))
        showDifference(end_);
    hover(glw);
    advance(glw);
    // The second model stands in no visible tile, where what it still works at would be asked for.
    if (divider_->isOn() && shownItem(1)->isBusy())
        changedSoon();
    if (glw == leader_)
        follow();
}

/// Only the tile under the pointer is picked: the one before would go on showing its mark.
void CompareView::hover(GLW *glw)
{
    const GLWindow *widget = window().widget();
    const QPointF pointer(widget->mouse.x, widget->height() - widget->mouse.y);
    if (hovered_ == glw || !glw->orect.contains(pointer))
        return;
    forgetPointer(hovered_);
    hovered_ = glw;
    changed();
}

void CompareView::DrawBG(GLW *)
{
    drawPlain(display().dark ? display().theme().bottom : display().theme().top);
}

void CompareView::DrawFG(GLW *)
{
    drawn();
}

/// With the divider both are drawn where the first tile is, each on its side.
void CompareView::drawContents(GLW *glw, const Display &display)
{
    if (!divider_->isOn()) {
        View::drawContents(glw, display);
        return;
    }
    Display whole = display;
    whole.reduces = false; // only the tile's own model hears that the view moves
    for (const auto &[model, side] :
         {std::pair{first(), HalfClip::Left}, std::pair{second(), HalfClip::Right}}) {
        const HalfClip clip(glw->camera, divider_->share(), side);
        shownItem(model)->draw3D(glw, whole);
    }
}

/// What is under the pointer is found of one of them alone.
bool CompareView::showsItemAt(const GLW *, const QPointF &at) const
{
    const double line = divider_->share() * window().widget()->width();
    return !divider_->isOn() || (at.x() < line) == (first() == 0);
}

void CompareView::fillPicture(PictureContents &contents)
{
    for (GLW *glw : tiles_)
        if (glw->property<bool>("visible"))
            contents.addModels(
                glw, [this](GLW *at, const Display &display) { drawContents(at, display); });
    for (Overlay *overlay :
         {static_cast<Overlay *>(divider_.get()), static_cast<Overlay *>(legend_.get())})
        if (picturesOverlays() && isOver(overlay))
            contents.add(overlay->pictured());
    addTextTo(contents);
}

bool CompareView::isSettled() const
{
    if (way_ == CompareWay::Difference) {
        const Item *coloured = item(tiles_[differenceTile]);
        return coloured && coloured->isWhole();
    }
    return areThere() && shownItem(0)->isWhole() && shownItem(1)->isWhole();
}

QString CompareView::fault() const
{
    for (const Side &side : sides_)
        if (!side.fault.isEmpty())
            return side.fault;
    return way_ == CompareWay::Difference ? differenceFault() : QString();
}

QString CompareView::title() const
{
    return tr("%1 and %2")
        .arg(sides_[std::size_t(first())].name, sides_[std::size_t(second())].name);
}

void CompareView::readAgain(const QString &path)
{
    for (Side &side : sides_)
        if (path.isEmpty() || path == QFileInfo(side.path).absoluteFilePath())
            read(side);
}

} // namespace host
