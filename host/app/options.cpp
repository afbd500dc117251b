// SPDX-License-Identifier: MIT
#include "host/app/options.h"

#include <algorithm>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include "host/read/reader_child.h"

namespace host {

namespace {

constexpr QSize thumbnailSize(256, 256); // pixels, where none is asked for

/// The options, named once: for parsing and for the text of --help.
class Parser : public QCommandLineParser {
public:
    const QCommandLineOption module{"module", Options::tr("Load the views' module from <path>."),
                                    "path"};
    const QCommandLineOption size{
        "size", Options::tr("Open a window, or make a picture, of <WxH> pixels."), "WxH"};
    const QCommandLineOption fps{
        "fps", Options::tr("Draw at most, or record, <rate> frames per second."), "rate"};
    const QCommandLineOption watch{"watch",
                                   Options::tr("Read files again when they change on disk.")};
    const QCommandLineOption up{"up", Options::tr("Let this axis of the models' files point up."),
                                "x|y|z"};
    const QCommandLineOption section{
        "section",
        Options::tr("Cut models across an axis: x, y or z, :30% of the way or :12.5 on it; -x cuts "
                    "away what is below. Up to three."),
        "axis"};
    const QCommandLineOption compare{
        "compare",
        Options::tr("Hold two models against each other: beside, divider or difference."), "how"};
    const QCommandLineOption screenshot{
        "screenshot", Options::tr("Write a picture of what is shown to <file> and end."), "file"};
    const QCommandLineOption turntable{
        "turntable",
        Options::tr("Record one turn to <file> and end: .mp4, .gif, or without a suffix a folder."),
        "file"};
    const QCommandLineOption seconds{
        "seconds", Options::tr("Let the recording last <n> seconds, 0.1 to 600."), "n"};
    const QCommandLineOption animation{
        "animation", Options::tr("Record the model's animation in place of a turn.")};
    const QCommandLineOption thumbnails{
        "thumbnails",
        Options::tr("Write a picture of each file, and an index.html, to <folder> and end."),
        "folder"};
    const QCommandLineOption jobs{
        "jobs", Options::tr("Read <n> of the files at the same time, 1 to 256."), "n"};
    const QCommandLineOption transparent{
        "transparent", Options::tr("Leave the background out of the picture or the recording.")};
    const QCommandLineOption noOverlays{
        "no-overlays", Options::tr("Leave names, sizes, axes and scale bar out of it.")};
    const QCommandLineOption companions{
        "companions", Options::tr("Let models read files <where>: in their folder, or anywhere."),
        "where"};
    const QCommandLineOption help{{"h", "help"}, Options::tr("List the options.")};
    const QCommandLineOption version{{"v", "version"},
                                     Options::tr("Name the program, its module and Qt's version.")};
    const QCommandLineOption reader{"reader", {}}; ///< In no list: for ourselves.

    struct Group {
        QString title;
        QList<QCommandLineOption> options;
    };
    const QList<Group> groups{
        {Options::tr("Window"), {size, fps, up, section, compare, watch, module}},
        {Options::tr("Files"), {companions}},
        {Options::tr("Pictures and recordings"),
         {screenshot, turntable, seconds, animation, thumbnails, jobs, transparent, noOverlays}},
        {Options::tr("Help"), {help, version}}};

    Parser()
    {
        setSingleDashWordOptionMode(ParseAsLongOptions);
        for (const Group &group : groups)
            addOptions(group.options);
        addOption(reader);
    }
};

/// As a person types it: all names, then the value.
QString usage(const QCommandLineOption &option)
{
    QStringList names;
    for (const QString &name : option.names())
        names << (name.size() == 1 ? "-" : "--") + name;
    const QString value = option.valueName();
    return names.join(", ") + (value.isEmpty() ? QString() : " <" + value + ">");
}

Options refuse(const QString &error)
{
    Options o;
    o.action = Options::Action::Refuse;
    o.error = error;
    return o;
}

/// What is wrong with the options that the parser does not know.
QString unknownOptions(const Parser &parser, const QStringList &arguments)
{
    const QString name = parser.unknownOptionNames().value(0);
    if (name.isEmpty())
        return parser.errorText();
    const int at = arguments.indexOf(
        QRegularExpression("-{1,2}" + QRegularExpression::escape(name) + "(=.*)?"));
    return Options::tr(
               "there is no option %1; a file whose name begins with a dash goes after \"--\"")
        .arg(arguments.value(at, "--" + name));
}

/// What makes sense by itself but not together.
Options checked(const Options &o)
{
    const bool screenshot = !o.screenshot.isEmpty(), turntable = !o.turntable.isEmpty();
    const bool thumbnails = !o.thumbnails.isEmpty();
    if (int(screenshot) + int(turntable) + int(thumbnails) > 1)
        return refuse(Options::tr("--screenshot, --turntable and --thumbnails go one at a time"));
    if (o.files.isEmpty() && thumbnails)
        return refuse(Options::tr("--thumbnails needs files to show"));
    if (thumbnails && o.files.contains("-"))
        return refuse(Options::tr("--thumbnails takes files, not standard input (\"-\")"));
    if (thumbnails && o.compare)
        return refuse(Options::tr("--compare does not go with --thumbnails"));
    if (o.jobs > 0 && !thumbnails)
        return refuse(Options::tr("--jobs goes with --thumbnails"));
    if (o.files.isEmpty() && (screenshot || turntable))
        return refuse(screenshot ? Options::tr("--screenshot needs a file to show")
                                 : Options::tr("--turntable needs a file to show"));
    if (o.compare && o.files.size() != 2)
        return refuse(Options::tr("--compare needs two files"));
    if (o.transparent && o.isPersonal())
        return refuse(
            Options::tr("--transparent goes with --screenshot, --turntable or --thumbnails"));
    if (!o.overlays && !screenshot && !turntable)
        return refuse(Options::tr("--no-overlays goes with --screenshot or --turntable"));
    if (o.animation && !turntable)
        return refuse(Options::tr("--animation goes with --turntable"));
    if (o.secondsGiven && !turntable)
        return refuse(Options::tr("--seconds goes with --turntable"));
    if (o.watch && !o.isPersonal())
        return refuse(Options::tr("--watch goes with a window, not with a picture or a recording"));
    if (o.files.count("-") > 1)
        return refuse(Options::tr("standard input (\"-\") can be read only once"));
    return o;
}

} // namespace

QSize parseSize(const QString &text, bool square)
{
    static const QRegularExpression form("^(\\d{1,5})[xX](\\d{1,5})$");
    const QString size =
        square && !text.contains('x', Qt::CaseInsensitive) ? text + 'x' + text : text;
    const QRegularExpressionMatch match = form.match(size);
    const QSize s(match.captured(1).toInt(), match.captured(2).toInt());
    const auto usable = [](int n) { return n >= 16 && n <= 16384; };
    return match.hasMatch() && usable(s.width()) && usable(s.height()) ? s : QSize();
}

Options parseOptions(const QStringList &arguments)
{
    Parser parser;
    if (!parser.parse(arguments))
        return refuse(unknownOptions(parser, arguments));
    Options o;
    for (const QString &file : parser.positionalArguments())
        o.files << (file.startsWith('-') && file != "-" ? "./" + file : file);
    o.watch = parser.isSet(parser.watch);
    o.module = parser.value(parser.module);
    o.screenshot = parser.value(parser.screenshot);
    o.turntable = parser.value(parser.turntable);
    o.thumbnails = parser.value(parser.thumbnails);
    if (!o.thumbnails.isEmpty())
        o.size = thumbnailSize;
    o.transparent = parser.isSet(parser.transparent);
    o.animation = parser.isSet(parser.animation);
    o.overlays = !parser.isSet(parser.noOverlays);
    if (parser.isSet(parser.help))
        o.action = Options::Action::Help;
    else if (parser.isSet(parser.version))
        o.action = Options::Action::Version;
    else if (parser.isSet(parser.reader))
        o.action = Options::Action::Reader;
    if (parser.isSet(parser.size)) {
        o.size = parseSize(parser.value(parser.size), !o.thumbnails.isEmpty());
        o.sizeGiven = true;
        if (!o.size.isValid())
            return refuse(
                Options::tr("--size takes WIDTHxHEIGHT with 16 to 16384 pixels each, not \"%1\"")
                    .arg(parser.value(parser.size)));
    }
    if (parser.isSet(parser.up)) {
        const int axis = QStringList{"x", "y", "z"}.indexOf(parser.value(parser.up).toLower());
        if (axis < 0)
            return refuse(
                Options::tr("--up takes x, y or z, not \"%1\"").arg(parser.value(parser.up)));
        o.up = FileAxes::Axis(axis);
    }
    for (const QString &text : parser.values(parser.section)) {
        const std::optional<SectionRequest> plane = parseSection(text);
        if (!plane)
            return refuse(Options::tr("--section takes x, y or z, or such as -x:30% or z:12.5, not "
                                      "\"%1\"")
                              .arg(text));
        o.section << *plane;
    }
    if (o.section.size() > int(Section::most))
        return refuse(Options::tr("--section goes three times at most"));
    if (parser.isSet(parser.compare)) {
        o.compare = compareWay(parser.value(parser.compare));
        if (!o.compare)
            return refuse(Options::tr("--compare takes beside, divider or difference, not \"%1\"")
                              .arg(parser.value(parser.compare)));
    }
    if (parser.isSet(parser.companions)) {
        const QString where = parser.value(parser.companions);
        if (where != "anywhere" && where != "folder")
            return refuse(Options::tr("--companions takes \"folder\" or \"anywhere\", not \"%1\"")
                              .arg(where));
        o.companions = where == "anywhere" ? Companions::Anywhere : Companions::InFolder;
    }
    if (parser.isSet(parser.fps)) {
        bool number = false;
        o.fps = parser.value(parser.fps).toFloat(&number);
        o.recordedFps = double(o.fps);
        if (!number || !(o.fps >= 1 && o.fps <= 1000))
            return refuse(Options::tr("--fps takes a number from 1 to 1000, not \"%1\"")
                              .arg(parser.value(parser.fps)));
    }
    if (parser.isSet(parser.seconds)) {
        bool number = false;
        o.seconds = parser.value(parser.seconds).toDouble(&number);
        o.secondsGiven = true;
        if (!number || !(o.seconds >= 0.1 && o.seconds <= 600))
            return refuse(Options::tr("--seconds takes a number from 0.1 to 600, not \"%1\"")
                              .arg(parser.value(parser.seconds)));
    }
    if (parser.isSet(parser.jobs)) {
        bool number = false;
        o.jobs = parser.value(parser.jobs).toInt(&number);
        if (!number || o.jobs < 1 || o.jobs > 256)
            return refuse(Options::tr("--jobs takes a number from 1 to 256, not \"%1\"")
                              .arg(parser.value(parser.jobs)));
    }
    return checked(o);
}

ReaderProgram readerProgram(const Options &options)
{
    ReaderProgram program;
    program.companions = options.companions;
    return program;
}

QSize windowSize(const Options &o)
{
    if (o.isPersonal())
        return o.size;
    constexpr QSize common(1600, 1200);
    constexpr int narrowest = 64; // the views show nothing in a window that is much narrower
    const int side = std::min(o.size.width(), o.size.height());
    const double factor = std::min(
        {1.0, double(common.width()) / o.size.width(), double(common.height()) / o.size.height()});
    return (QSizeF(o.size) * std::max(factor, std::min(1.0, double(narrowest) / side))).toSize();
}

QString optionsHelp()
{
    constexpr int column = 22;
    QString help =
        Options::tr("Usage: %1 [option...] [file or folder...]\n"
                    "Shows 3D models and plots tables; several files or a folder, side by "
                    "side.\nThe file - is standard input; names that begin with a dash go after "
                    "--.\nIn the window, F1 lists the controls.\n")
            .arg(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    for (const Parser::Group &group : Parser().groups) {
        help += '\n' + group.title + ":\n";
        for (const QCommandLineOption &option : group.options)
            help += "  " + usage(option).leftJustified(column) + ' ' + option.description() + '\n';
    }
    return help;
}

} // namespace host
