#include "logbook/db/LogCopy.h"

#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogSource.h"
#include "logbook/db/LogTableWriter.h"
#include "logbook/db/LogbookLogging.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>
#include <limits>

namespace {

const char* const Tables[] = { "logtab", "PNT_Beacon", "dxccdata" };

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

DbError failure(const QString& message)
{
    return { 1, message };
}

// Fits a row to a server's column types. A text in a number column goes into AdifExtra (see
// the header); what cannot be kept at all (binary data, such a text in a table without
// AdifExtra) is an error naming the row.
bool fitForServer(LogRow& row, const QList<LogColumn>& columns, int extraAt, const QString& table,
    QStringList* moved, DbError* error)
{
    for (int i = 1; i < columns.size(); ++i) { // column 0 is the ID, an integer by its declaration
        LogCell& cell = row[std::size_t(i)];
        const LogColumn& column = columns[i];
        const QString where
            = QStringLiteral("%1, ID %2, column %3").arg(table).arg(row[0].integer).arg(column.name);
        if (cell.kind == LogCell::Blob) {
            *error = failure(
                QStringLiteral("%1 holds binary data, which the server cannot hold. Nothing was copied.")
                    .arg(where));
            return false;
        }
        const bool fits = cell.kind == LogCell::Null || column.kind == LogCell::Text
            || (column.kind == LogCell::Real && cell.kind != LogCell::Text)
            || (cell.kind == LogCell::Integer && cell.integer >= std::numeric_limits<qint32>::min()
                && cell.integer <= std::numeric_limits<qint32>::max());
        if (fits)
            continue;
        const QByteArray text = cell.kind == LogCell::Text ? cell.bytes : cell.numberText();
        if (extraAt < 0) {
            *error = failure(
                QStringLiteral("%1 holds \"%2\", which is no number the server can hold. Nothing was "
                               "copied.")
                    .arg(where, QString::fromUtf8(text)));
            return false;
        }
        LogCell& extra = row[std::size_t(extraAt)];
        QString field = adifName(column.name);
        if (extra.bytes.contains('<' + field.toUtf8() + ':') && extra.kind == LogCell::Text)
            field = QStringLiteral("APP_KESTREL_") + column.name.toUpper();
        if (text.isEmpty()) {
            moved->append(QStringLiteral("ID %1 %2 \"\" as NULL").arg(row[0].integer).arg(column.name));
        } else {
            // An ADIF field as the import keeps one: "<NAME:bytes>value", a blank between fields.
            const QByteArray adif = '<' + field.toUtf8() + ':' + QByteArray::number(text.size()) + '>' + text;
            extra.bytes
                = extra.kind == LogCell::Text && !extra.bytes.isEmpty() ? extra.bytes + ' ' + adif : adif;
            extra.kind = LogCell::Text;
            moved->append(QStringLiteral("ID %1 %2 \"%3\" as %4")
                              .arg(row[0].integer)
                              .arg(column.name, QString::fromUtf8(text), field));
        }
        cell.kind = LogCell::Null;
    }
    return true;
}

bool copyTable(
    LogSource& source, DbConnection& target, const QString& table, LogCopy::Table* out, DbError* error)
{
    QList<LogColumn> columns;
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
    for (const LogColumn& c : std::as_const(columns)) {
        if (!have.removeOne(c.name.toLower())) {
            *error = failure(QStringLiteral("The target log has no column %1 in %2.").arg(c.name, table));
            return false;
        }
    }
    // logtab was found empty in this transaction; the other tables' seed rows make way.
    if (table != QLatin1String("logtab") && !target.exec(QStringLiteral("DELETE FROM %1").arg(table))) {
        *error = target.error();
        return false;
    }
    int extraAt = -1;
    for (int i = 0; i < columns.size(); ++i) {
        if (columns[i].name == QLatin1String("AdifExtra"))
            extraAt = i;
    }
    out->name = table;
    LogTableWriter writer(target, table, columns);
    const bool fit = target.onServer();
    bool ok = source.read(
        table, columns,
        [&](LogRow& row) {
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

// An error when the target log holds contacts (a copy never merges) or they cannot be counted.
DbError holdsContacts(DbConnection& c, const QString& to)
{
    QSqlQuery q(c.database());
    if (!q.exec(c.sql(QStringLiteral("SELECT count(*) FROM logtab"))) || !q.next())
        return failure(
            QStringLiteral("The contacts of the target log cannot be counted: %1").arg(q.lastError().text()));
    if (const qint64 n = q.value(0).toLongLong(); n > 0)
        return failure(QStringLiteral("The target log %1 already holds %2 contacts; a log is copied only "
                                      "into a new or empty one, never merged. Nothing was changed.")
                           .arg(DbConnection::isServer(to) ? DbConnection::serverName(to) : to)
                           .arg(n));
    return {};
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
        if (const DbError e = c.isOpen() ? holdsContacts(c, to) : c.error())
            return e;
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
            line += QStringLiteral(
                "; %1 values no number column on the server can hold, kept in AdifExtra: %2")
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
    LogSource source(from);
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
        // No position saves a contact into the target while it is copied into (SQLite's
        // BEGIN IMMEDIATE locks out other writers by itself).
        bool ok = target.begin()
            && (!target.onServer() || target.exec(QStringLiteral("LOCK TABLE logtab IN EXCLUSIVE MODE")));
        if (!ok)
            result.error = target.error();
        else if ((result.error = holdsContacts(target, to)))
            ok = false;
        for (const char* table : Tables) {
            if (!ok)
                break;
            result.tables.append(Table());
            ok = copyTable(source, target, QString::fromLatin1(table), &result.tables.back(), &result.error);
            // New rows on the server take IDs after the copied ones.
            if (ok && target.onServer()
                && !(ok = target.exec(QStringLiteral("SELECT setval(pg_get_serial_sequence('%1', 'id'), "
                                                     "coalesce(max(id), 0) + 1, false) FROM %1")
                                          .arg(QString::fromLatin1(table).toLower()))))
                result.error = target.error();
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
