// SQLite texts into PostgreSQL's dialect: every rule of the table, the traps around literals and
// parentheses, and every text the logbook issues.
#include "logbook/db/SqlDialect.h"
#include "logbook/db/SqlSource.h"
#include "logbook/db/SqlText.h"

#include <gtest/gtest.h>

namespace {
struct Case {
    QString sqlite;
    QString postgres;
};

void expectTranslations(const QList<Case>& cases)
{
    for (const Case& c : cases) {
        const QString out = SqlDialect::toPostgres(c.sqlite);
        EXPECT_EQ(out.toStdString(), c.postgres.toStdString()) << c.sqlite.toStdString();
        EXPECT_EQ(SqlDialect::toPostgres(out).toStdString(), out.toStdString())
            << "not idempotent: " << c.sqlite.toStdString();
    }
}
} // namespace

TEST(SqlDialect, EveryRuleOfTheTableGivesItsExample)
{
    QList<Case> cases;
    for (const SqlDialect::Translation& row : SqlDialect::postgresTable())
        cases.append({ QString::fromUtf8(row.sqlite), QString::fromUtf8(row.postgres) });
    ASSERT_EQ(cases.size(), 23);
    expectTranslations(cases);
}

TEST(SqlDialect, LiteralsAndUnnamedTextsPassUnchanged)
{
    expectTranslations({
        // LIKE, rowid, NOCASE, "names" and parentheses inside literals stay.
        { "SELECT * FROM logtab WHERE Comment = 'like rowid' AND Nam LIKE 'O''Neill (LIKE)'",
            "SELECT * FROM logtab WHERE Comment = 'like rowid' AND Nam ILIKE 'O''Neill (LIKE)' ORDER BY ID NULLS FIRST" },
        { "SELECT 'rowid', rowid FROM t", "SELECT 'rowid', ID FROM t" },
        { "SELECT * FROM t WHERE a = 'x COLLATE NOCASE \"Q\" ORDER BY b'",
            "SELECT * FROM t WHERE a = 'x COLLATE NOCASE \"Q\" ORDER BY b'" },
        { "select *  from logtab where grid <> ''order by grid",
            "select *  from logtab where grid <> ''order by lower(grid) NULLS FIRST" },
        // An unterminated literal (the head of a spliced text) is a literal to the end.
        { "SELECT * FROM dxccdata where 'LIKE x", "SELECT * FROM dxccdata where 'LIKE x" },
        { "UPDATE logtab SET QSL = ? WHERE ID = ? AND QSL = ?",
            "UPDATE logtab SET QSL = ? WHERE ID = ? AND QSL = ?" },
        { "UPDATE dxccdata SET \"dxcccode\" = substr(\"dxcccode\", 1, length(\"dxcccode\") - 1) || '%'",
            "UPDATE dxccdata SET \"dxcccode\" = substr(\"dxcccode\", 1, length(\"dxcccode\") - 1) || '%'" },
        { "COMMIT", "COMMIT" },
        { "", "" },
        // Words that only contain a rule's word.
        { "SELECT likely, rowids, realm, integer_col FROM t",
            "SELECT likely, rowids, realm, integer_col FROM t" },
        // Types are translated in DDL only.
        { "SELECT CAST(x AS REAL), text(1) FROM t", "SELECT CAST(x AS REAL), text(1) FROM t" },
    });
}

TEST(SqlDialect, NestedParenthesesOrderByListsAndCasts)
{
    const QString cast
        = QStringLiteral("CASE WHEN (%1) IS NOT NULL THEN coalesce(CAST(substring(CAST(%1 AS text) "
                         "from '^\\s*([-+]?[0-9]+)') AS BIGINT), 0) END");
    expectTranslations({
        // Both subqueries get a name; each ORDER BY list ends at its own parenthesis.
        { "SELECT * FROM (SELECT * FROM (SELECT a, (b) FROM t ORDER BY a DESC, (b)) WHERE a = ')' ORDER BY "
          "b) "
          "WHERE x ORDER BY a, b desc LIMIT 5",
            "SELECT * FROM (SELECT * FROM (SELECT a, (b) FROM t ORDER BY a DESC NULLS LAST, (b) NULLS FIRST) "
            "AS sub "
            "WHERE a = ')' ORDER BY b NULLS FIRST) AS sub WHERE x ORDER BY a NULLS FIRST, b desc NULLS LAST "
            "LIMIT 5" },
        // A subquery that has a name, and one that is a value, stay.
        { "SELECT (SELECT max(a) FROM t) AS m FROM (SELECT * FROM t) s WHERE 1",
            "SELECT (SELECT max(a) FROM t) AS m FROM (SELECT * FROM t) s WHERE 1" },
        { "SELECT * FROM (SELECT * FROM t)", "SELECT * FROM (SELECT * FROM t) AS sub" },
        { "SELECT * FROM t ORDER BY a NULLS LAST, b",
            "SELECT * FROM t ORDER BY a NULLS LAST, b NULLS FIRST" },
        { "SELECT * FROM t ORDER BY lower(a) DESC OFFSET 2",
            "SELECT * FROM t ORDER BY lower(a) DESC NULLS LAST OFFSET 2" },
        // The expression keeps its own parentheses and literals; inner casts end up inside outer ones.
        { "SELECT CAST(substr(a, 1, 2) || ')' AS integer) FROM t",
            "SELECT " + cast.arg("substr(a, 1, 2) || ')'") + " FROM t" },
        { "SELECT CAST(CAST(a AS INTEGER) + 1 AS INTEGER)", "SELECT " + cast.arg(cast.arg("a") + " + 1") },
        { "SELECT CAST(a AS TEXT), CAST(rowid AS INTEGER) FROM t",
            "SELECT CAST(a AS TEXT), " + cast.arg("ID") + " FROM t" },
    });
}

TEST(SqlDialect, NocaseFoldsBothSidesOfAComparison)
{
    expectTranslations({
        { "SELECT 1 FROM dxccdata WHERE dxcccode = ? COLLATE NOCASE AND instr(dxcccode, '%') = 0 AND "
          "instr(dxcccode, '_') = 0 LIMIT 1",
            "SELECT 1 FROM dxccdata WHERE lower(dxcccode) = lower(?) AND strpos(dxcccode, '%') = 0 AND "
            "strpos(dxcccode, '_') = 0 LIMIT 1" },
        { "SELECT 1 FROM t WHERE t.Call<>'dl1abc' COLLATE nocase",
            "SELECT 1 FROM t WHERE lower(t.Call)<>lower('dl1abc')" },
        { "SELECT 1 FROM t WHERE \"T\".\"Call\" = upper(?) COLLATE NOCASE",
            "SELECT 1 FROM t WHERE lower(\"t\".\"call\") = lower(upper(?))" },
        { "SELECT * FROM t ORDER BY Call COLLATE NOCASE",
            "SELECT * FROM t ORDER BY lower(Call) NULLS FIRST" },
        { "CREATE UNIQUE INDEX i ON t (Call COLLATE NOCASE, Band)",
            "CREATE UNIQUE INDEX i ON t (lower(Call), Band)" },
    });
}

TEST(SqlDialect, GlobPatternsAndSubstrFromTheEnd)
{
    expectTranslations({
        { "SELECT MAX(CAST(NrSent AS INTEGER)) FROM logtab WHERE Band LIKE ? AND NrSent GLOB '[0-9]*'",
            "SELECT MAX(CASE WHEN (NrSent) IS NOT NULL THEN coalesce(CAST(substring(CAST(NrSent AS text) "
            "from "
            "'^\\s*([-+]?[0-9]+)') AS BIGINT), 0) END) FROM logtab WHERE Band ILIKE ? AND NrSent ~ "
            "'^[0-9].*$'" },
        { "SELECT 1 WHERE a GLOB '[^]a]x(1)+$' OR b glob 'O''N*' OR c GLOB ?",
            "SELECT 1 WHERE a ~ '^[^]a]x\\(1\\)\\+\\$$' OR b ~ '^O''N.*$' OR c GLOB ?" },
        { "SELECT substr(a, -12), substr(f(a, b), - 2), substr(a, 1, -1), substr(a, -1, 1), substr(a, 2)",
            "SELECT right(a, 12), right(f(a, b), 2), substr(a, 1, -1), substr(a, -1, 1), substr(a, 2)" },
        { "UPDATE dxccdata SET \"dxcccode\" = substr(\"dxcccode\", 1, length(\"dxcccode\") - 1) || '%' WHERE "
          "substr(\"dxcccode\", -1) = '*'",
            "UPDATE dxccdata SET \"dxcccode\" = substr(\"dxcccode\", 1, length(\"dxcccode\") - 1) || '%' "
            "WHERE "
            "right(\"dxcccode\", 1) = '*'" },
    });
}

TEST(SqlDialect, BeginAndPragmas)
{
    expectTranslations({
        { "begin deferred", "begin" },
        { "BEGIN EXCLUSIVE TRANSACTION", "BEGIN TRANSACTION" },
        { "BEGIN", "BEGIN" },
        { "PRAGMA synchronous=NORMAL", "" },
        { "PRAGMA wal_checkpoint(TRUNCATE)", "" },
    });
    // The table of columns (in the translation table) for a quoted name as for a bare one.
    EXPECT_EQ(SqlDialect::toPostgres(QStringLiteral("PRAGMA table_info(\"PNT_Beacon\")")),
        SqlDialect::toPostgres(QStringLiteral("PRAGMA table_info(PNT_Beacon)")));
}

TEST(SqlDialect, EveryLogbookTextHasItsPostgresForm)
{
    const QString logList
        = SqlSource(SqlText::LogList).statement(SqlText::logListFilter("144"), SqlText::LogListSort);
    const QString beaconList
        = SqlSource(SqlText::BeaconList)
              .statement(SqlText::beaconNameFilter(SqlText::BeaconsOnlyPattern), SqlText::BeaconSortQrg);
    const QString beaconByName
        = SqlSource(SqlText::BeaconList).plainStatement(QString(), SqlText::BeaconSortName);
    const QString search
        = SqlSource(SqlText::searchByCallsign("O'N")).statement(QString(), SqlText::LogListSort);
    expectTranslations({
        { SqlText::LogList, "SELECT * FROM logtab ORDER BY ID NULLS FIRST" },
        { SqlText::LogTabCount, "SELECT * FROM LogTab ORDER BY ID NULLS FIRST" },
        { SqlText::Beacons, "SELECT * FROM PNT_Beacon ORDER BY ID NULLS FIRST" },
        { SqlText::BeaconMap, "select *  from PNT_Beacon ORDER BY ID NULLS FIRST" },
        { SqlText::BeaconList, "SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon ORDER BY ID NULLS FIRST" },
        { SqlText::beaconSearch("GB3"),
            "SELECT beacon, Locator, qrg, Equipment  FROM PNT_beacon where beacon ILIKE 'GB3%' ORDER BY ID NULLS FIRST" },
        { SqlText::dxccLookup("O'NEILL"), "SELECT * FROM dxccdata where 'O''NEILL' ILIKE dxcccode  ORDER BY ID NULLS FIRST" },
        { SqlText::DxccAll, "SELECT * FROM dxccdata   ORDER BY ID NULLS FIRST" },
        { SqlText::searchByCallsign("dl1"), "select * from logtab where  callsign ILIKE 'dl1%' ORDER BY ID NULLS FIRST" },
        { SqlText::searchByGrid("JO"), "select * from logtab where  Grid ILIKE 'JO%' ORDER BY ID NULLS FIRST" },
        { SqlText::LogWithGrid, "select *  from logtab where grid <> ''order by lower(grid) NULLS FIRST" },
        { SqlText::LogWithGridConfirmed,
            "select *  from logtab where grid <> ''and QSL ILIKE'q' order by lower(grid) NULLS FIRST" },
        { SqlText::LogWithDxcc, "select  *  from logtab where DXCC <>'' order by dxcc NULLS FIRST " },
        { SqlText::LogWithDxccConfirmed,
            "select  *  from logtab where DXCC <>'' and QSL ILIKE 'Q'  order by dxcc NULLS FIRST " },
        { SqlText::qslRun("T"), "select  *  from logtab where  QSL ILIKE 'T' order by lower(callsign) NULLS FIRST" },
        { SqlText::AddLogGEdata, "ALTER TABLE logtab ADD COLUMN GEdata varchar;" },
        { SqlText::AddLogGEpoly, "ALTER TABLE logtab ADD COLUMN GEpoly varchar;" },
        { SqlText::AddLogGEgridXY, "ALTER TABLE logtab ADD COLUMN GEgridXY varchar;" },
        { SqlText::DropBeaconXCoord, "ALTER TABLE PNT_Beacon DROP COLUMN XCoord " },
        { SqlText::DropBeaconYCoord, "ALTER TABLE PNT_Beacon DROP COLUMN YCoord " },
        { SqlText::AddBeaconGEpoly, "ALTER TABLE PNT_Beacon ADD COLUMN GEpoly varchar;" },
        { SqlText::AddBeaconGEdata, "ALTER TABLE PNT_Beacon ADD COLUMN GEdata varchar;" },
        { SqlText::AddBeaconGEgridXY, "ALTER TABLE PNT_Beacon ADD COLUMN GEgridXY varchar;" },
        { SqlText::bandFilter(""), " band ILIKE ''" },
        // The sorts are translated within the statement they end up in.
        { logList,
            "SELECT * FROM (SELECT logtab.ID AS kestrel_rowid, * FROM logtab ORDER BY ID NULLS FIRST) AS sub "
            "WHERE  band ILIKE '144' ORDER BY date  desc NULLS LAST , kestrel_rowid DESC NULLS LAST" },
        { beaconList,
            "SELECT * FROM (SELECT PNT_beacon.ID AS kestrel_rowid, beacon, Locator, qrg, Equipment FROM "
            "PNT_beacon ORDER BY ID NULLS FIRST) AS sub WHERE  beacon ILIKE '%/b%' ORDER BY qrg  asc NULLS "
            "FIRST , kestrel_rowid NULLS FIRST" },
        { beaconByName,
            "SELECT * FROM (SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon ORDER BY ID NULLS FIRST) AS "
            "sub ORDER BY lower(beacon)  asc NULLS FIRST " },
        { search,
            "SELECT * FROM (select logtab.ID AS kestrel_rowid, * from logtab where  callsign ILIKE 'O''N%' "
            "ORDER BY ID NULLS FIRST) AS sub ORDER BY date  desc NULLS LAST , kestrel_rowid DESC NULLS LAST" },
    });
}
