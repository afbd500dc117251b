// SPDX-License-Identifier: MIT
#include "host/view/options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

namespace host {

namespace {

QString text(const char *s)
{
    return QCoreApplication::translate("options", s);
}

/// The options, named once: for parsing and for the text of --help.
class Parser : public QCommandLineParser {
public:
    const QCommandLineOption module{"module", text("Load the views' module from <path>."), "path"};
    const QCommandLineOption size{"size", text("Open a window of <WxH> pixels."), "WxH"};
    const QCommandLineOption screenshot{
        "screenshot", text("Write a picture of the first frame to <file> and end."), "file"};
    const QCommandLineOption fps{"fps", text("Draw at most <rate> frames per second."), "rate"};
    QCommandLineOption readModel{"read-model", text("Read <file> for another process."), "file"};
    const QCommandLineOption help = addHelpOption();
    const QCommandLineOption version = addVersionOption();

    Parser()
    {
        readModel.setFlags(QCommandLineOption::HiddenFromHelp);
        setApplicationDescription(text("Shows 3D models. In the window, F1 lists the controls."));
        addPositionalArgument("file", text("The model to show."), "[file]");
        addOptions({module, size, screenshot, fps, readModel});
    }
};

Options refuse(const QString &error)
{
    Options o;
    o.action = Options::Action::Refuse;
    o.error = error;
    return o;
}

} // namespace

QSize parseSize(const QString &size)
{
    static const QRegularExpression form("^(\\d{1,5})[xX](\\d{1,5})$");
    const QRegularExpressionMatch match = form.match(size);
    const QSize s(match.captured(1).toInt(), match.captured(2).toInt());
    const auto usable = [](int n) { return n >= 16 && n <= 16384; };
    return match.hasMatch() && usable(s.width()) && usable(s.height()) ? s : QSize();
}

Options parseOptions(const QStringList &arguments)
{
    Parser parser;
    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    Options o;
    o.files = parser.positionalArguments();
    o.module = parser.value(parser.module);
    o.screenshot = parser.value(parser.screenshot);
    o.readModel = parser.value(parser.readModel);
    if (parser.isSet(parser.help))
        o.action = Options::Action::Help;
    else if (parser.isSet(parser.version))
        o.action = Options::Action::Version;
    else if (parser.isSet(parser.readModel))
        o.action = Options::Action::ReadModel;
    if (parser.isSet(parser.size)) {
        o.size = parseSize(parser.value(parser.size));
        o.sizeGiven = true;
        if (!o.size.isValid())
            return refuse(text("--size takes WIDTHxHEIGHT with 16 to 16384 pixels each, not \"%1\"")
                              .arg(parser.value(parser.size)));
    }
    if (parser.isSet(parser.fps)) {
        bool number = false;
        o.fps = parser.value(parser.fps).toFloat(&number);
        if (!number || !(o.fps >= 1 && o.fps <= 1000))
            return refuse(text("--fps takes a number from 1 to 1000, not \"%1\"")
                              .arg(parser.value(parser.fps)));
    }
    if (parser.isSet(parser.screenshot) && o.files.isEmpty())
        return refuse(text("--screenshot needs a file to show"));
    return o;
}

QString optionsHelp()
{
    return Parser().helpText();
}

} // namespace host
