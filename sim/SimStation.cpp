#include "sim/SimStation.h"

#include "sim/StationFiles.h"
#include "sim/devices/SimGps.h"
#include "sim/devices/SimRig.h"
#include "sim/devices/SimRotator.h"
#include "sim/devices/SimSensorBox.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int kTickMs = 100;

void say(const QString& text)
{
    std::fputs(qPrintable(text + QLatin1Char('\n')), stdout);
    std::fflush(stdout);
}

void complain(const QString& text)
{
    std::fputs(qPrintable(QStringLiteral("kestrel-sim: ") + text + QLatin1Char('\n')), stderr);
}

} // namespace

SimStation::SimStation(const SimOptions& options, QObject* parent)
    : QObject(parent)
    , options_(options)
    , cluster_(options.spotIntervalMs,
          options.clusterStyle == u"telnet" ? SimClusterSession::Style::Telnet
                                            : SimClusterSession::Style::Plain)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    channels_.push_back(std::make_unique<PtyChannel>(QStringLiteral("rig"), std::make_unique<SimRig>()));
    channels_.push_back(std::make_unique<PtyChannel>(QStringLiteral("rig2"), std::make_unique<SimRig>()));
    channels_.push_back(std::make_unique<PtyChannel>(
        QStringLiteral("rotator"), std::make_unique<SimRotator>(options.rotatorRate)));
    channels_.push_back(
        std::make_unique<PtyChannel>(QStringLiteral("sensor"), std::make_unique<SimSensorBox>()));
    channels_.push_back(std::make_unique<PtyChannel>(QStringLiteral("gps"),
        std::make_unique<SimGps>(options.latitude, options.longitude, now, options.gpsTalker,
            SimGps::profileNamed(options.gpsProfile).value_or(SimGps::Profile::Plain))));

    connect(&signals_, &SignalPipe::stopRequested, this, &SimStation::stop);
    connect(&signals_, &SignalPipe::statusRequested, this, &SimStation::printStatus);
    clock_.setInterval(kTickMs);
    connect(&clock_, &QTimer::timeout, this, &SimStation::tick);
}

PtyChannel* SimStation::channel(const QString& name) const
{
    for (const auto& c : channels_)
        if (c->name() == name)
            return c.get();
    return nullptr;
}

bool SimStation::start()
{
    for (const auto& c : channels_) {
        if (!c->isOpen()) {
            complain(QStringLiteral("%1: %2").arg(c->name(), c->errorText()));
            return false;
        }
    }
    if (!cluster_.listen(options_.clusterPort)) {
        complain(QStringLiteral("cluster: cannot listen on 127.0.0.1:%1: %2")
                     .arg(options_.clusterPort)
                     .arg(cluster_.errorText()));
        return false;
    }
    for (const auto& c : channels_)
        say(c->name() + QLatin1Char('=') + c->path());
    say(QStringLiteral("cluster=127.0.0.1:%1").arg(cluster_.port()));

    if (!options_.configDir.isEmpty()) {
        const SimPlaces places { channel(QStringLiteral("rig"))->path(),
            channel(QStringLiteral("rig2"))->path(), channel(QStringLiteral("rotator"))->path(),
            channel(QStringLiteral("sensor"))->path(), channel(QStringLiteral("gps"))->path(),
            cluster_.port() };
        const QString problem = writeStationFiles(options_.configDir, places);
        if (!problem.isEmpty()) {
            complain(problem);
            return false;
        }
        say(QStringLiteral("config=") + QDir(options_.configDir).absolutePath());
    }

    stdin_ = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(stdin_.get(), &QSocketNotifier::activated, this, &SimStation::onStdin);
    elapsed_.start();
    clock_.start();
    say(QStringLiteral("ready"));
    return true;
}

void SimStation::tick()
{
    const qint64 now = elapsed_.elapsed();
    const int ms = int(now - lastMs_);
    lastMs_ = now;
    for (const auto& c : channels_)
        c->tick(ms);
}

void SimStation::onStdin()
{
    char buf[256];
    const ssize_t n = ::read(STDIN_FILENO, buf, sizeof buf);
    if (n <= 0) {
        stdin_->setEnabled(false); // end of input (or /dev/null): signals still work
        return;
    }
    stdinLine_.append(buf, n);
    for (int end = stdinLine_.indexOf('\n'); end >= 0; end = stdinLine_.indexOf('\n')) {
        const QByteArray command = stdinLine_.left(end).trimmed();
        stdinLine_.remove(0, end + 1);
        if (command == "status")
            printStatus();
        else if (command == "quit" || command == "stop")
            stop();
        else if (!command.isEmpty())
            complain(
                QStringLiteral("unknown command \"%1\" (status, quit)").arg(QString::fromLatin1(command)));
    }
}

void SimStation::printStatus()
{
    QString block;
    for (const auto& c : channels_)
        block += c->stateLine() + QLatin1Char('\n');
    block += cluster_.stateLine() + QStringLiteral("\nend");
    say(block);
}

void SimStation::stop()
{
    if (stopped_)
        return;
    stopped_ = true;
    clock_.stop();
    stdin_.reset();
    cluster_.close();
    for (const auto& c : channels_)
        c->close();
    QCoreApplication::quit();
}
