// SPDX-License-Identifier: MIT
#ifndef HOST_APP_VIEWER_H
#define HOST_APP_VIEWER_H

#include <memory>

#include <QImage>
#include <QObject>
#include <QStringList>

#include "host/app/options.h"
#include "host/view/view.h"
#include "host/view/window/window.h"

namespace host {

class ModuleLoader;

/// The program at work: one window, the view in it, and what a person does to the whole of it.
class Viewer : public QObject {
    Q_OBJECT
public:
    /// Expects @p loader to have loaded the module and to outlive the viewer.
    Viewer(const ModuleLoader &loader, const Options &options);
    ~Viewer() override;

    /// What makes the recording that is asked for impossible; empty if nothing does or none is.
    static QString recordingFault(const Options &options);

    void show() { window_.show(); }
    View *view() const { return view_.get(); }

    /// Shows @p paths in the place of what is shown; an empty list says how to open a file.
    void open(const QStringList &paths);

public slots:
    void OpenDialog();
    void SaveDialog();
    void ToggleBindings();
    void HideBindings();
    void ToggleFrameRate();
    void Quit();

private:
    void bindKeys();
    void fillMenu(MenuTree *tree);
    void framePainted();
    void finish();
    QString saveScreenshot();
    QString record();
    PictureRequest request(const QSize &size, bool transparent) const;
    std::unique_ptr<View> makeSingleView(const QString &path);
    std::unique_ptr<View> makeView(const QStringList &paths);
    void savePicture(const QString &title, const QRect &crop);

    Options options_;
    Window window_;
    std::unique_ptr<View> view_;
    int settledFrames_ = 0; // painted since all was shown, while a picture waits for them
    bool finishing_ = false;
};

} // namespace host

#endif
