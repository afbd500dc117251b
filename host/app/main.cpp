// SPDX-License-Identifier: MIT
// glview: shows 3D models in views that it loads as a module at run time.
#include <cstdio>
#include <cstdlib>

#include <QCoreApplication>
#include <QFileInfo>

#include "host/app/application.h"
#include "host/app/module_loader.h"
#include "host/app/options.h"
#include "host/app/standard_input.h"
#include "host/app/thumbnails.h"
#include "host/app/viewer.h"
#include "host/capture/encoder.h"
#include "host/read/reader_process.h"

namespace {

enum ExitCode { Good = 0, Failed = 1, Unusable = 2 };

QStringList modulePaths(const host::Options &options)
{
    return options.module.isEmpty() ? host::ModuleLoader::searchPaths()
                                    : QStringList{options.module};
}

/// Tells which module would be used, without loading it.
int printVersion(const host::Options &options)
{
    QString found = host::Options::tr("not found");
    for (const QString &path : modulePaths(options)) {
        if (QFileInfo(path).isFile()) {
            found = path;
            break;
        }
    }
    const QString text = host::Options::tr("glview %1\nmodule %2\nQt %3\n");
    std::fputs(qUtf8Printable(text.arg(GLVIEW_VERSION, found, qVersion())), stdout);
    return Good;
}

int refuse(const QString &error)
{
    std::fprintf(stderr, "glview: %s\n%s\n", qUtf8Printable(error),
                 qUtf8Printable(host::Options::tr("glview --help lists the options.")));
    return Unusable;
}

/// Qt ends a program that finds no display with several lines and an abort.
void hearOfNoDisplay(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "glview: %s\n",
                     qUtf8Printable(host::Options::tr(
                         "there is no display to open a window on; start it on a desktop, or on a "
                         "virtual screen: xvfb-run -a glview ...")));
        std::fflush(stderr);
        std::_Exit(Unusable);
    }
    if (!QByteArray(context.category).startsWith("qt.qpa"))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

int complain(const QString &what, ExitCode code)
{
    std::fprintf(stderr, "glview: %s\n", qUtf8Printable(what));
    return code;
}

int runViewer(int &argc, char **argv, host::Options options)
{
    const host::DesktopScale asked = host::DesktopScale::take();
    qInstallMessageHandler(hearOfNoDisplay);
    host::Application application(argc, argv);
    qInstallMessageHandler(nullptr);
    application.setSizes(asked, options.isPersonal());
    const QString impossible = host::Viewer::outputFault(options);
    if (!impossible.isEmpty())
        return complain(impossible, impossible == host::Encoder::missing() ? Failed : Unusable);
    host::ModuleLoader loader;
    if (!loader.load(modulePaths(options))) {
        std::fprintf(
            stderr, "glview: %s\n%s\n",
            qUtf8Printable(host::Options::tr("cannot load the module of its views; tried")),
            qUtf8Printable(loader.error()));
        return Unusable;
    }
    if (!options.thumbnails.isEmpty())
        return host::Thumbnails(loader.factory(), options).run();
    host::StandardInput input;
    const int piped = options.files.indexOf("-");
    if (piped >= 0) {
        const QString fault = input.read();
        if (!fault.isEmpty())
            return complain(fault, Failed);
        options.files[piped] = options.piped = input.path();
    }
    host::Viewer viewer(loader, options);
    viewer.show();
    return application.exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const host::Options options = host::parseOptions(arguments);
    if (options.action == host::Options::Action::View)
        return runViewer(argc, argv, options);

    // The rest needs no display.
    const QCoreApplication application(argc, argv);
    switch (options.action) {
    case host::Options::Action::Help:
        std::fputs(qUtf8Printable(host::optionsHelp()), stdout);
        return Good;
    case host::Options::Action::Version:
        return printVersion(options);
    case host::Options::Action::Reader:
        return host::runReaderProcess();
    default:
        return refuse(options.error);
    }
}
