#include "logbook/db/LogCopy.h"

#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/db/ServerCopyIn.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSqlError>
#include <QSqlQuery>

#include <libpq-fe.h>
#include <sqlite3.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace {

const char* const Tables[] = { "logtab", "PNT_Beacon", "dxccdata" };

// One value as the source holds it.
struct Cell {
    enum Kind { Null, Integer, Real, Text, Blob } kind = Null;
    qint64 integer = 0;
    double real = 0;
    QByteArray bytes; // Text (UTF-8) and Blob
};
using Row = std::vector<Cell>;

struct Column {
    QString name;
    Cell::Kind kind; // Integer or Real for a number column, else Text
    int maxChars = 0; // text(250): the most a server's column holds (SQLite ignores the length)
};

// The ADIF field a number column's text is kept under in AdifExtra.
QString adifName(const QString& column)
{
    static const QList<QPair<QString, QString>> names
        = { { QStringLiteral("QRB"), QStringLiteral("DISTANCE") },
              { QStringLiteral("CQZone"), QStringLiteral("CQZ") },
              { QStringLiteral("ITUZone"), QStringLiteral("ITUZ") },
              { QStringLiteral("DxccNr"), QStringLiteral("DXCC") } };
    for (const auto& [c, n] : names) {
        if (c == column)
            return n;
    }
    return QStringLiteral("APP_KESTREL_") + column.toUpper();
}

QByteArray numberText(const Cell& cell)
{
    return cell.kind == Cell::Integer ? QByteArray::number(cell.integer)
                                      : QByteArray::number(cell.real, 'g', QLocale::FloatingPointShortest);
}

DbError failure(const QString& message)
{
    return { 1, message };
}

DbError serverResultError(pg_conn* conn, PGresult* r, const QString& connection)
{
    return DbConnection::serverError(
        QString::fromLatin1(r ? PQresultErrorField(r, PG_DIAG_SQLSTATE) : nullptr),
        QString::fromUtf8(PQerrorMessage(conn)).trimmed(), connection);
}

bool serverExec(pg_conn* conn, const QByteArray& sql, const QString& connection, DbError* error)
{
    PGresult* r = PQexec(conn, sql.constData());
    const bool ok = PQresultStatus(r) == PGRES_COMMAND_OK || PQresultStatus(r) == PGRES_TUPLES_OK;
    if (!ok)
        *error = serverResultError(conn, r, connection);
    PQclear(r);
    return ok;
}

// The log being copied, read in one snapshot and never written to: a file through a read-only
// SQLite handle, a server in a read-only transaction.
class Source {
public:
    explicit Source(const QString& text)
        : text_(text)
    {
    }
    ~Source()
    {
        if (file_) {
            sqlite3_exec(file_, "COMMIT", nullptr, nullptr, nullptr);
            sqlite3_close(file_);
        }
        if (server_ && server_->isOpen())
            PQclear(PQexec(server_->serverHandle(), "COMMIT"));
    }

    DbError open()
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
            DbError e;
            if (!serverExec(
                    server_->serverHandle(), "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY", text_, &e))
                return e;
        } else {
            if (sqlite3_open_v2(text_.toUtf8().constData(), &file_, SQLITE_OPEN_READONLY, nullptr)
                != SQLITE_OK)
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

    QString name() const { return server_ ? DbConnection::serverName(text_) : text_; }

    // The table's columns as the schema spells them, with the kind of the number columns.
    bool columns(const QString& table, QList<Column>* out, DbError* error)
    {
        const QString sql = QStringLiteral("PRAGMA table_info(%1)").arg(table);
        auto add = [out](const QString& name, const QString& type) {
            const QString t = type.toUpper();
            out->append({ LogbookSchema::spelling(name),
                t == QLatin1String("INTEGER")    ? Cell::Integer
                    : t == QLatin1String("REAL") ? Cell::Real
                                                 : Cell::Text,
                t.startsWith(QLatin1String("TEXT(")) ? t.mid(5).chopped(1).toInt() : 0 });
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

    // Every row of the table in ID order, handed to `each` (which may stop the reading by
    // returning false).
    bool read(const QString& table, const QList<Column>& columns, const std::function<bool(Row&)>& each,
        DbError* error)
    {
        QStringList names;
        for (const Column& c : columns)
            names << c.name;
        const QByteArray sql = QStringLiteral("SELECT %1 FROM %2 ORDER BY ID")
                                   .arg(names.join(QStringLiteral(", ")), table)
                                   .toUtf8();
        Row row(std::size_t(columns.size()));
        return server_ ? readServer(sql, row, each, error) : readFile(sql, row, each, error);
    }

private:
    DbError fileError() const
    {
        return DbConnection::sqliteError(
            sqlite3_errcode(file_), QString::fromUtf8(sqlite3_errmsg(file_)), text_);
    }

    bool readFile(const QByteArray& sql, Row& row, const std::function<bool(Row&)>& each, DbError* error)
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
                Cell& c = row[std::size_t(i)];
                switch (sqlite3_column_type(st, i)) {
                case SQLITE_NULL:
                    c.kind = Cell::Null;
                    break;
                case SQLITE_INTEGER:
                    c.kind = Cell::Integer;
                    c.integer = sqlite3_column_int64(st, i);
                    break;
                case SQLITE_FLOAT:
                    c.kind = Cell::Real;
                    c.real = sqlite3_column_double(st, i);
                    break;
                case SQLITE_TEXT:
                    c.kind = Cell::Text;
                    c.bytes = QByteArray(reinterpret_cast<const char*>(sqlite3_column_text(st, i)),
                        sqlite3_column_bytes(st, i));
                    break;
                default:
                    c.kind = Cell::Blob;
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
    bool readServer(const QByteArray& sql, Row& row, const std::function<bool(Row&)>& each, DbError* error)
    {
        pg_conn* conn = server_->serverHandle();
        if (!PQsendQuery(conn, sql.constData()) || !PQsetSingleRowMode(conn)) {
            *error = serverResultError(conn, nullptr, text_);
            return false;
        }
        bool ok = true;
        bool go = true;
        while (PGresult* r = PQgetResult(conn)) {
            const ExecStatusType status = PQresultStatus(r);
            if (status == PGRES_SINGLE_TUPLE && go) {
                for (int i = 0; i < int(row.size()); ++i) {
                    Cell& c = row[std::size_t(i)];
                    const QByteArray text
                        = QByteArray::fromRawData(PQgetvalue(r, 0, i), PQgetlength(r, 0, i));
                    switch (PQftype(r, i)) {
                    case 20:
                    case 21:
                    case 23: // int8, int2, int4
                        c.kind = Cell::Integer;
                        c.integer = text.toLongLong();
                        break;
                    case 700:
                    case 701:
                    case 1700: // float4, float8, numeric
                        c.kind = Cell::Real;
                        c.real = text.toDouble();
                        break;
                    default:
                        c.kind = Cell::Text;
                        c.bytes = QByteArray(text.constData(), text.size());
                    }
                    if (PQgetisnull(r, 0, i))
                        c.kind = Cell::Null;
                }
                go = each(row);
            } else if (status != PGRES_SINGLE_TUPLE && status != PGRES_TUPLES_OK && ok) {
                ok = false;
                *error = serverResultError(conn, r, text_);
            }
            PQclear(r);
        }
        return ok && go;
    }

    QString text_;
    sqlite3* file_ = nullptr;
    std::unique_ptr<DbConnection> server_;
};

// The target's statements: COPY on a server, one prepared INSERT stepped per row in a file.
class Target {
public:
    Target(DbConnection& c, const QString& table, const QList<Column>& columns)
        : c_(c)
    {
        QStringList names;
        for (const Column& col : columns)
            names << col.name;
        if (c_.onServer()) {
            copy_ = std::make_unique<ServerCopyIn>(c_, table, names);
            return;
        }
        const QByteArray sql
            = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                  .arg(table, names.join(QStringLiteral(", ")),
                      QStringList(names.size(), QStringLiteral("?")).join(QStringLiteral(", ")))
                  .toUtf8();
        if (sqlite3_prepare_v2(c_.handle(), sql.constData(), int(sql.size()), &insert_, nullptr) != SQLITE_OK)
            error_ = fileError();
    }
    ~Target() { sqlite3_finalize(insert_); }

    bool add(const Row& row)
    {
        if (copy_) {
            for (const Cell& cell : row) {
                if (cell.kind == Cell::Null)
                    copy_->addNull();
                else if (cell.kind == Cell::Text)
                    copy_->add(cell.bytes);
                else
                    copy_->add(numberText(cell));
            }
            copy_->endRow();
            return true;
        }
        if (error_)
            return false;
        for (int i = 0; i < int(row.size()); ++i) {
            const Cell& cell = row[std::size_t(i)];
            switch (cell.kind) {
            case Cell::Null:
                sqlite3_bind_null(insert_, i + 1);
                break;
            case Cell::Integer:
                sqlite3_bind_int64(insert_, i + 1, cell.integer);
                break;
            case Cell::Real:
                sqlite3_bind_double(insert_, i + 1, cell.real);
                break;
            case Cell::Text:
                sqlite3_bind_text(
                    insert_, i + 1, cell.bytes.constData(), int(cell.bytes.size()), SQLITE_TRANSIENT);
                break;
            case Cell::Blob:
                sqlite3_bind_blob(
                    insert_, i + 1, cell.bytes.constData(), int(cell.bytes.size()), SQLITE_TRANSIENT);
            }
        }
        if (sqlite3_step(insert_) != SQLITE_DONE)
            error_ = fileError();
        sqlite3_reset(insert_);
        return !error_;
    }

    bool finish(DbError* error)
    {
        if (copy_)
            return copy_->finish(error);
        if (error_)
            *error = error_;
        return !error_;
    }

private:
    DbError fileError() const
    {
        return DbConnection::sqliteError(sqlite3_extended_errcode(c_.handle()),
            QString::fromUtf8(sqlite3_errmsg(c_.handle())), c_.database().databaseName());
    }

    DbConnection& c_;
    std::unique_ptr<ServerCopyIn> copy_;
    sqlite3_stmt* insert_ = nullptr;
    DbError error_;
};

// Fits a row to a server's column types. A text in a number column goes into AdifExtra (see
// the header); what cannot be kept at all (binary data, such a text in a table without
// AdifExtra) is an error naming the row.
bool fitForServer(Row& row, const QList<Column>& columns, int extraAt, const QString& table,
    QStringList* moved, DbError* error)
{
    for (int i = 1; i < columns.size(); ++i) { // column 0 is the ID, an integer by its declaration
        Cell& cell = row[std::size_t(i)];
        const Column& column = columns[i];
        const QString where
            = QStringLiteral("%1, ID %2, column %3").arg(table).arg(row[0].integer).arg(column.name);
        if (cell.kind == Cell::Blob) {
            *error = failure(
                QStringLiteral("%1 holds binary data, which the server cannot hold. Nothing was copied.")
                    .arg(where));
            return false;
        }
        if (cell.kind == Cell::Text && column.maxChars > 0) {
            // Characters, not bytes: UTF-8 continuation bytes are not counted.
            const auto chars = std::count_if(
                cell.bytes.cbegin(), cell.bytes.cend(), [](char b) { return (uchar(b) & 0xC0) != 0x80; });
            if (chars > column.maxChars) {
                *error
                    = failure(QStringLiteral("%1 holds %2 characters; the server's column holds at most %3. "
                                             "Nothing was copied.")
                                  .arg(where)
                                  .arg(chars)
                                  .arg(column.maxChars));
                return false;
            }
        }
        const bool fits = cell.kind == Cell::Null || column.kind == Cell::Text
            || (column.kind == Cell::Real && cell.kind != Cell::Text)
            || (cell.kind == Cell::Integer && cell.integer >= std::numeric_limits<qint32>::min()
                && cell.integer <= std::numeric_limits<qint32>::max());
        if (fits)
            continue;
        const QByteArray text = cell.kind == Cell::Text ? cell.bytes : numberText(cell);
        if (extraAt < 0) {
            *error = failure(
                QStringLiteral("%1 holds \"%2\", which is no number the server can hold. Nothing was "
                               "copied.")
                    .arg(where, QString::fromUtf8(text)));
            return false;
        }
        Cell& extra = row[std::size_t(extraAt)];
        QString field = adifName(column.name);
        if (extra.bytes.contains('<' + field.toUtf8() + ':') && extra.kind == Cell::Text)
            field = QStringLiteral("APP_KESTREL_") + column.name.toUpper();
        if (text.isEmpty()) {
            moved->append(QStringLiteral("ID %1 %2 \"\" as NULL").arg(row[0].integer).arg(column.name));
        } else {
            // An ADIF field as the import keeps one: "<NAME:bytes>value", a blank between fields.
            const QByteArray adif = '<' + field.toUtf8() + ':' + QByteArray::number(text.size()) + '>' + text;
            extra.bytes
                = extra.kind == Cell::Text && !extra.bytes.isEmpty() ? extra.bytes + ' ' + adif : adif;
            extra.kind = Cell::Text;
            moved->append(QStringLiteral("ID %1 %2 \"%3\" as %4")
                              .arg(row[0].integer)
                              .arg(column.name, QString::fromUtf8(text), field));
        }
        cell.kind = Cell::Null;
    }
    return true;
}

bool copyTable(
    Source& source, DbConnection& target, const QString& table, LogCopy::Table* out, DbError* error)
{
    QList<Column> columns;
    if (!source.columns(table, &columns, error))
        return false;
    // Both logs are at the same schema version; a column set that differs is somebody's own change.
    QStringList have;
    QSqlQuery q(target.database());
    if (q.exec(target.sql(QStringLiteral("PRAGMA table_info(%1)").arg(table)))) {
        while (q.next())
            have << q.value(1).toString().toLower();
    }
    q.finish();
    for (const Column& c : std::as_const(columns)) {
        if (!have.removeOne(c.name.toLower())) {
            *error = failure(QStringLiteral("The target log has no column %1 in %2.").arg(c.name, table));
            return false;
        }
    }
    if (!target.exec(QStringLiteral("DELETE FROM %1").arg(table))) {
        *error = target.error();
        return false;
    }
    int extraAt = -1;
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].name == QLatin1String("AdifExtra"))
            extraAt = i;
    }
    out->name = table;
    Target writer(target, table, columns);
    const bool fit = target.onServer();
    bool ok = source.read(
        table, columns,
        [&](Row& row) {
            if (fit && !fitForServer(row, columns, extraAt, table, &out->moved, error))
                return false;
            ++out->rows;
            return writer.add(row);
        },
        error);
    DbError writeError;
    ok = writer.finish(&writeError) && ok;
    if (!ok && !*error)
        *error = writeError;
    return ok;
}

// Makes sure the target can take the copy: made when missing or empty, refused when it holds
// contacts or is not a Kestrel log (then left untouched).
DbError prepareTarget(const QString& to, bool* created)
{
    const bool server = DbConnection::isServer(to);
    *created = false;
    if (!server && !QFileInfo::exists(to)) {
        DbError e;
        *created = DatabaseFile::create(to, &e);
        return e;
    }
    if (!server) {
        if (const DbError e = DatabaseFile::check(to))
            return e;
    }
    const DbError ours = DatabaseFile::identify(to);
    if (ours && !(server && ours.number == DbErrorNumber::NoFile))
        return ours;
    if (!ours) {
        DbConnection c(to);
        QSqlQuery q(c.database());
        if (!c.isOpen())
            return c.error();
        if (!q.exec(c.sql(QStringLiteral("SELECT count(*) FROM logtab"))) || !q.next())
            return failure(QStringLiteral("The contacts of the target log cannot be counted: %1")
                               .arg(q.lastError().text()));
        if (const qint64 n = q.value(0).toLongLong(); n > 0)
            return failure(QStringLiteral("The target log %1 already holds %2 contacts; a log is copied only "
                                          "into a new or empty one, never merged. Nothing was changed.")
                               .arg(server ? DbConnection::serverName(to) : to)
                               .arg(n));
    }
    return DatabaseFile::prepare(to);
}

} // namespace

QStringList LogCopy::Result::report() const
{
    QStringList lines;
    for (const Table& t : tables) {
        QString line = QStringLiteral("%1: %2 rows copied").arg(t.name).arg(t.rows);
        if (!t.moved.isEmpty())
            line += QStringLiteral("; %1 values no number column on the server can hold, kept in AdifExtra: %2")
                        .arg(t.moved.size())
                        .arg(t.moved.join(QStringLiteral(", ")));
        lines << line;
    }
    return lines;
}

LogCopy::Result LogCopy::run(const QString& from, const QString& to)
{
    Result result;
    auto canonical = [](const QString& text) {
        return DbConnection::isServer(text) ? text : QFileInfo(text).canonicalFilePath();
    };
    if (canonical(from) == canonical(to) && !canonical(from).isEmpty()) {
        result.error = failure(QStringLiteral("The source and the target are the same log."));
        return result;
    }
    Source source(from);
    if ((result.error = source.open()))
        return result;
    bool created = false;
    if ((result.error = prepareTarget(to, &created)))
        return result;
    {
        DbConnection target(to);
        if (!target.isOpen()) {
            result.error = target.error();
            return result;
        }
        bool ok = target.begin();
        if (!ok)
            result.error = target.error();
        for (const char* table : Tables) {
            if (!ok)
                break;
            result.tables.append(Table());
            ok = copyTable(source, target, QString::fromLatin1(table), &result.tables.back(), &result.error);
            // New rows on the server take IDs after the copied ones.
            if (ok && target.onServer())
                ok = serverExec(target.serverHandle(),
                    QStringLiteral(
                        "SELECT setval(pg_get_serial_sequence('%1', 'id'), coalesce(max(id), 0) + 1, false) "
                        "FROM %1")
                        .arg(QString::fromLatin1(table).toLower())
                        .toUtf8(),
                    to, &result.error);
        }
        if (ok && !target.commit()) {
            ok = false;
            result.error = target.error();
        }
        if (!ok) {
            target.rollback();
            result.tables.clear();
        }
    }
    if (result.error && created) {
        // A file made for this copy goes again rather than stay behind as an empty log.
        for (const QString& suffix : { QString(), QStringLiteral("-wal"), QStringLiteral("-shm") })
            QFile::remove(to + suffix);
    }
    if (!result.error)
        qCInfo(lcLogbook) << "log copied from" << source.name() << "to"
                          << (DbConnection::isServer(to) ? DbConnection::serverName(to) : to);
    return result;
}
