#include "logbook/db/ServerCopyIn.h"

#include "logbook/db/DbConnection.h"

#include <libpq-fe.h>

namespace {
constexpr qsizetype SendAt = 1 << 20;
}

ServerCopyIn::ServerCopyIn(DbConnection& connection, const QString& table, const QStringList& columns)
    : c_(connection)
{
    const QByteArray sql = QStringLiteral("COPY %1 (%2) FROM STDIN")
                               .arg(table, columns.join(QStringLiteral(", ")))
                               .toLower()
                               .toUtf8();
    PGresult* r = PQexec(c_.serverHandle(), sql.constData());
    started_ = PQresultStatus(r) == PGRES_COPY_IN;
    ok_ = started_;
    if (!started_) {
        state_ = QString::fromLatin1(PQresultErrorField(r, PG_DIAG_SQLSTATE));
        message_ = QString::fromUtf8(PQerrorMessage(c_.serverHandle())).trimmed();
    }
    PQclear(r);
}

ServerCopyIn::~ServerCopyIn()
{
    if (started_ && !finished_)
        finish();
}

void ServerCopyIn::separate()
{
    if (rowStarted_)
        data_ += '\t';
    rowStarted_ = true;
}

void ServerCopyIn::addNull()
{
    separate();
    data_ += "\\N";
}

void ServerCopyIn::add(const QByteArray& text)
{
    separate();
    for (const char ch : text) {
        switch (ch) {
        case '\\':
            data_ += "\\\\";
            break;
        case '\t':
            data_ += "\\t";
            break;
        case '\n':
            data_ += "\\n";
            break;
        case '\r':
            data_ += "\\r";
            break;
        default:
            data_ += ch;
        }
    }
}

void ServerCopyIn::endRow()
{
    data_ += '\n';
    rowStarted_ = false;
    if (data_.size() >= SendAt)
        send();
}

void ServerCopyIn::send()
{
    if (ok_ && !data_.isEmpty())
        ok_ = PQputCopyData(c_.serverHandle(), data_.constData(), int(data_.size())) == 1;
    data_.clear();
}

bool ServerCopyIn::finish(DbError* error)
{
    pg_conn* conn = c_.serverHandle();
    send();
    finished_ = true;
    PGresult* r = nullptr;
    if (started_) {
        // A COPY that went wrong on this side is ended with a reason, so the server voids it.
        ok_ = PQputCopyEnd(conn, ok_ ? nullptr : "the rows could not be sent") == 1 && ok_;
        r = PQgetResult(conn);
        ok_ = ok_ && PQresultStatus(r) == PGRES_COMMAND_OK;
        if (!ok_) {
            state_ = QString::fromLatin1(PQresultErrorField(r, PG_DIAG_SQLSTATE));
            message_ = QString::fromUtf8(PQerrorMessage(conn)).trimmed();
        }
        PQclear(r);
    }
    if (!ok_ && error)
        *error = DbConnection::serverError(state_, message_, QString());
    while ((r = PQgetResult(conn)))
        PQclear(r);
    return ok_;
}
