// SPDX-License-Identifier: MIT
#ifndef HOST_APP_SAVE_DIALOG_H
#define HOST_APP_SAVE_DIALOG_H

#include <optional>

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
};

/// Asks for the name, the size and the background of a picture of what @p parent shows in
/// @p shown pixels; the shape stays. Runs an event loop of its own. Returns nothing if the person
/// gave up.
std::optional<PictureChoice> askForPicture(QWidget *parent, const QString &proposal,
                                           const QSize &shown);

} // namespace host

#endif
