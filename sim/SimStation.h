#pragma once
// kestrel-sim's whole station: the serial devices on their pseudo-terminals, the cluster node,
// the clock that lets them move, and the ways to ask for their state or to stop.
#include "sim/ClusterServer.h"
#include "sim/PtyChannel.h"
#include "sim/SignalPipe.h"
#include "sim/SimOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

class SimStation : public QObject {
    Q_OBJECT
public:
    explicit SimStation(const SimOptions& options, QObject* parent = nullptr);

    // Opens everything, prints "name=place" lines and "ready". False after printing why not.
    bool start();
    void printStatus();
    void stop();

private:
    void tick();
    void onStdin();
    PtyChannel* channel(const QString& name) const;

    SimOptions options_;
    std::vector<std::unique_ptr<PtyChannel>> channels_;
    ClusterServer cluster_;
    SignalPipe signals_;
    QTimer clock_;
    QElapsedTimer elapsed_;
    qint64 lastMs_ = 0;
    std::unique_ptr<QSocketNotifier> stdin_;
    QByteArray stdinLine_;
    bool stopped_ = false;
};
