// Numbered schema migrations on real files: a database of every earlier version opens at the
// current version with its rows intact.
#include "DbTestSupport.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/db/SchemaUpgrade.h"

namespace {

const QStringList RowsOfEveryTable = {
    "INSERT INTO logtab (Date, GMT, Callsign, Grid, Band, mode, QSL, Cont, CQZone, ITUZone, NrSent) "
    "VALUES ('2026-11-15', '18:04', 'DL1ABC', 'JO62QM', '144', 'SSB', 'Q', 'EU', 14, 28, '001')",
    "INSERT INTO dxccdata (dxcccode, Country, Prefix) VALUES ('DL%', 'Germany', 'DL')",
};

struct EarlierVersion {
    const char* name;
    QStringList tables; // the layout that version had
    int userVersion;
    QString beaconRow; // a beacon row in that layout
};

const QString OldBeaconRow = "INSERT INTO PNT_Beacon (beacon, Locator, qrg, XCoord, YCoord) VALUES "
                             "('GB3VHF/B', 'JO01DH', '144430', 0.4, 51.3)";
const QString BeaconRow
    = "INSERT INTO PNT_Beacon (beacon, Locator, qrg) VALUES ('GB3VHF/B', 'JO01DH', '144430')";

QList<EarlierVersion> earlierVersions()
{
    const QStringList old
        = { LogbookSchema::oldLogtab(), LogbookSchema::oldBeacons(), LogbookSchema::dxccTable() };
    const QStringList withMap = old + SchemaUpgrade::logtabStatements() + SchemaUpgrade::beaconStatements();
    return {
        { "31 columns", old, 0, OldBeaconRow },
        { "34 columns without a version", withMap, 0, BeaconRow },
        { "version 1", withMap, 1, BeaconRow },
    };
}

QStringList names(const QStringList& columns)
{
    QStringList n;
    for (const QString& c : columns)
        n << c.section(QLatin1Char(' '), 0, 0);
    return n;
}

TEST(DbMigration, ANewDatabaseIsMadeAtTheCurrentVersionWithTheEntityColumns)
{
    TestDb db;
    ASSERT_TRUE(db.created);
    EXPECT_EQ(SchemaMigration::version(db.path()), SchemaMigration::CurrentVersion);
    EXPECT_EQ(tableColumns(db.path(), "logtab").mid(31),
        (QStringList { "GEdata text(250)", "GEpoly text(250)", "GEgridXY text(250)", "DxccNr INTEGER",
            "AdifExtra TEXT" }));
    EXPECT_EQ(tableColumns(db.path(), "dxccdata"),
        (QStringList { "ID INTEGER", "dxcccode TEXT", "Country TEXT", "Prefix TEXT", "DxccNr INTEGER",
            "CQZone INTEGER", "ITUZone INTEGER", "Cont TEXT" }));
    const SchemaMigration::Result r = SchemaMigration::migrate(db.path());
    EXPECT_FALSE(r.error);
    EXPECT_EQ(r.from, 2);
    EXPECT_EQ(r.to, 2);
}

TEST(DbMigration, EveryEarlierVersionOpensAtTheCurrentVersionWithItsRowsIntact)
{
    TestDb fresh;
    for (const EarlierVersion& v : earlierVersions()) {
        for (bool withRows : { true, false }) {
            SCOPED_TRACE(std::string(v.name) + (withRows ? " with rows" : " empty"));
            TempDir tmp;
            const QString path = tmp.file(QStringLiteral("backup.db"));
            QStringList sql = v.tables;
            if (withRows)
                sql << RowsOfEveryTable << v.beaconRow;
            sql << QStringLiteral("PRAGMA user_version = %1").arg(v.userVersion);
            ASSERT_TRUE(execAll(path, sql, true));

            const DbError e = DatabaseFile::prepare(path);
            ASSERT_FALSE(e) << e.text().toStdString();
            EXPECT_EQ(SchemaMigration::version(path), SchemaMigration::CurrentVersion);
            for (const char* table : { "logtab", "PNT_Beacon", "dxccdata" })
                EXPECT_EQ(names(tableColumns(path, table)), names(tableColumns(fresh.path(), table)))
                    << table;
            {
                DbConnection c(path);
                QSqlQuery q(c.database());
                ASSERT_TRUE(
                    q.exec("SELECT count(*) FROM sqlite_master WHERE name = 'logtab_qsl'") && q.next());
                EXPECT_EQ(q.value(0).toInt(), 1) << "print runs find their letters by index";
            }
            if (!withRows)
                continue;
            Recordset log(path);
            ASSERT_TRUE(log.open(SqlText::LogList));
            ASSERT_EQ(log.recordCount(), 1);
            for (const auto& [field, value] : QList<QPair<QString, QString>> { { "Date", "2026-11-15" },
                     { "GMT", "18:04" }, { "Callsign", "DL1ABC" }, { "Grid", "JO62QM" }, { "Band", "144" },
                     { "mode", "SSB" }, { "QSL", "Q" }, { "Cont", "EU" }, { "CQZone", "14" },
                     { "ITUZone", "28" }, { "NrSent", "001" }, { "DxccNr", "" }, { "AdifExtra", "" } })
                EXPECT_EQ(log.text(field), value) << field.toStdString();
            Recordset dxcc(path);
            ASSERT_TRUE(dxcc.open(SqlText::dxccLookup("DL1ABC")));
            ASSERT_EQ(dxcc.recordCount(), 1);
            EXPECT_EQ(dxcc.valueAt(0, 2).toString(), "Germany") << "the lookup reads by position";
            Recordset beacons(path);
            ASSERT_TRUE(beacons.open(SqlText::Beacons));
            EXPECT_EQ(beacons.text("Locator"), "JO01DH");
        }
    }
}

TEST(DbMigration, AFailingMigrationLeavesTheFileAtTheLastCompleteVersion)
{
    TempDir tmp;
    const QString path = tmp.file(QStringLiteral("backup.db"));
    // logtab of 31 columns with one of the map columns already there: migration 1 fails.
    QStringList cols;
    for (int i = 0; i < 30; ++i)
        cols << QStringLiteral("c%1 TEXT").arg(i);
    ASSERT_TRUE(execAll(path,
        { QStringLiteral("CREATE TABLE logtab (%1, GEpoly TEXT)").arg(cols.join(", ")),
            LogbookSchema::dxccTable(), "INSERT INTO logtab (c0) VALUES ('keep')" },
        true));
    const SchemaMigration::Result r = SchemaMigration::migrate(path);
    EXPECT_TRUE(r.error.description.contains("duplicate column name: GEpoly"))
        << r.error.text().toStdString();
    EXPECT_EQ(r.to, 0);
    EXPECT_EQ(SchemaMigration::version(path), 0);
    EXPECT_EQ(tableColumns(path, "logtab").size(), 31);
    EXPECT_EQ(tableColumns(path, "dxccdata").size(), 4) << "migration 2 did not run";
}

} // namespace
