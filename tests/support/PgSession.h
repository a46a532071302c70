#pragma once
// One QPSQL connection to a "postgresql://USER@HOST:PORT/DATABASE" uri; the password comes from
// libpq (PGPASSWORD or PGPASSFILE) unless given.
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QVariant>

#include <atomic>

class PgSession {
public:
    explicit PgSession(const QString& uri, const QString& password = QString())
        : name_(QStringLiteral("pg-session-%1").arg(++count()))
    {
        if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL"))) {
            error_ = QStringLiteral("Qt's PostgreSQL driver QPSQL is missing: install libqt6sql6-psql");
            return;
        }
        const QUrl url(uri);
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name_);
        db.setHostName(url.host());
        db.setPort(url.port(5432));
        db.setUserName(url.userName());
        db.setDatabaseName(url.path().mid(1));
        if (!password.isEmpty())
            db.setPassword(password);
        db.setConnectOptions(QStringLiteral("connect_timeout=5"));
        opened_ = db.open();
        error_ = db.lastError().text();
    }
    ~PgSession()
    {
        QSqlDatabase::database(name_, false).close();
        QSqlDatabase::removeDatabase(name_);
    }
    PgSession(const PgSession&) = delete;
    PgSession& operator=(const PgSession&) = delete;

    bool opened() const { return opened_; }
    QString error() const { return error_; }

    bool exec(const QString& sql)
    {
        QSqlQuery q(QSqlDatabase::database(name_, false));
        const bool ok = q.exec(sql);
        error_ = q.lastError().text();
        return ok;
    }
    // The first column of the first row, or an invalid QVariant.
    QVariant value(const QString& sql)
    {
        QSqlQuery q(QSqlDatabase::database(name_, false));
        const bool ok = q.exec(sql) && q.next();
        error_ = q.lastError().text();
        return ok ? q.value(0) : QVariant();
    }

private:
    static std::atomic<int>& count()
    {
        static std::atomic<int> n { 0 };
        return n;
    }
    QString name_;
    bool opened_ = false;
    QString error_;
};
