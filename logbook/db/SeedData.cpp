#include "logbook/db/SeedData.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"

#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariantList>

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

bool batchInsert(DbConnection& c, const QString& sql, const QList<QVariantList>& columns, DbError* error)
{
    QSqlQuery q(c.database());
    if (!q.prepare(sql)) {
        if (error)
            *error = { 1, q.lastError().text() };
        return false;
    }
    for (const QVariantList& column : columns)
        q.addBindValue(column);
    if (!q.execBatch()) {
        if (error)
            *error = DbConnection::sqliteError(q.lastError().nativeErrorCode().toInt(),
                q.lastError().databaseText(), c.database().databaseName());
        return false;
    }
    return true;
}
} // namespace

namespace SeedData {

QString ctyText()
{
    return resourceText(QStringLiteral(":/seed/cty.dat"));
}

QList<DxccRow> dxccRows()
{
    QString problems;
    const QList<CtyEntity> entities = CtyParser::parse(ctyText(), &problems);
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

bool fill(DbConnection& c, DbError* error)
{
    const QList<DxccRow> rows = dxccRows();
    QVariantList pattern, country, prefix;
    for (const DxccRow& r : rows) {
        pattern << r.pattern;
        country << r.country;
        prefix << r.prefix;
    }
    if (!batchInsert(c, QStringLiteral("INSERT INTO dxccdata (dxcccode, Country, Prefix) VALUES (?, ?, ?)"),
            { pattern, country, prefix }, error))
        return false;

    QVariantList name, locator, qrg, equipment, mode;
    for (const BeaconSeed& b : beacons()) {
        name << b.beacon;
        locator << b.locator;
        qrg << b.qrg;
        equipment << b.equipment;
        mode << b.mode;
    }
    return batchInsert(c,
        QStringLiteral(
            "INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment, Mode) VALUES (?, ?, ?, ?, ?)"),
        { name, locator, qrg, equipment, mode }, error);
}

} // namespace SeedData
