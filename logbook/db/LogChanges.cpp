#include "logbook/db/LogChanges.h"

#include "logbook/db/DatabaseServer.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"

#include <QSocketNotifier>
#include <QUrl>

#include <libpq-fe.h>

LogChanges::LogChanges(QObject* parent)
    : QObject(parent)
{
    retry_.setSingleShot(true);
    deadline_.setSingleShot(true);
    connect(&retry_, &QTimer::timeout, this, &LogChanges::connectNow);
    connect(
        &deadline_, &QTimer::timeout, this, [this] { lost(QStringLiteral("no answer to the connection")); });
}

LogChanges::~LogChanges()
{
    drop();
}

void LogChanges::watch(const QString& connection)
{
    stop();
    if (!DbConnection::isServer(connection))
        return;
    connection_ = connection;
    connectNow();
}

void LogChanges::stop()
{
    retry_.stop();
    drop();
    connection_.clear();
    heardBefore_ = false;
    retryMs_ = FirstRetryMs;
}

void LogChanges::drop()
{
    deadline_.stop();
    retireNotifier();
    if (conn_)
        PQfinish(conn_);
    conn_ = nullptr;
    connecting_ = false;
    listening_ = false;
}

void LogChanges::connectNow()
{
    drop();
    const QUrl url(connection_);
    const QByteArray host = url.host().toUtf8();
    const QByteArray port = QByteArray::number(url.port(5432));
    const QByteArray user = url.userName().toUtf8();
    const QByteArray database = url.path().mid(1).toUtf8();
    // Keepalives notice a server machine that vanished without closing the connection.
    const char* keys[] = { "host", "port", "user", "dbname", "application_name", "keepalives_idle",
        "keepalives_interval", "keepalives_count", nullptr };
    const char* values[] = { host.isEmpty() ? nullptr : host.constData(), port.constData(),
        user.isEmpty() ? nullptr : user.constData(), database.constData(), "Kestrel changes", "10", "2", "3",
        nullptr };
    conn_ = PQconnectStartParams(keys, values, 0);
    if (!conn_ || PQstatus(conn_) == CONNECTION_BAD) {
        lost(conn_ ? QString::fromUtf8(PQerrorMessage(conn_)) : QStringLiteral("out of memory"));
        return;
    }
    connecting_ = true;
    deadline_.start(ConnectTimeoutMs);
    awaitSocket(true);
}

void LogChanges::awaitSocket(bool forWriting)
{
    // The socket may change between attempts (several addresses of a host), so a notifier each step.
    retireNotifier();
    notifier_ = std::make_unique<QSocketNotifier>(
        PQsocket(conn_), forWriting ? QSocketNotifier::Write : QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this,
        connecting_ ? &LogChanges::pollConnect : &LogChanges::readSocket);
}

void LogChanges::retireNotifier()
{
    // Often called from the notifier's own signal: it goes once that has returned.
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
}

void LogChanges::pollConnect()
{
    switch (PQconnectPoll(conn_)) {
    case PGRES_POLLING_READING:
        awaitSocket(false);
        return;
    case PGRES_POLLING_WRITING:
        awaitSocket(true);
        return;
    case PGRES_POLLING_FAILED:
        lost(QString::fromUtf8(PQerrorMessage(conn_)).trimmed());
        return;
    default:
        break;
    }
    connecting_ = false;
    deadline_.stop();
    const QByteArray listen = QByteArray("LISTEN ") + DatabaseServer::ChangeChannel;
    if (!PQsendQuery(conn_, listen.constData())) {
        lost(QString::fromUtf8(PQerrorMessage(conn_)).trimmed());
        return;
    }
    awaitSocket(false);
}

void LogChanges::readSocket()
{
    if (!PQconsumeInput(conn_) || PQstatus(conn_) != CONNECTION_OK) {
        lost(QString::fromUtf8(PQerrorMessage(conn_)).trimmed());
        return;
    }
    while (!PQisBusy(conn_)) {
        PGresult* r = PQgetResult(conn_);
        if (!r)
            break;
        const ExecStatusType status = PQresultStatus(r);
        const QString message = QString::fromUtf8(PQresultErrorMessage(r)).trimmed();
        PQclear(r);
        if (status != PGRES_COMMAND_OK) {
            lost(message);
            return;
        }
        listening_ = true;
        retryMs_ = FirstRetryMs;
        qCInfo(lcLogbook) << "hearing the changes of" << DbConnection::serverName(connection_);
        const bool again = heardBefore_;
        heardBefore_ = true;
        if (again)
            emit resync();
        if (!conn_)
            return; // a listener stopped this
    }
    while (conn_) {
        PGnotify* n = PQnotifies(conn_);
        if (!n)
            break;
        const QByteArrayList parts = QByteArray(n->extra).split(' ');
        PQfreemem(n);
        bool ok = false;
        const qint64 id = parts.value(1).toLongLong(&ok);
        if (ok)
            emit changed(QString::fromLatin1(parts[0]), id);
    }
}

void LogChanges::lost(const QString& why)
{
    if (listening_)
        qCWarning(lcLogbook) << "lost the changes of" << DbConnection::serverName(connection_) << why;
    drop();
    if (connection_.isEmpty())
        return;
    retry_.start(retryMs_);
    retryMs_ = qMin(retryMs_ * 2, MaxRetryMs);
}
