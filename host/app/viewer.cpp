// SPDX-License-Identifier: MIT
#include "host/app/viewer.h"

#include <cstdio>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QScreen>

#include "host/app/module_loader.h"
#include "host/app/save_dialog.h"
#include "host/app/settings.h"
#include "host/capture/picture_file.h"
#include "host/capture/progress_line.h"
#include "host/capture/turntable.h"
#include "host/read/model_files.h"
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
    const QSize wanted = last.isValid() ? last : windowSize(options);
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? wanted.boundedTo(screen->availableSize()) : wanted;
}

} // namespace

Viewer::Viewer(const ModuleLoader &loader, const Options &options)
    : options_(options), window_(loader.factory(), startSize(options), options.fps)
{
    bindKeys();
    connect(&window_, &Window::filesDropped, this, &Viewer::open);
    open(options.files);
}

Viewer::~Viewer()
{
    const QWidget *widget = window_.widget();
    if (widget && options_.isPersonal() && !widget->isMaximized() && !widget->isFullScreen())
        Settings().setWindowSize(widget->size());
}

void Viewer::bindKeys()
{
    const QString list = tr("Show or hide this list");
    window_.bindKey("Ctrl+O", "open", tr("Open a file"), this, SLOT(OpenDialog()));
    window_.bindKey("Ctrl+S", "save", tr("Save a picture"), this, SLOT(SaveDialog()));
    window_.bindKey("T", "frame-rate", tr("Show the frame rate"), this, SLOT(ToggleFrameRate()));
    window_.bindKey("F1", "bindings", list, this, SLOT(ToggleBindings()));
    // The question mark comes with Shift on most keyboards and without on some.
    window_.bindKey("?", "bindings-plain", list, this, SLOT(ToggleBindings()));
    window_.bindKey("Shift+?", "bindings-shift", list, this, SLOT(ToggleBindings()));
    window_.bindKey("Esc", "bindings-close", {}, this, SLOT(HideBindings()));
    window_.bindKey("Q", "quit", tr("Quit"), this, SLOT(Quit()));
    window_.bindKey("Ctrl+Q", "quit-control", tr("Quit"), this, SLOT(Quit()));
}

std::unique_ptr<View> Viewer::makeSingleView(const QString &path)
{
    auto single = std::make_unique<SingleView>(window_, path);
    // Once the event that chose it is over: its view goes.
    connect(
        single.get(), &SingleView::fileChosen, this,
        [this](const QString &chosen) { open({chosen}); }, Qt::QueuedConnection);
    return single;
}

/// One file fills the window; several, or a folder, make a sheet.
std::unique_ptr<View> Viewer::makeView(const QStringList &paths)
{
    QStringList files;
    QString fault;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            files << path;
            continue;
        }
        const CollectedFiles found = collectModelFiles(path);
        files << found.files;
        if (found.files.isEmpty())
            fault = tr("%1: there is no model in this folder, or it cannot be read").arg(path);
    }
    if (paths.isEmpty() || (files.size() == 1 && files == paths))
        return makeSingleView(files.value(0));
    const QString folder =
        QFileInfo(paths.first()).isDir() ? paths.first() : QFileInfo(paths.first()).path();
    const QString name = QDir(QFileInfo(folder).absoluteFilePath()).dirName();
    auto sheet = std::make_unique<SheetView>(window_, name, files, fault);
    connect(sheet.get(), &SheetView::pictureAsked, this, &Viewer::savePicture);
    return sheet;
}

void Viewer::open(const QStringList &paths)
{
    const bool dark = view_ && view_->display().dark;
    view_.reset();
    settledFrames_ = 0;
    view_ = makeView(paths);
    if (options_.isPersonal() && !paths.isEmpty())
        Settings().addFiles(paths);
    view_->setDark(dark);
    connect(view_.get(), &View::framePainted, this, &Viewer::framePainted);
    connect(view_.get(), &View::menuOpening, this, &Viewer::fillMenu);
    connect(view_.get(), &View::titleChanged, this, [this] { window_.setTitle(view_->title()); });
    window_.setTitle(view_->title());
}

void Viewer::fillMenu(MenuTree *tree)
{
    tree->add(tr("Open…"), "Ctrl+O", this, [this] { OpenDialog(); });
    MenuTree *recent = tree->addMenu(tr("Open recent"));
    for (const QString &path : Settings().recentFiles())
        recent->add(QFileInfo(path).fileName(), {}, this, [this, path] { open({path}); });
    tree->add(tr("Screenshot…"), "Ctrl+S", this, [this] { SaveDialog(); });
    tree->addCheck(tr("Frame rate"), "T", window_.clock().isContinuous(), this,
                   [this] { ToggleFrameRate(); });
    tree->addCheck(tr("Bindings…"), "F1", view_->showsBindings(), this,
                   [this] { ToggleBindings(); });
    tree->addSeparator();
    tree->add(tr("Quit"), "Q", this, [this] { Quit(); });
}

void Viewer::OpenDialog()
{
    const QStringList paths = QFileDialog::getOpenFileNames(window_.widget(), tr("Open"));
    if (!paths.isEmpty())
        open(paths);
}

void Viewer::SaveDialog()
{
    savePicture(view_->title(), window_.widget()->rect());
}

/// Asks where to save a picture of a part of the window, y downwards.
void Viewer::savePicture(const QString &title, const QRect &crop)
{
    const QString name = QFileInfo(title).completeBaseName();
    const QString proposal = QDir::home().filePath((name.isEmpty() ? "glview" : name) + ".png");
    const auto choice = askForPicture(window_.widget(), proposal, crop.size());
    if (!choice)
        return;
    PictureRequest wanted = request(choice->size, choice->transparent);
    wanted.crop = crop;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const Picture picture = renderPicture(wanted);
    const QString fault =
        picture.error.isEmpty() ? PictureFile::write(picture.image, choice->path) : picture.error;
    QApplication::restoreOverrideCursor();
    if (!fault.isEmpty())
        QMessageBox::warning(window_.widget(), {}, fault);
}

/// The window in @p size pixels. Makes its context current.
PictureRequest Viewer::request(const QSize &size, bool transparent) const
{
    window_.widget()->makeCurrent();
    PictureRequest wanted;
    wanted.window = window_.widget()->size();
    wanted.size = size;
    wanted.transparent = transparent;
    wanted.objects = view_->pictured(transparent).objects();
    return wanted;
}

void Viewer::ToggleBindings()
{
    view_->showBindings(!view_->showsBindings());
}

void Viewer::HideBindings()
{
    view_->showBindings(false);
}

void Viewer::ToggleFrameRate()
{
    window_.clock().setContinuous(!window_.clock().isContinuous());
}

void Viewer::Quit()
{
    window_.widget()->close();
}

/// Ends the program with what was asked for once all is shown, or with the reason why nothing is.
void Viewer::framePainted()
{
    if ((options_.screenshot.isEmpty() && options_.turntable.isEmpty()) || finishing_)
        return;
    if (!view_->isSettled() && view_->fault().isEmpty()) {
        view_->changedSoon();
        return;
    }
    // The first frame with the item still had the camera of the one before.
    constexpr int enough = 3;
    if (++settledFrames_ == enough || !view_->fault().isEmpty()) {
        finishing_ = true; // outside of the frame, which has its own framebuffer and painter
        QTimer::singleShot(0, this, &Viewer::finish);
    }
    window_.clock().requestFrame();
}

void Viewer::finish()
{
    QString fault = view_->fault();
    if (fault.isEmpty())
        fault = options_.turntable.isEmpty() ? saveScreenshot() : record();
    if (!fault.isEmpty())
        std::fprintf(stderr, "glview: %s\n", qUtf8Printable(fault));
    QCoreApplication::exit(fault.isEmpty() ? 0 : 1);
}

QString Viewer::saveScreenshot()
{
    const Picture picture = renderPicture(request(options_.size, options_.transparent));
    return picture.error.isEmpty() ? PictureFile::write(picture.image, options_.screenshot)
                                   : picture.error;
}

QString Viewer::recordingFault(const Options &options)
{
    if (options.turntable.isEmpty())
        return {};
    PictureRequest frame;
    frame.size = options.size;
    frame.transparent = options.transparent;
    return TurntableRecorder(frame, {options.turntable, options.seconds, options.recordedFps})
        .fault();
}

QString Viewer::record()
{
    view_->fitTurn();
    const TurntableRecorder recorder(request(options_.size, options_.transparent),
                                     {options_.turntable, options_.seconds, options_.recordedFps});
    const InterruptGuard interrupt;
    ProgressLine line(stderr, tr("Recording"));
    const QString fault = recorder.record([&](int done, int total) {
        line.show(done, total);
        return !interrupt.interrupted();
    });
    line.end();
    if (fault.isEmpty() && interrupt.interrupted())
        return tr("the recording was given up; nothing of it is left");
    return fault;
}

} // namespace host
