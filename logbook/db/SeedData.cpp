#include "logbook/db/SeedData.h"

#include "logbook/db/BeaconMapTexts.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/ServerCopyIn.h"

#include <QFile>
#include <QSqlQuery>

#include <sqlite3.h>

namespace {
QString resourceText(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        qCWarning(lcLogbook) << "seed data missing:" << path;
        return QString();
    }
    return QString::fromUtf8(f.readAll());
}

// On a server the rows go in as one COPY: a statement per row would cost a round trip each.
bool copyToServer(DbConnection& c, const QByteArray& sql, const QList<QStringList>& rows, DbError* error)
{
    // "INSERT INTO t (a, b) VALUES (?, ?)" -> table t, columns a, b
    const QString head = QString::fromLatin1(sql.left(sql.indexOf(" VALUES")));
    const QString table = head.section(QLatin1Char(' '), 2, 2);
    const QString columns = head.mid(head.indexOf(QLatin1Char('(')) + 1).chopped(1);
    ServerCopyIn copy(c, table, columns.split(QStringLiteral(", ")));
    for (const QStringList& row : rows) {
        for (const QString& value : row) {
            if (value.isEmpty())
                copy.addNull();
            else
                copy.add(value.toUtf8());
        }
        copy.endRow();
    }
    return copy.finish(error);
}

// One prepared statement stepped per row: a new file's 20 000 rows go in within milliseconds.
// An empty text is bound as NULL.
bool batchInsert(DbConnection& c, const QByteArray& sql, const QList<QStringList>& rows, DbError* error)
{
    if (c.onServer())
        return copyToServer(c, sql, rows, error);
    sqlite3* h = c.handle();
    sqlite3_stmt* st = nullptr;
    int rc = sqlite3_prepare_v2(h, sql.constData(), int(sql.size()), &st, nullptr);
    for (qsizetype r = 0; rc == SQLITE_OK && r < rows.size(); ++r) {
        for (qsizetype i = 0; i < rows[r].size(); ++i) {
            const QByteArray v = rows[r][i].toUtf8();
            if (v.isEmpty())
                sqlite3_bind_null(st, int(i + 1));
            else
                sqlite3_bind_text(st, int(i + 1), v.constData(), int(v.size()), SQLITE_TRANSIENT);
        }
        rc = sqlite3_step(st) == SQLITE_DONE ? sqlite3_reset(st) : sqlite3_errcode(h);
    }
    if (rc != SQLITE_OK && error)
        *error = DbConnection::sqliteError(
            sqlite3_extended_errcode(h), QString::fromUtf8(sqlite3_errmsg(h)), c.database().databaseName());
    sqlite3_finalize(st);
    return rc == SQLITE_OK;
}
} // namespace

namespace SeedData {

QString ctyText()
{
    return resourceText(QStringLiteral(":/seed/cty.csv"));
}

QList<DxccRow> dxccRows(const QString& ctyCsv)
{
    QString problems;
    const QList<CtyEntity> entities = CtyParser::parse(ctyCsv, &problems);
    if (!problems.isEmpty())
        qCWarning(lcLogbook) << problems;
    return CtyParser::toRows(entities);
}

QList<BeaconSeed> parseBeacons(const QString& csv, QString* error)
{
    QList<BeaconSeed> out;
    QStringList bad;
    const QStringList lines = csv.split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList f = line.split(QLatin1Char(';'));
        if (f.size() != 5 || f[0].trimmed().isEmpty()) {
            bad << line;
            continue;
        }
        out.append({ f[0].trimmed(), f[1].trimmed(), f[2].trimmed(), f[3].trimmed(), f[4].trimmed() });
    }
    if (error)
        *error = bad.join(QLatin1Char('\n'));
    return out;
}

QList<BeaconSeed> beacons()
{
    QString problems;
    const QList<BeaconSeed> list
        = parseBeacons(resourceText(QStringLiteral(":/seed/beacons.csv")), &problems);
    if (!problems.isEmpty())
        qCWarning(lcLogbook) << "beacon lines skipped:" << problems;
    return list;
}

bool fillDxcc(DbConnection& c, const QList<DxccRow>& rows, DbError* error)
{
    // A table without the entity columns (an older schema) gets name and prefix only.
    bool withPlace = false;
    QSqlQuery q(c.database());
    if (q.exec(c.sql(QStringLiteral("PRAGMA table_info(dxccdata)")))) {
        while (q.next())
            withPlace = withPlace
                || q.value(1).toString().compare(QLatin1String("DxccNr"), Qt::CaseInsensitive) == 0;
    }
    q.finish();
    auto number = [](int n) { return n > 0 ? QString::number(n) : QString(); };
    QList<QStringList> dxcc;
    for (const DxccRow& r : rows) {
        dxcc.append({ r.pattern, r.country, r.prefix });
        if (withPlace)
            dxcc.back() << number(r.place.dxccNr) << number(r.place.cqZone) << number(r.place.ituZone)
                        << r.place.continent;
    }
    return batchInsert(c,
        withPlace ? "INSERT INTO dxccdata (dxcccode, Country, Prefix, DxccNr, CQZone, ITUZone, Cont) "
                    "VALUES (?, ?, ?, ?, ?, ?, ?)"
                  : "INSERT INTO dxccdata (dxcccode, Country, Prefix) VALUES (?, ?, ?)",
        dxcc, error);
}

bool fill(DbConnection& c, DbError* error)
{
    QList<QStringList> beaconRows;
    // With their map columns, so the first beacon map has its points without GD.
    for (const BeaconSeed& b : beacons())
        beaconRows.append({ b.beacon, b.locator, b.qrg, b.equipment, b.mode, BeaconGridXY(b.locator),
            BeaconGeData(b.beacon, b.qrg, b.locator, b.equipment) });
    return fillDxcc(c, dxccRows(ctyText()), error)
        && batchInsert(c,
            "INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment, Mode, GEgridXY, GEdata) "
            "VALUES (?, ?, ?, ?, ?, ?, ?)",
            beaconRows, error);
}

} // namespace SeedData
