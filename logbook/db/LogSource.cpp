#include "logbook/db/LogSource.h"

#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"

#include <QFileInfo>
#include <QLocale>
#include <QSqlError>
#include <QSqlQuery>

#include <libpq-fe.h>
#include <sqlite3.h>

QByteArray LogCell::numberText() const
{
    return kind == Integer ? QByteArray::number(integer)
                           : QByteArray::number(real, 'g', QLocale::FloatingPointShortest);
}

namespace {
DbError failure(const QString& message)
{
    return { 1, message };
}
} // namespace

LogSource::LogSource(const QString& connection)
    : text_(connection)
{
}

LogSource::~LogSource()
{
    if (file_) {
        sqlite3_exec(file_, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(file_);
    }
    if (server_ && server_->isOpen())
        server_->exec(QStringLiteral("COMMIT"));
}

DbError LogSource::open()
{
    if (!DbConnection::isServer(text_)) {
        if (!QFileInfo::exists(text_))
            return { DbErrorNumber::NoFile,
                QStringLiteral("The database file does not exist: %1").arg(text_) };
        if (const DbError e = DatabaseFile::check(text_); e && e.number != SQLITE_READONLY)
            return e;
    }
    if (const DbError e = DatabaseFile::identify(text_))
        return e;
    int version = -1;
    if (DbConnection::isServer(text_)) {
        server_ = std::make_unique<DbConnection>(text_);
        if (!server_->isOpen())
            return server_->error();
        version = SchemaMigration::version(*server_);
        if (!server_->exec(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY")))
            return server_->error();
    } else {
        if (sqlite3_open_v2(text_.toUtf8().constData(), &file_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
            return fileError();
        sqlite3_busy_timeout(file_, DbConnection::DefaultBusyTimeoutMs);
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(file_, "PRAGMA user_version", -1, &st, nullptr) == SQLITE_OK
            && sqlite3_step(st) == SQLITE_ROW)
            version = sqlite3_column_int(st, 0);
        sqlite3_finalize(st);
        if (sqlite3_exec(file_, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK)
            return fileError();
    }
    if (version != SchemaMigration::CurrentVersion)
        return failure(
            QStringLiteral("The log %1 has schema version %2, this program copies version %3. Open "
                           "it with this version of Kestrel once (it is brought up to date), then "
                           "copy it.")
                .arg(name(), QString::number(version), QString::number(SchemaMigration::CurrentVersion)));
    return {};
}

QString LogSource::name() const
{
    return server_ ? DbConnection::serverName(text_) : text_;
}

bool LogSource::columns(const QString& table, QList<LogColumn>* out, DbError* error)
{
    const QString sql = QStringLiteral("PRAGMA table_info(%1)").arg(table);
    auto add = [out](const QString& name, const QString& type) {
        const QString t = type.toUpper();
        out->append({ LogbookSchema::spelling(name),
            t == QLatin1String("INTEGER")    ? LogCell::Integer
                : t == QLatin1String("REAL") ? LogCell::Real
                                             : LogCell::Text });
    };
    if (server_) {
        QSqlQuery q(server_->database());
        if (!q.exec(server_->sql(sql))) {
            *error = failure(q.lastError().text());
            return false;
        }
        while (q.next())
            add(q.value(1).toString(), q.value(2).toString());
    } else {
        sqlite3_stmt* st = nullptr;
        const QByteArray text = sql.toUtf8();
        if (sqlite3_prepare_v2(file_, text.constData(), int(text.size()), &st, nullptr) != SQLITE_OK) {
            *error = fileError();
            return false;
        }
        while (sqlite3_step(st) == SQLITE_ROW)
            add(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1))),
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2))));
        sqlite3_finalize(st);
    }
    if (out->isEmpty())
        *error = failure(QStringLiteral("The log %1 has no table %2.").arg(name(), table));
    return !out->isEmpty();
}

bool LogSource::read(const QString& table, const QList<LogColumn>& columns,
    const std::function<bool(LogRow&)>& each, DbError* error)
{
    QStringList names;
    for (const LogColumn& c : columns)
        names << c.name;
    const QByteArray sql = QStringLiteral("SELECT %1 FROM %2 ORDER BY ID")
                               .arg(names.join(QStringLiteral(", ")), table)
                               .toUtf8();
    LogRow row(std::size_t(columns.size()));
    return server_ ? readServer(sql, row, each, error) : readFile(sql, row, each, error);
}

DbError LogSource::fileError() const
{
    return DbConnection::sqliteError(sqlite3_errcode(file_), QString::fromUtf8(sqlite3_errmsg(file_)), text_);
}

bool LogSource::readFile(
    const QByteArray& sql, LogRow& row, const std::function<bool(LogRow&)>& each, DbError* error)
{
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(file_, sql.constData(), int(sql.size()), &st, nullptr) != SQLITE_OK) {
        *error = fileError();
        return false;
    }
    int rc = SQLITE_ROW;
    bool go = true;
    while (go && (rc = sqlite3_step(st)) == SQLITE_ROW) {
        for (int i = 0; i < int(row.size()); ++i) {
            LogCell& c = row[std::size_t(i)];
            switch (sqlite3_column_type(st, i)) {
            case SQLITE_NULL:
                c.kind = LogCell::Null;
                break;
            case SQLITE_INTEGER:
                c.kind = LogCell::Integer;
                c.integer = sqlite3_column_int64(st, i);
                break;
            case SQLITE_FLOAT:
                c.kind = LogCell::Real;
                c.real = sqlite3_column_double(st, i);
                break;
            case SQLITE_TEXT:
                c.kind = LogCell::Text;
                c.bytes = QByteArray(
                    reinterpret_cast<const char*>(sqlite3_column_text(st, i)), sqlite3_column_bytes(st, i));
                break;
            default:
                c.kind = LogCell::Blob;
                c.bytes = QByteArray(
                    static_cast<const char*>(sqlite3_column_blob(st, i)), sqlite3_column_bytes(st, i));
            }
        }
        go = each(row);
    }
    const bool ok = rc == SQLITE_DONE || (!go && rc == SQLITE_ROW);
    if (!ok)
        *error = fileError();
    sqlite3_finalize(st);
    return ok && go;
}

// Row by row (single-row mode), so a large log is never held whole in memory.
bool LogSource::readServer(
    const QByteArray& sql, LogRow& row, const std::function<bool(LogRow&)>& each, DbError* error)
{
    pg_conn* conn = server_->serverHandle();
    auto fail = [&](PGresult* r) {
        *error = DbConnection::serverError(
            QString::fromLatin1(r ? PQresultErrorField(r, PG_DIAG_SQLSTATE) : nullptr),
            QString::fromUtf8(PQerrorMessage(conn)).trimmed(), text_);
    };
    if (!PQsendQuery(conn, sql.constData()) || !PQsetSingleRowMode(conn)) {
        fail(nullptr);
        return false;
    }
    bool ok = true;
    bool go = true;
    while (PGresult* r = PQgetResult(conn)) {
        const ExecStatusType status = PQresultStatus(r);
        if (status == PGRES_SINGLE_TUPLE && go) {
            for (int i = 0; i < int(row.size()); ++i) {
                LogCell& c = row[std::size_t(i)];
                const QByteArray text = QByteArray::fromRawData(PQgetvalue(r, 0, i), PQgetlength(r, 0, i));
                switch (PQftype(r, i)) {
                case 20: // int8, int2, int4
                case 21:
                case 23:
                    c.kind = LogCell::Integer;
                    c.integer = text.toLongLong();
                    break;
                case 700: // float4, float8, numeric
                case 701:
                case 1700:
                    c.kind = LogCell::Real;
                    c.real = text.toDouble();
                    break;
                default:
                    c.kind = LogCell::Text;
                    c.bytes = QByteArray(text.constData(), text.size());
                }
                if (PQgetisnull(r, 0, i))
                    c.kind = LogCell::Null;
            }
            go = each(row);
        } else if (status != PGRES_SINGLE_TUPLE && status != PGRES_TUPLES_OK && ok) {
            ok = false;
            fail(r);
        }
        PQclear(r);
    }
    return ok && go;
}
