#include "tests/support/SimProcess.h"

#include <QDeadlineTimer>
#include <QTest>

SimProcess::SimProcess(const QString& configDir, const QStringList& args)
{
    QStringList all = args;
    if (!configDir.isEmpty())
        all = QStringList { QStringLiteral("--write-config"), configDir } + args;
    process_.start(program(), all);
    if (!process_.waitForStarted(5000))
        return;
    QDeadlineTimer deadline(10000);
    for (QString line = readLine(); !line.isEmpty(); line = readLine(int(deadline.remainingTime()))) {
        if (line == QLatin1String("ready")) {
            ready_ = true;
            break;
        }
        const int eq = line.indexOf(QLatin1Char('='));
        places_.insert(line.left(eq), line.mid(eq + 1));
    }
}

SimProcess::~SimProcess()
{
    if (process_.state() != QProcess::NotRunning)
        stop(3000);
}

QString SimProcess::program()
{
    return qEnvironmentVariable("KESTREL_BUILD_DIR") + QStringLiteral("/sim/kestrel-sim");
}

QString SimProcess::readLine(int timeoutMs)
{
    QDeadlineTimer deadline(std::max(timeoutMs, 1));
    while (!process_.canReadLine() && !deadline.hasExpired())
        if (!process_.waitForReadyRead(int(std::max<qint64>(1, deadline.remainingTime()))))
            break;
    return QString::fromLocal8Bit(process_.readLine()).trimmed();
}

QMap<QString, QString> SimProcess::status()
{
    process_.write("status\n");
    QMap<QString, QString> state;
    for (QString line = readLine(); !line.isEmpty() && line != QLatin1String("end"); line = readLine())
        state.insert(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1));
    return state;
}

QString SimProcess::waitFor(const QString& device, const QString& part, int timeoutMs)
{
    QString state;
    (void)QTest::qWaitFor(
        [&] {
            state = status(device);
            return state.contains(part);
        },
        timeoutMs);
    return state;
}

bool SimProcess::stop(int timeoutMs)
{
    if (process_.state() != QProcess::NotRunning) {
        process_.terminate(); // SIGTERM
        if (!process_.waitForFinished(timeoutMs)) {
            process_.kill();
            process_.waitForFinished(3000);
            return false;
        }
    }
    return process_.exitStatus() == QProcess::NormalExit && process_.exitCode() == 0;
}
