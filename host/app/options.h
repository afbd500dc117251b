// SPDX-License-Identifier: MIT
#ifndef HOST_APP_OPTIONS_H
#define HOST_APP_OPTIONS_H

#include <optional>

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QVector>

#include "host/item/section.h"
#include "host/read/companions.h"
#include "host/read/mesh.h"
#include "host/view/compare/compare_way.h"

namespace host {

struct ReaderProgram;

/// What the command line asks for.
struct Options {
    Q_DECLARE_TR_FUNCTIONS(Options)
public:
    /// What to do with it.
    enum class Action {
        View,    ///< Open the window, or save a picture if `screenshot` is set.
        Help,    ///< Print optionsHelp().
        Version, ///< Print the versions.
        Reader,  ///< Be a process that reads files.
        Refuse,  ///< Print `error`; the command line makes no sense.
    };

    Action action = Action::View;
    QString error;
    QStringList files;         ///< As given; "-" is standard input.
    QString piped;             ///< What of `files` standard input became; empty: it is not used.
    QString module;            ///< Path of the module; empty: search for it.
    QString screenshot;        ///< Picture to write; empty: stay open.
    bool watch = false;        ///< Files that change on disk are read again.
    bool transparent = false;  ///< The picture or the recording has no background.
    bool overlays = true;      ///< It shows names, counts, axes and scale bar.
    QString turntable;         ///< Recording to write; empty: none.
    bool animation = false;    ///< The recording is of the animation, not of a turn.
    QString thumbnails;        ///< Folder for a picture of each file; empty: none.
    int jobs = 0;              ///< Files read for it at the same time; 0: as many as suit.
    double seconds = 6;        ///< Length of the recording.
    bool secondsGiven = false; ///< Otherwise an animation lasts as long as it is.
    double recordedFps = 30;   ///< Frames per second of the recording.
    QSize size{1280, 800};     ///< Of the window in logical pixels, or of each picture in pixels.
    bool sizeGiven = false;    ///< Otherwise the size of the last run is preferred.
    std::optional<FileAxes::Axis> up;  ///< Of the files' axes; nothing: as their formats have it.
    QVector<SectionRequest> section;   ///< The planes that cut models.
    std::optional<CompareWay> compare; ///< The two files are held against each other, in this way.
    float fps = 60;                    ///< Frames per second while something moves.
    Companions companions = Companions::InFolder; ///< What models may name.

    /// Whether a person is at the window, whose habits are worth keeping.
    bool isPersonal() const
    {
        return screenshot.isEmpty() && turntable.isEmpty() && thumbnails.isEmpty();
    }
};

/// The size of the window. That of a large picture or recording has the same shape and fits most
/// screens; what it shows is drawn larger.
QSize windowSize(const Options &options);

/// What reads files for these options.
ReaderProgram readerProgram(const Options &options);

/// Reads @p arguments, the program's name first. Needs no application object.
Options parseOptions(const QStringList &arguments);

/// The text of --help. Expects a QCoreApplication, whose name and arguments it shows.
QString optionsHelp();

/// A size written as WIDTHxHEIGHT or, where it may be @p square, as one number. Returns an invalid
/// size unless both are 16 to 16384.
QSize parseSize(const QString &text, bool square);

} // namespace host

#endif
