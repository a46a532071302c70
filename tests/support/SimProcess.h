#pragma once
// kestrel-sim as the end-to-end tests run it: started from the build directory (writing its
// Kestrel.txt and Kestrel.ini into a config dir when one is given), its name=place lines read
// until "ready", asked for device state, and stopped with SIGTERM.
#include <QMap>
#include <QProcess>
#include <QStringList>

class SimProcess {
public:
    explicit SimProcess(const QString& configDir = {}, const QStringList& args = {});
    ~SimProcess();
    SimProcess(const SimProcess&) = delete;
    SimProcess& operator=(const SimProcess&) = delete;

    static QString program();

    bool ready() const { return ready_; }
    // Device name -> pseudo-terminal path, "127.0.0.1:port" for the cluster, "config" -> dir.
    const QMap<QString, QString>& places() const { return places_; }
    QString place(const QString& name) const { return places_.value(name); }
    QString errors() { return QString::fromLocal8Bit(process_.readAllStandardError()); }
    QProcess& process() { return process_; }

    // One line of standard output, trimmed; empty after the timeout.
    QString readLine(int timeoutMs = 5000);
    // The state line of every device, by device name ("status" on standard input).
    QMap<QString, QString> status();
    QString status(const QString& device) { return status().value(device); }
    // Asks until the device's state contains `part`; returns the last state seen.
    QString waitFor(const QString& device, const QString& part, int timeoutMs = 5000);
    // SIGTERM and wait; true when it ended by itself with exit code 0.
    bool stop(int timeoutMs = 5000);

private:
    QProcess process_;
    QMap<QString, QString> places_;
    bool ready_ = false;
};
