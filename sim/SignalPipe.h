#pragma once
// Turns SIGINT, SIGTERM and SIGUSR1 into Qt signals: the handler only writes the signal's number
// into a pipe (safe in a handler), a socket notifier reads it on the event loop.
#include <QObject>
#include <QSocketNotifier>

#include <memory>

class SignalPipe : public QObject {
    Q_OBJECT
public:
    explicit SignalPipe(QObject* parent = nullptr);
    ~SignalPipe() override;

signals:
    void stopRequested();
    void statusRequested();

private:
    void onReadable();

    std::unique_ptr<QSocketNotifier> notifier_;
};
