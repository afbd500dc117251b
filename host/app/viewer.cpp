// SPDX-License-Identifier: MIT
// What is open, and what stays from one file to the next.
#include "host/app/viewer.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>

#include "host/app/module_loader.h"
#include "host/app/opening.h"
#include "host/app/settings.h"
#include "host/ui/metrics.h"
#include "host/view/compare/compare_view.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/single_view.h"
#include "host/view/window/menu_tree.h"

namespace host {

namespace {

/// That of the last run, or the usual one, as far as the screen has room.
QSize startSize(const Options &options)
{
    if (options.sizeGiven || !options.isPersonal())
        return windowSize(options);
    const QSize last = Settings().windowSize();
    const QSize wanted = last.isValid() ? last : windowSize(options) * Metrics::px(1);
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? wanted.boundedTo(screen->availableSize()) : wanted;
}

} // namespace

Viewer::Viewer(const ModuleLoader &loader, const Options &options)
    : options_(options),
      window_(loader.factory(), startSize(options), options.fps),
      queue_(nullptr, readerProgram(options))
{
    if (options.isPersonal()) {
        const Settings last;
        display_.dark = last.isDark();
        orthographic_ = last.isOrthographic();
        folder_ = last.folder();
        tileSize_ = last.tileSize();
        window_.frame()->setSideWidth(last.partsWidth());
        window_.frame()->setOpen(last.arePartsOpen());
    }
    display_.overlays = options.overlays;
    display_.reduces = options.isPersonal() && Settings().isReducing();
    bindKeys();
    connect(&window_, &Window::filesDropped, this, &Viewer::open);
    connect(&watch_, &FileWatch::changed, this, [this](const QString &path) {
        view_->readAgain(path);
        if (sheet_)
            sheet_->readAgain(path);
    });
    if (options.compare) {
        adopt(makeComparison(options.files[0], options.files[1]));
        watch(options.files);
    } else {
        open(options.files);
    }
}

Viewer::~Viewer()
{
    takeLook();
    if (!options_.isPersonal())
        return;
    Settings last;
    last.setDark(display_.dark);
    last.setOrthographic(orthographic_);
    last.setReducing(display_.reduces);
    if (tileSize_ > 0)
        last.setTileSize(tileSize_);
    const SideFrame *frame = window_.frame();
    if (!frame)
        return;
    last.setPartsOpen(frame->isOpen());
    last.setPartsWidth(frame->sideWidth());
    if (!frame->isMaximized() && !frame->isFullScreen())
        last.setWindowSize(frame->size());
}

std::unique_ptr<View> Viewer::makeSingleView(const QString &path, const std::shared_ptr<Item> &item)
{
    auto single = std::make_unique<SingleView>(window_, queue_, path, item);
    connectView(single.get());
    // Once the event that chose it is over: its view goes.
    connect(single.get(), &SingleView::fileChosen, this, &Viewer::openNeighbour,
            Qt::QueuedConnection);
    return single;
}

std::unique_ptr<View> Viewer::makeView(const Opening &opening)
{
    if (opening.single)
        return makeSingleView(opening.files.value(0));
    auto sheet = std::make_unique<SheetView>(window_, queue_, opening.name, opening.files);
    connect(sheet.get(), &SheetView::filesFound, this, &Viewer::watch);
    sheet->setTileSize(tileSize_);
    connect(sheet.get(), &SheetView::tileSizeChosen, this,
            [this](double size) { tileSize_ = size; });
    connect(sheet.get(), &SheetView::pictureAsked, this, &Viewer::savePicture);
    // Once the event is over: its keys are taken off the window.
    connect(sheet.get(), &SheetView::openAsked, this, &Viewer::openFromSheet, Qt::QueuedConnection);
    connect(sheet.get(), &SheetView::compareAsked, this, &Viewer::openComparison,
            Qt::QueuedConnection);
    connectView(sheet.get());
    return sheet;
}

/// What the sheet behind it holds is not read again.
std::unique_ptr<View> Viewer::makeComparison(const QString &first, const QString &second)
{
    const auto model = [this](const QString &path) {
        return CompareView::Model{path, sheet_ ? sheet_->meshOf(path) : nullptr};
    };
    auto comparison = std::make_unique<CompareView>(window_, queue_, model(first), model(second),
                                                    options_.compare.value_or(CompareWay::Beside));
    connectView(comparison.get());
    return comparison;
}

void Viewer::connectView(View *view)
{
    connect(view, &View::framePainted, this, &Viewer::framePainted);
    connect(view, &View::menuOpening, this, &Viewer::fillMenu);
    connect(view, &View::titleChanged, this, [this] { window_.setTitle(view_->title()); });
}

/// Takes over how the person looks at what is shown.
void Viewer::takeLook()
{
    if (!view_)
        return;
    display_ = view_->display();
    orthographic_ = view_->isOrthographic();
}

void Viewer::openNeighbour(const QString &path)
{
    // A table between two models does not make the direction forgotten.
    if (const auto camera = view_->camera())
        look_ = camera;
    const std::optional<GL::Camera> look = look_;
    if (sheet_)
        openFromSheet(path);
    else
        open({path});
    look_ = look;
    if (!look_)
        return;
    view_->setLook(*look_);
    if (Item *shown = view_->item(view_->mainGLW())) // lent: it is there already
        shown->steering().lookAlong(view_->mainGLW(), *look_);
}

/// Makes room for another view: the sheet waits behind it, as it is. There may be none any more.
void Viewer::putSheetBehind()
{
    takeLook();
    if (sheet_) {
        view_.reset();
    } else if (auto *sheet = qobject_cast<SheetView *>(view_.get())) {
        view_.release();
        sheet_.reset(sheet);
        sheet_->setShown(false);
    }
}

/// Shows a file of the sheet alone.
void Viewer::openFromSheet(const QString &path)
{
    putSheetBehind();
    if (!sheet_)
        return;
    const Loan loan = sheet_->lend(path);
    adopt(makeSingleView(path, loan.item));
    if (loan.item)
        loan.item->restore(view_->mainGLW(), loan.state);
}

/// Shows two files of the sheet together.
void Viewer::openComparison(const QString &first, const QString &second)
{
    putSheetBehind();
    if (sheet_)
        adopt(makeComparison(first, second));
}

/// Expects a sheet behind the view.
void Viewer::returnToSheet()
{
    takeLook();
    view_.reset();
    sheet_->setShown(true);
    sheet_->takeBack();
    adopt(std::move(sheet_));
}

void Viewer::open(const QStringList &paths)
{
    takeLook();
    look_.reset();
    view_.reset();
    sheet_.reset();
    settledFrames_ = 0;
    const Opening opening = openingOf(paths);
    adopt(makeView(opening));
    remember(paths);
    watch(opening.files);
}

/// Notices changes of the files, if that is asked for.
void Viewer::watch(const QStringList &files)
{
    if (!options_.watch)
        return;
    QStringList absolute;
    for (const QString &file : files)
        absolute << QFileInfo(file).absoluteFilePath();
    watch_.setFiles(absolute);
}

void Viewer::adopt(std::unique_ptr<View> view)
{
    view_ = std::move(view);
    view_->setDisplay(display_);
    view_->setOrthographic(orthographic_);
    view_->setUp(options_.up);
    view_->setSection(options_.section);
    window_.setTitle(view_->title());
    nameKeys();
}

void Viewer::remember(const QStringList &paths)
{
    // What was piped into the program is nowhere once the program has ended.
    if (!options_.isPersonal() || paths.isEmpty() || paths.contains(options_.piped))
        return;
    folder_ = folderOf(paths.first());
    Settings kept;
    kept.addFiles(paths);
    kept.setFolder(folder_);
}

} // namespace host
