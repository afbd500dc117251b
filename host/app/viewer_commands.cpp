// SPDX-License-Identifier: MIT
// What a person does to the whole program: keys and menu, from one list, and the dialogs.
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "host/app/opening.h"
#include "host/app/save_dialog.h"
#include "host/app/settings.h"
#include "host/app/viewer.h"
#include "host/capture/picture_file.h"
#include "host/read/model_files.h"
#include "host/view/sheet/sheet_view.h"
#include "host/view/window/menu_tree.h"

namespace host {

/// The first of the keys stands in the menu.
struct Viewer::Command {
    QStringList keys;
    const char *name;
    QString text; ///< Empty: in no list.
    const char *slot;
    std::optional<bool> on = {}; ///< For a switch, as it stands.
};

/// In the order of the menu.
QList<Viewer::Command> Viewer::commands()
{
    const bool full = window_.frame()->isFullScreen();
    // The question mark comes with Shift on most keyboards and without on some.
    return {
        {{"Ctrl+O"}, "open", tr("Open files…"), "OpenFiles"},
        {{"Ctrl+Shift+O"}, "open-folder", tr("Open a folder…"), "OpenFolder"},
        {{"Ctrl+R"}, "read-again", tr("Read again"), "ReadAgain"},
        {{"Ctrl+S"}, "save", tr("Save a picture…"), "SavePicture"},
        {{"F11"}, "full-screen", tr("Full screen"), "ToggleFullScreen", full},
        {{"T"}, "frame-rate", tr("Frame rate"), "ToggleFrameRate", window_.clock().isContinuous()},
        {{"F1", "?", "Shift+?"},
         "controls",
         tr("Controls"),
         "ToggleControls",
         view_ && view_->showsBindings()},
        {{"Esc"}, "back", sheet_ ? tr("Back to the sheet") : QString(), "Back"},
        {{"Q", "Ctrl+Q"}, "quit", tr("Quit"), "Quit"}};
}

void Viewer::bindKeys()
{
    for (const Command &command : commands()) {
        const QByteArray slot = QByteArray("1") + command.slot + "()"; // as SLOT() writes it
        for (const QString &key : command.keys) {
            const QByteArray name = key == command.keys.first()
                                        ? QByteArray(command.name)
                                        : command.name + QByteArray("-") + key.toLatin1();
            window_.bindKey(key, name, command.text, this, slot);
        }
    }
}

/// Some keys do something else in another view.
void Viewer::nameKeys()
{
    const QList<QAction *> actions = window_.widget()->actions();
    for (const Command &command : commands())
        for (QAction *action : actions)
            if (action->objectName() == QLatin1String(command.name))
                action->setText(command.text);
}

void Viewer::fillMenu(MenuTree *tree)
{
    for (const Command &command : commands()) {
        if (command.text.isEmpty())
            continue;
        const char *slot = command.slot;
        const auto run = [this, slot] { QMetaObject::invokeMethod(this, slot); };
        if (qstrcmp(slot, "Quit") == 0)
            tree->addSeparator();
        if (command.on)
            tree->addCheck(command.text, command.keys.first(), *command.on, this, run);
        else
            tree->add(command.text, command.keys.first(), this, run);
        if (qstrcmp(slot, "OpenFolder") == 0) {
            MenuTree *recent = tree->addMenu(tr("Open recent"));
            for (const QString &path : Settings().recentFiles())
                recent->add(QFileInfo(path).fileName(), {}, this, [this, path] { open({path}); });
        }
    }
}

void Viewer::OpenFiles()
{
    QStringList patterns{"*.csv", "*.tsv", "*.txt"};
    for (const QString &suffix : modelSuffixes())
        patterns << "*." + suffix;
    const QString models = tr("Models and tables (%1)").arg(patterns.join(' '));
    const QStringList paths = QFileDialog::getOpenFileNames(
        window_.widget(), tr("Open files"), folder_, models + ";;" + tr("All files (*)"));
    if (!paths.isEmpty())
        open(paths);
}

void Viewer::OpenFolder()
{
    const QString path =
        QFileDialog::getExistingDirectory(window_.widget(), tr("Open a folder"), folder_);
    if (!path.isEmpty())
        open({path});
}

void Viewer::SavePicture()
{
    savePicture(view_->title(), window_.widget()->rect());
}

/// Asks where to save a picture of a part of the window, y downwards, until it is saved or given
/// up.
void Viewer::savePicture(const QString &title, const QRect &crop)
{
    const QString base = QFileInfo(title).completeBaseName();
    PictureChoice choice;
    choice.path =
        QDir(folder_.isEmpty() || !QFileInfo(folder_).isWritable() ? QDir::homePath() : folder_)
            .filePath((base.isEmpty() ? "glview" : base) + ".png");
    choice.size = crop.size();
    while (askForPicture(window_.widget(), crop.size(), choice)) {
        const QString fault = writeCrop(crop, choice);
        if (fault.isEmpty())
            return;
        QMessageBox::warning(window_.widget(), tr("The picture is not saved"), fault);
    }
}

/// Returns the reason if there is no picture.
QString Viewer::writeCrop(const QRect &crop, const PictureChoice &choice)
{
    PictureRequest wanted = request(choice.size, choice.transparent, choice.overlays);
    wanted.crop = crop;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const Picture picture = renderPicture(wanted);
    const QString fault =
        picture.error.isEmpty() ? PictureFile::write(picture.image, choice.path) : picture.error;
    QApplication::restoreOverrideCursor();
    return fault;
}

void Viewer::ReadAgain()
{
    view_->readAgain({});
}

void Viewer::ToggleFullScreen()
{
    QWidget *frame = window_.frame();
    frame->setWindowState(frame->windowState() ^ Qt::WindowFullScreen);
}

void Viewer::ToggleControls()
{
    view_->showBindings(!view_->showsBindings());
}

void Viewer::Back()
{
    if (view_->showsBindings())
        view_->showBindings(false);
    else if (!view_->leaveTool() && sheet_)
        returnToSheet();
}

void Viewer::ToggleFrameRate()
{
    window_.clock().setContinuous(!window_.clock().isContinuous());
}

void Viewer::Quit()
{
    window_.frame()->close();
}

} // namespace host
