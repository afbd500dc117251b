// SPDX-License-Identifier: MIT
#include "host/read/process_reaper.h"

#include <algorithm>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>

namespace host {
namespace {

/// Owns the processes that were told to die.
class Reaper : public QObject {
public:
    static Reaper *instance()
    {
        static QPointer<Reaper> one;
        if (!one)
            one = new Reaper(QCoreApplication::instance());
        return one;
    }

    ~Reaper() override
    {
        constexpr qint64 most = 250; // milliseconds
        QElapsedTimer waited;
        waited.start();
        const auto dying = findChildren<QProcess *>();
        for (QProcess *process : dying) {
            process->disconnect();
            const int left = int(std::max<qint64>(0, most - waited.elapsed()));
            if (!process->waitForFinished(left) && process->state() != QProcess::NotRunning)
                process->setParent(nullptr); // its destructor would wait for half a minute
        }
    }

private:
    using QObject::QObject;
};

} // namespace

void reap(QProcess *process)
{
    process->disconnect();
    if (process->state() == QProcess::NotRunning) {
        process->setParent(nullptr);
        process->deleteLater();
        return;
    }
    process->setParent(Reaper::instance());
    QObject::connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     process, &QObject::deleteLater);
    process->kill();
}

} // namespace host
