// SPDX-License-Identifier: MIT
#ifndef HOST_APP_SAVE_DIALOG_H
#define HOST_APP_SAVE_DIALOG_H

#include <QCoreApplication>
#include <QSize>
#include <QString>

class QWidget;

namespace host {

/// What a person chose for a picture.
struct PictureChoice {
    Q_DECLARE_TR_FUNCTIONS(PictureChoice)
public:
    QString path;
    QSize size; ///< Pixels.
    bool transparent = false;
    bool overlays = true; ///< With names, sizes, axes and scale bar.
};

/// Asks for the name, the size and what goes into a picture of what @p parent shows in
/// @p shown pixels; the shape stays. @p choice holds what is proposed and takes what is chosen.
/// Runs an event loop of its own. Returns false if the person gave up.
bool askForPicture(QWidget *parent, const QSize &shown, PictureChoice &choice);

} // namespace host

#endif
