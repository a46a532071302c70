#pragma once
// Saves the journal's waiting contacts (PendingContacts) on the logbook server from a thread of
// its own, so that a server that does not answer (up to libpq's 3 s connect timeout) never holds
// up the window: at once when asked, then every few seconds while the server stays away.
// The window keeps one per server log and hears the outcome through flushed().
#include "logbook/entry/PendingContacts.h"

#include <QObject>
#include <QThread>
#include <QTimer>

class PendingRetry : public QObject {
    Q_OBJECT
public:
    static constexpr int IntervalMs = 3000;

    PendingRetry(const QString& journal, const QString& connection, QObject* parent = nullptr);
    // Waits for a try under way (its save either commits or not; the journal stays consistent).
    ~PendingRetry() override;

    const QString& journal() const { return journal_; }
    // A try now, unless one is under way; one follows every IntervalMs while the server is away.
    void retryNow();
    // The next try after IntervalMs (a save has just failed: the server is away).
    void retryLater();
    // Contacts are waiting in the journal for this connection (as far as the last try knows).
    bool waiting() const { return waiting_; }
    void setWaiting() { waiting_ = true; }
    bool isTrying() const { return trying_; }

signals:
    void flushed(const PendingFlush& result);

private:
    void finish(const PendingFlush& result);

    QString journal_;
    QString connection_;
    QThread thread_;
    QObject* worker_; // lives in thread_; server connections are kept per thread
    QTimer timer_;
    bool trying_ = false;
    bool again_ = false; // asked again during a try
    bool waiting_ = false;
};
