#pragma once
// A throwaway PostgreSQL server for tests and benchmarks: initdb into a temporary folder, one
// role "kestrel" with a random password (scram-sha-256 over TCP, trust on the private socket),
// listening on 127.0.0.1 on a free port only. The server refuses to run as root, so under root
// it runs as the unprivileged "postgres" account (or "nobody").
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <memory>

class PgServer {
public:
    // Owned: stopped and its folder removed when this object ends. Detached: left running with
    // its folder (a ctest fixture keeps one server for the whole run); reattach with PgServer(folder).
    enum class Lifetime { Owned, Detached };

    explicit PgServer(Lifetime lifetime = Lifetime::Owned);
    // Takes over a server a Detached PgServer left in `folder` (owned from now on).
    explicit PgServer(const QString& folder);
    ~PgServer();
    PgServer(const PgServer&) = delete;
    PgServer& operator=(const PgServer&) = delete;

    // The first start makes the cluster (initdb) and picks the port; later starts reuse both.
    bool start(QString* error = nullptr);
    // Fast shutdown (open sessions are ended, committed data kept).
    bool stop();
    bool restart();
    // SIGKILL to the postmaster and all its processes: the server machine going away.
    void kill();
    bool isRunning() const;

    int port() const { return port_; }
    QString folder() const { return folder_; }
    QString socketDir() const;
    static QString user() { return QStringLiteral("kestrel"); }
    QString password() const { return password_; }
    // The system account the server runs as; empty when it runs as this process's user.
    QString account() const { return account_; }
    QString logText() const;

    // "postgresql://kestrel@127.0.0.1:PORT/DATABASE"
    QString uri(const QString& database) const;
    // A new empty database; returns its uri, or an empty string (reason in *error).
    QString createDatabase(const QString& name, QString* error = nullptr) const;
    // "127.0.0.1:PORT:*:kestrel:PASSWORD", mode 0600; callers point PGPASSFILE at it.
    QString passFile() const;

    // Runs one statement on the database a uri names, as Qt's QPSQL driver; an empty password
    // leaves it to libpq (PGPASSWORD or PGPASSFILE).
    static bool execOn(const QString& uri, const QString& sql, QString* error = nullptr,
        const QString& password = QString());
    // The PostgreSQL programs' folder (pg_config --bindir, else /usr/lib/postgresql/*/bin).
    static QString binDir();

private:
    bool initCluster(QString* error);
    bool launch(QString* error);
    bool waitReady(qint64 postmasterPid, QString* error);
    qint64 postmasterPid() const;
    // Runs a PostgreSQL program as the server's account; its output goes to *output.
    bool runTool(const QString& tool, const QStringList& args, QString* output, int timeoutMs = 60000);
    QStringList asAccount(const QString& program, const QStringList& args, QString* executable) const;
    bool giveToAccount(const QString& path) const;
    void readPassFile();

    Lifetime lifetime_;
    std::unique_ptr<QTemporaryDir> tmp_;
    QString folder_;
    QString bin_;
    QString account_;
    QString password_;
    int port_ = 0;
    std::unique_ptr<QProcess> postmaster_;
};
