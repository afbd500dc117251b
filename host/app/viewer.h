// SPDX-License-Identifier: MIT
#ifndef HOST_APP_VIEWER_H
#define HOST_APP_VIEWER_H

#include <memory>
#include <optional>

#include <QImage>
#include <QObject>
#include <QStringList>

#include "host/app/file_watch.h"
#include "host/app/options.h"
#include "host/read/read_queue.h"
#include "host/view/view.h"
#include "host/view/window/window.h"

namespace host {

class ModuleLoader;
class SheetView;
struct PictureChoice;
struct Opening;

/// The program at work: one window, the view in it, and what a person does to the whole of it.
class Viewer : public QObject {
    Q_OBJECT
public:
    /// Expects @p loader to have loaded the module and to outlive the viewer.
    Viewer(const ModuleLoader &loader, const Options &options);
    ~Viewer() override;

    /// What makes the picture or the recording that is asked for impossible; empty if nothing does.
    static QString outputFault(const Options &options);

    void show() { window_.show(); }
    View *view() const { return view_.get(); }
    Window &window() { return window_; }

    /// Shows @p paths in the place of what is shown; an empty list says how to open a file.
    void open(const QStringList &paths);

public slots:
    void OpenFiles();
    void OpenFolder();
    void SavePicture();
    void ReadAgain();
    void ToggleFullScreen();
    void ToggleFrameRate();
    void ToggleControls();
    void Back(); ///< Closes the list of controls, or else what was opened from a sheet.
    void Quit();

private:
    struct Command;
    QList<Command> commands();
    void bindKeys();
    void nameKeys();
    void fillMenu(MenuTree *tree);
    void framePainted();
    void finish();
    QString saveScreenshot();
    QString record();
    PictureRequest request(const QSize &size, bool transparent, bool overlays) const;
    std::unique_ptr<View> makeSingleView(const QString &path,
                                         const std::shared_ptr<Item> &item = {});
    std::unique_ptr<View> makeComparison(const QString &first, const QString &second);
    std::unique_ptr<View> makeView(const Opening &opening);
    void connectView(View *view);
    void adopt(std::unique_ptr<View> view);
    void openNeighbour(const QString &path);
    void openFromSheet(const QString &path);
    void openComparison(const QString &first, const QString &second);
    void putSheetBehind();
    void returnToSheet();
    void takeLook();
    void watch(const QStringList &files);
    void remember(const QStringList &paths);
    void savePicture(const QString &title, const QRect &crop);
    QString writeCrop(const QRect &crop, const PictureChoice &choice);

    Options options_;
    Window window_;
    ReadQueue queue_;                  // outlives the views, so that its processes serve them all
    std::unique_ptr<SheetView> sheet_; // behind the view of one of its files; else null
    std::unique_ptr<View> view_;
    FileWatch watch_;
    // What stays when another file is opened.
    Display display_;
    bool orthographic_ = false;
    double tileSize_ = 0;            // of sheets; 0: nobody chose
    std::optional<GL::Camera> look_; // while a person goes from file to file
    QString folder_;                 // where the next dialog starts
    int settledFrames_ = 0;          // painted since all was shown, while a picture waits for them
    bool finishing_ = false;
    bool knowsGL_ = false; // a frame was painted
};

} // namespace host

#endif
