#pragma once
// The changes other positions make to a club's server log, as they are committed: a
// connection of its own LISTENs on DatabaseServer::ChangeChannel and reports each changed row.
// When the server goes away it connects again by itself (waiting longer each time, at most
// MaxRetryMs) and then asks for a resync, since what changed meanwhile was not heard. The
// connection is driven by socket notifiers, so a slow or absent server never blocks the
// window. On a log file there is nobody else to hear: it stays silent.
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

struct pg_conn;
class QSocketNotifier;

class LogChanges : public QObject {
    Q_OBJECT
public:
    static constexpr int FirstRetryMs = 250;
    static constexpr int MaxRetryMs = 5000;
    static constexpr int ConnectTimeoutMs = 5000;

    explicit LogChanges(QObject* parent = nullptr);
    ~LogChanges() override;

    // Starts listening on the log a connection text names (a file: nothing); replaces the last.
    void watch(const QString& connection);
    void stop();
    // Whether the LISTEN is in place on the server now.
    bool isListening() const { return listening_; }

signals:
    // A row of logtab was changed; op is "INSERT", "UPDATE" or "DELETE".
    void changed(const QString& op, qint64 id);
    // Connected again after the server was gone: read again what is shown.
    void resync();

private:
    void connectNow();
    void pollConnect();
    void awaitSocket(bool forWriting);
    void readSocket();
    void retireNotifier();
    void lost(const QString& why);
    void drop();

    QString connection_;
    pg_conn* conn_ = nullptr;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer retry_;
    QTimer deadline_;
    int retryMs_ = FirstRetryMs;
    bool connecting_ = false;
    bool listening_ = false;
    bool heardBefore_ = false; // a LISTEN was in place once: a new one needs a resync
};
