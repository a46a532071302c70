// The DXCC prefix list from the country file, looked up with the program's own SQL text and
// with the in-memory index, on the real country file and callsign list of hamradio-files.
#include "DbTestSupport.h"
#include "logbook/browse/DxccCall.h"
#include "logbook/browse/DxccIndex.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/browse/DxccRecheck.h"
#include "logbook/db/CtyParser.h"
#include "logbook/db/SeedData.h"

#include <QFile>

namespace {

const QString HamradioFiles = QStringLiteral("/usr/share/hamradio-files/");

QString debianFile(const QString& name)
{
    QFile f(HamradioFiles + name);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

const char* const Sample = "EA,Spain,281,EU,14,37,40.32,3.43,-1.0,AM EA EB =EA1XY/LH =AM95WARD;\n"
                           "EA8,Canary Islands,29,AF,33,36,28.32,15.85,0.0,EA8 EB8(34)[37]{EU} =AM70URE/8 "
                           "=EA8ABC<28.1/15.4> =EA8ZZ(35);\n"
                           "I,Italy,248,EU,15,28,42.82,-12.58,-1.0,I;\n"
                           "*IT9,Sicily,248,EU,15,28,37.50,-14.00,-1.0,IT9 IW9~-1.0~;\n"
                           "TA,Asiatic Turkey,390,AS,20,39,39.18,-35.65,-2.0,TA;\n"
                           "*TA1,European Turkey,390,EU,20,39,41.02,-28.97,-2.0,TA1;\n";

TEST(DbCty, ParsesEntitiesOverridesWaeEntitiesAndOrdersRowsMostSpecificFirst)
{
    QString problems;
    const QList<CtyEntity> entities
        = CtyParser::parse("XX,Broken,no,EU,1,2,0,0,0,XX;\n" + QString::fromLatin1(Sample), &problems);
    EXPECT_TRUE(problems.contains("Broken")) << problems.toStdString();
    ASSERT_EQ(entities.size(), 6);
    EXPECT_EQ(entities[1].prefixes[1].text, "EB8");
    EXPECT_EQ(entities[1].prefixes[1].place, (CtyPlace { 29, 34, 37, "EU" }));
    EXPECT_EQ(entities[1].exactCalls[1].text, "EA8ABC");
    EXPECT_EQ(entities[3].primaryPrefix, "IT9");
    EXPECT_TRUE(entities[3].waeOnly);
    EXPECT_EQ(entities[3].dxccName, "Italy");
    EXPECT_EQ(entities[5].dxccName, "Turkey");
    EXPECT_EQ(entities[4].dxccName, "Turkey");

    QStringList rows;
    for (const DxccRow& r : CtyParser::toRows(entities))
        rows << QStringLiteral("%1=%2 %3 %4")
                    .arg(r.pattern, r.country)
                    .arg(r.place.dxccNr)
                    .arg(r.place.cqZone);
    // EA1XY/LH, AM95WARD (Spain by their prefixes) and EA8ABC (Canary by EA8) add nothing;
    // EA8ZZ has a zone of its own.
    EXPECT_EQ(rows,
        (QStringList { "AM70URE/8=Canary Islands 29 33", "EA8ZZ=Canary Islands 29 35",
            "EA8%=Canary Islands 29 33", "EB8%=Canary Islands 29 34", "IT9%=Italy 248 15",
            "IW9%=Italy 248 15", "TA1%=Turkey 390 20", "AM%=Spain 281 14", "EA%=Spain 281 14",
            "EB%=Spain 281 14", "TA%=Turkey 390 20", "I%=Italy 248 15" }));
    EXPECT_EQ(CtyParser::entityFor(entities, "am70ure/8"), "Canary Islands");
    EXPECT_EQ(CtyParser::entityFor(entities, "AM70URE"), "Spain");
}

TEST(DbDxccCall, CountryRulesBeforeTheLookup)
{
    const QStringList listed = { "VK3FY/9", "IT9MRZ/LH" };
    auto isListed = [&listed](const QString& t) { return listed.contains(t); };
    const QList<std::pair<const char*, const char*>> cases = { { "dl1abc", "DL1ABC" },
        { "DL1ABC/P", "DL1ABC" }, { "DL1ABC/M", "DL1ABC" }, { "DL1ABC/QRP", "DL1ABC" },
        { "G4XYZ/A", "G4XYZ" }, { "DB0ABC/B", "DB0ABC" }, { "F/DL1ABC", "F" }, { "F/DL1ABC/P", "F" },
        { "DL1ABC/EA8", "EA8" }, { "KH6/K1ABC", "KH6" }, { "W1ABC/4", "W4ABC" }, { "UA3ABC/9", "UA9ABC" },
        { "4X5KE/2", "4X2KE" }, { "2E0ABC/6/P", "2E6ABC" }, { "G4XYZ/MM", "" }, { "DL1ABC/AM", "" },
        { "VK3FY/9", "VK3FY/9" }, { "IT9MRZ/LH", "IT9MRZ/LH" }, { "VK3FY/9/P", "VK3FY/9" }, { "", "" } };
    for (const auto& [call, text] : cases)
        EXPECT_EQ(DxccCall::normalised(call, isListed), text) << call;
}

// A database whose dxccdata (with entity number, zones and continent) is filled from the
// country file of hamradio-files.
class DebianDxccDb {
public:
    DebianDxccDb()
    {
        path = dir.file("dxcc.db");
        const QString csv = debianFile("cty.csv");
        DbConnection c(path, DbConnection::DefaultBusyTimeoutMs, true);
        ok = !csv.isEmpty()
            && c.exec(
                "CREATE TABLE dxccdata (ID INTEGER PRIMARY KEY, dxcccode TEXT, Country TEXT, Prefix TEXT, "
                "DxccNr INTEGER, CQZone INTEGER, ITUZone INTEGER, Cont TEXT)")
            && c.begin() && SeedData::fillDxcc(c, SeedData::dxccRows(csv)) && c.commit();
    }
    TempDir dir;
    QString path;
    bool ok = false;
};

struct Expected {
    const char* call;
    const char* entity;
    int number;
};

TEST(DbDxcc, RealCallsignsPortableFormsAndWaeEntitiesGiveTheirDxccEntity)
{
    DebianDxccDb db;
    ASSERT_TRUE(db.ok);
    const QList<Expected> cases = { { "DL1ABC", "Fed. Rep. of Germany", 230 },
        { "dl1abc", "Fed. Rep. of Germany", 230 }, { "DL1ABC/P", "Fed. Rep. of Germany", 230 },
        { "DL1ABC/QRP", "Fed. Rep. of Germany", 230 }, { "F/DL1ABC", "France", 227 },
        { "DL1ABC/EA8", "Canary Islands", 29 }, { "9A/DL1ABC/P", "Croatia", 497 },
        { "OH0/DL1ABC", "Aland Islands", 5 }, { "K1ABC", "United States", 291 },
        { "W1ABC/4", "United States", 291 }, { "KH6/K1ABC", "Hawaii", 110 }, { "W1ABC/KH6", "Hawaii", 110 },
        { "KL7/W1ABC/P", "Alaska", 6 }, { "KH6ABC", "Hawaii", 110 }, { "KL7ABC", "Alaska", 6 },
        { "KP4AA", "Puerto Rico", 202 }, { "KC4AAA", "Antarctica", 13 }, { "G4XYZ/MM", "", 0 },
        { "DL1ABC/AM", "", 0 }, { "UA3ABC", "European Russia", 54 }, { "UA3ABC/9", "Asiatic Russia", 15 },
        { "UA9ABC", "Asiatic Russia", 15 }, { "UA2ABC", "Kaliningrad", 126 }, { "IT9XXX", "Italy", 248 },
        { "IW9ABC/P", "Italy", 248 }, { "IG9ABC", "Italy", 248 }, { "I2ABC", "Italy", 248 },
        { "IS0ABC", "Sardinia", 225 }, { "4U1VIC", "Austria", 206 }, { "OE1ABC", "Austria", 206 },
        { "TA1ABC", "Turkey", 390 }, { "TA2ABC", "Turkey", 390 }, { "2M0BDR", "Scotland", 279 },
        { "GM3ABC", "Scotland", 279 }, { "JW1I", "Svalbard", 259 }, { "JW5ABC", "Svalbard", 259 },
        { "4U1UN", "United Nations HQ", 289 }, { "4U1ITU", "ITU HQ", 117 }, { "VK2ABC", "Australia", 150 },
        { "VK9XY", "Christmas Island", 35 }, { "VK9LA", "Lord Howe Island", 147 },
        { "VK9NA", "Norfolk Island", 189 }, { "EA4ABC", "Spain", 281 }, { "EA8ABC", "Canary Islands", 29 },
        { "EA9ABC", "Ceuta & Melilla", 32 }, { "EA6ABC", "Balearic Islands", 21 },
        { "G4ABC", "England", 223 }, { "M0ABC/P", "England", 223 }, { "GW4ABC", "Wales", 294 },
        { "GI4ABC", "Northern Ireland", 265 }, { "EI2ABC", "Ireland", 245 }, { "F5ABC", "France", 227 },
        { "FR5ABC", "Reunion Island", 453 }, { "ON4ABC", "Belgium", 209 }, { "PA3ABC", "Netherlands", 263 },
        { "OK1ABC", "Czech Republic", 503 }, { "SP5ABC", "Poland", 269 }, { "HB9ABC", "Switzerland", 287 },
        { "HB0ABC", "Liechtenstein", 251 }, { "SV1ABC", "Greece", 236 }, { "SV9ABC", "Crete", 40 },
        { "OH2ABC", "Finland", 224 }, { "OJ0ABC", "Market Reef", 167 }, { "SM5ABC", "Sweden", 284 },
        { "LA9ABC", "Norway", 266 }, { "OZ1ABC", "Denmark", 221 }, { "OX3ABC", "Greenland", 237 },
        { "UR5ABC", "Ukraine", 288 }, { "JA1ABC", "Japan", 339 }, { "JA1ABC/6", "Japan", 339 },
        { "BY1ABC", "China", 318 }, { "VE3ABC", "Canada", 1 }, { "PY2ABC", "Brazil", 108 },
        { "LU1ABC", "Argentina", 100 }, { "ZL2ABC", "New Zealand", 170 }, { "ZS6ABC", "South Africa", 462 },
        { "4X1ABC", "Israel", 336 }, { "4X5KE/2", "Israel", 336 }, { "VU2ABC", "India", 324 },
        { "Q1XYZ", "", 0 } };
    ASSERT_GE(cases.size(), 60);
    DxccIndex index;
    ASSERT_TRUE(index.load(db.path));
    for (const Expected& e : cases) {
        const DxccLookupResult r = DxccLookup::lookup(db.path, e.call);
        EXPECT_EQ(r.found, *e.entity != 0) << e.call;
        EXPECT_EQ(r.entity.name, e.entity) << e.call;
        EXPECT_EQ(r.entity.dxccNr, e.number) << e.call;
        EXPECT_EQ(index.find(e.call), r.entity) << e.call;
    }
    // Zones and continent come with the entity, a prefix's own zones where it has them.
    const DxccEntity dl = DxccLookup::lookup(db.path, "DL1ABC").entity;
    EXPECT_EQ(std::tuple(dl.cqZone, dl.ituZone, dl.continent), std::tuple(14, 28, QString("EU")));
    const DxccEntity it9 = index.find("IT9XXX");
    EXPECT_EQ(std::tuple(it9.cqZone, it9.ituZone, it9.continent), std::tuple(15, 28, QString("EU")));
    const DxccEntity w6 = index.find("W6ABC");
    EXPECT_EQ(std::tuple(w6.cqZone, w6.ituZone, w6.continent), std::tuple(3, 6, QString("NA")));
}

TEST(DbDxcc, FirstRowFoundAgreesWithTheCountryFileRules)
{
    DebianDxccDb db;
    ASSERT_TRUE(db.ok);
    const QList<CtyEntity> entities = CtyParser::parse(debianFile("cty.csv"));
    QStringList calls;
    int n = 0;
    for (const CtyEntity& e : entities) {
        for (const CtyItem& c : e.exactCalls) {
            if (n++ % 60 == 0)
                calls << c.text;
        }
        for (const CtyItem& p : e.prefixes) {
            if (n++ % 20 == 0)
                calls << p.text + QStringLiteral("1AB");
        }
    }
    ASSERT_GT(calls.size(), 500);
    const QStringList expected = CtyParser::entitiesFor(entities, calls);
    DbConnection c(db.path);
    for (int i = 0; i < calls.size(); ++i) {
        QSqlQuery q(c.database());
        ASSERT_TRUE(q.exec(SqlText::dxccLookup(calls[i])));
        EXPECT_EQ(q.next() ? q.value(2).toString() : QString(), expected[i]) << calls[i].toStdString();
    }
}

TEST(DbDxcc, RecheckOfALogFollowsTheCallsAndKeepsOwnZones)
{
    TestDb db;
    ASSERT_TRUE(db.created);
    ASSERT_TRUE(db.add({ contact("IT9XXX", QVariant(), "144", { { "DXCC", "Sicily" } }),
        contact("DL1ABC", QVariant(), "144", { { "DXCC", "Fed. Rep. of Germany" }, { "DxccNr", 230 } }),
        contact("G4XYZ/MM", QVariant(), "144", { { "DXCC", "England" }, { "DxccNr", 223 } }),
        contact("W1ABC/6", QVariant(), "144", { { "CQZone", 4 }, { "Cont", "" } }) }));
    DbError error;
    EXPECT_EQ(DxccRecheck::run(db.path(), &error), 3) << error.text().toStdString();
    QStringList rows;
    for (const Row& r : db.rows({ "Callsign", "DXCC", "DxccNr", "CQZone", "ITUZone", "Cont" }))
        rows << QStringLiteral("%1 %2 %3 %4 %5 %6")
                    .arg(r["Callsign"].toString(), r["DXCC"].toString(), r["DxccNr"].toString(),
                        r["CQZone"].toString(), r["ITUZone"].toString(), r["Cont"].toString());
    EXPECT_EQ(rows.join('|').toStdString(),
        "IT9XXX Italy 248 15 28 EU|DL1ABC Fed. Rep. of Germany 230   |G4XYZ/MM     |"
        "W1ABC/6 United States 291 4 6 NA");
    EXPECT_EQ(DxccRecheck::run(db.path()), 0);
    EXPECT_EQ(DxccRecheck::run(db.dir.file("none.db"), &error), -1);
}

QStringList masterScpCalls()
{
    QStringList calls;
    for (const QString& line : debianFile("MASTER.SCP").split(QLatin1Char('\n'))) {
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            calls << line.trimmed();
    }
    return calls;
}

// Every call of MASTER.SCP: SQLite's LIKE against every dxccdata row in stored order, first
// match wins, as the SQL text reads it, against the in-memory index. SQLite decides each
// match; going pattern by pattern over an indexed table of the calls keeps the 85 000 x 20 000
// comparisons to seconds.
TEST(DbDxcc, InMemoryIndexAgreesWithSqliteLikeOnEveryMasterScpCall)
{
    DebianDxccDb db;
    ASSERT_TRUE(db.ok);
    const QStringList calls = masterScpCalls();
    ASSERT_GT(calls.size(), 80000);
    DxccIndex index;
    ASSERT_TRUE(index.load(db.path));
    DbConnection c(db.path);
    ASSERT_TRUE(c.exec("CREATE TEMP TABLE calls (text TEXT COLLATE NOCASE PRIMARY KEY, first INTEGER)"));
    ASSERT_TRUE(c.begin());
    QStringList texts;
    for (const QString& call : calls) {
        texts << DxccCall::normalised(call, [&index](const QString& t) { return index.isExactCall(t); });
        if (!texts.back().isEmpty())
            c.exec("INSERT OR IGNORE INTO calls (text) VALUES (?)", { texts.back() });
    }
    QSqlQuery rows(c.database());
    ASSERT_TRUE(rows.exec("SELECT ID, dxcccode FROM dxccdata"));
    QSqlQuery mark(c.database());
    while (rows.next()) {
        mark.prepare(QStringLiteral("UPDATE calls SET first = ? WHERE first IS NULL AND text LIKE ?"));
        mark.addBindValue(rows.value(0));
        mark.addBindValue(rows.value(1));
        ASSERT_TRUE(mark.exec());
    }
    ASSERT_TRUE(c.commit());
    QHash<QString, DxccEntity> bySql;
    QSqlQuery q(c.database());
    ASSERT_TRUE(q.exec("SELECT c.text, d.Country, d.DxccNr, d.CQZone, d.ITUZone, d.Cont FROM calls c "
                       "JOIN dxccdata d ON d.ID = c.first"));
    while (q.next())
        bySql.insert(q.value(0).toString(),
            { true, q.value(1).toString(), q.value(2).toInt(), q.value(3).toInt(), q.value(4).toInt(),
                q.value(5).toString() });
    int differences = 0;
    int found = 0;
    for (int i = 0; i < calls.size(); ++i) {
        const DxccEntity sql = bySql.value(texts[i]);
        found += sql.found;
        const DxccEntity mem = index.find(calls[i]);
        if (!(mem == sql) && ++differences <= 10)
            ADD_FAILURE() << calls[i].toStdString() << ": SQL " << sql.name.toStdString() << " " << sql.dxccNr
                          << ", index " << mem.name.toStdString() << " " << mem.dxccNr;
    }
    EXPECT_EQ(differences, 0);
    EXPECT_GT(found, calls.size() * 99 / 100);
}

// The window's path itself (call read by the country rules with the table's exact calls, then
// the SQL text) for every MASTER.SCP call with a "/", where the rules have work to do.
TEST(DbDxcc, WindowLookupAgreesWithTheIndexOnEveryPortableMasterScpCall)
{
    DebianDxccDb db;
    ASSERT_TRUE(db.ok);
    DxccIndex index;
    ASSERT_TRUE(index.load(db.path));
    DbConnection c(db.path);
    int n = 0;
    int differences = 0;
    for (const QString& call : masterScpCalls()) {
        if (!call.contains(QLatin1Char('/')))
            continue;
        ++n;
        DxccEntity sql;
        const QString text = DxccLookup::lookupText(c, call);
        QSqlQuery q(c.database());
        q.setForwardOnly(true);
        if (!text.isEmpty() && q.exec(SqlText::dxccLookup(text)) && q.next())
            sql = { true, q.value(2).toString(), q.value(4).toInt(), q.value(5).toInt(), q.value(6).toInt(),
                q.value(7).toString() };
        const DxccEntity mem = index.find(call);
        if (!(mem == sql) && ++differences <= 10)
            ADD_FAILURE() << call.toStdString() << ": SQL " << sql.name.toStdString() << ", index "
                          << mem.name.toStdString();
    }
    EXPECT_GT(n, 1500);
    EXPECT_EQ(differences, 0);
}

} // namespace
