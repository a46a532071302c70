// The DXCC prefix list from the shipped country file, looked up with the program's own SQL.
#include "DbTestSupport.h"
#include "logbook/db/CtyParser.h"
#include "logbook/db/SeedData.h"

namespace {

const char* const Sample = "Spain:                    14:  37:  EU:   40.32:     3.43:    -1.0:  EA:\n"
                           "    AM,EA,EB,=EA1XY/LH,=AM95WARD;\n"
                           "Canary Islands:           33:  36:  AF:   28.32:    15.85:     0.0:  EA8:\n"
                           "    EA8,EB8(33)[36],=AM70URE/8,\n"
                           "    =EA8ABC<28.1/15.4>;\n"
                           "Sicily:                   15:  28:  EU:   37.50:   -14.00:    -1.0:  *IT9:\n"
                           "    IT9,IW9{EU}~-1.0~;\n";

TEST(DbCty, ParsesEntitiesStripsMarkersSkipsBrokenRecordsAndOrdersRowsMostSpecificFirst)
{
    QString problems;
    const QList<CtyEntity> entities
        = CtyParser::parse("Broken: 1: 2:\n    XX;\n" + QString::fromLatin1(Sample), &problems);
    EXPECT_TRUE(problems.contains("Broken")) << problems.toStdString();
    ASSERT_EQ(entities.size(), 3);
    EXPECT_EQ(entities[1].prefixes, (QStringList { "EA8", "EB8" }));
    EXPECT_EQ(entities[1].exactCalls, (QStringList { "AM70URE/8", "EA8ABC" }));
    EXPECT_EQ(entities[2].primaryPrefix, "IT9");
    EXPECT_TRUE(entities[2].waeOnly);
    EXPECT_EQ(entities[2].prefixes, (QStringList { "IT9", "IW9" }));

    QStringList rows;
    for (const DxccRow& r : CtyParser::toRows(entities))
        rows << r.pattern + QLatin1Char('=') + r.country;
    // EA1XY/LH, AM95WARD (Spain by their prefixes) and EA8ABC (Canary by EA8) add nothing.
    EXPECT_EQ(rows,
        (QStringList { "AM70URE/8=Canary Islands", "EA8%=Canary Islands", "EB8%=Canary Islands",
            "IT9%=Sicily", "IW9%=Sicily", "AM%=Spain", "EA%=Spain", "EB%=Spain" }));
    EXPECT_EQ(CtyParser::entityFor(entities, "am70ure/8"), "Canary Islands");
    EXPECT_EQ(CtyParser::entityFor(entities, "AM70URE"), "Spain");
}

// The lookup as the logbook does it: the entity is column 2 of the first row found.
QString lookup(const TestDb& db, const QString& call)
{
    Recordset rs(db.path());
    if (!rs.open(SqlText::dxccLookup(call)) || rs.atEnd())
        return QString();
    return rs.text(2);
}

TEST(DbDxcc, RealCallsignsOfMoreThanFiftyEntitiesAndExactCalls)
{
    TestDb db;
    ASSERT_TRUE(db.created);
    const QList<std::pair<const char*, const char*>> cases = { { "DL1ABC", "Fed. Rep. of Germany" },
        { "K1ABC", "United States of America" }, { "KH6ABC", "Hawaii" }, { "KL7ABC", "Alaska" },
        { "KP4AA", "Puerto Rico" }, { "VK2ABC", "Australia" }, { "VK9XY", "Christmas Island" },
        { "VK9LA", "Lord Howe Island" }, { "VK9NA", "Norfolk Island" },
        { "VK9CA", "Cocos (Keeling) Islands" }, { "EA4ABC", "Spain" }, { "EA8ABC", "Canary Islands" },
        { "EA9ABC", "Ceuta & Melilla" }, { "EA6ABC", "Balearic Islands" }, { "G4ABC", "England" },
        { "GM3ABC", "Scotland" }, { "GW4ABC", "Wales" }, { "GI4ABC", "Northern Ireland" },
        { "EI2ABC", "Ireland" }, { "F5ABC", "France" }, { "FR5ABC", "Reunion Island" },
        { "ON4ABC", "Belgium" }, { "PA3ABC", "Netherlands" }, { "OK1ABC", "Czech Republic" },
        { "SP5ABC", "Poland" }, { "OE1ABC", "Austria" }, { "HB9ABC", "Switzerland" },
        { "HB0ABC", "Liechtenstein" }, { "I2ABC", "Italy" }, { "IS0ABC", "Sardinia" }, { "SV1ABC", "Greece" },
        { "SV9ABC", "Crete" }, { "OH2ABC", "Finland" }, { "OH0ABC", "Aland Islands" },
        { "OJ0ABC", "Market Reef" }, { "SM5ABC", "Sweden" }, { "LA9ABC", "Norway" }, { "JW5ABC", "Svalbard" },
        { "OZ1ABC", "Denmark" }, { "OX3ABC", "Greenland" }, { "UA3ABC", "European Russia" },
        { "UA9ABC", "Asiatic Russia" }, { "UA2ABC", "Kaliningrad" }, { "UR5ABC", "Ukraine" },
        { "JA1ABC", "Japan" }, { "BY1ABC", "China" }, { "VE3ABC", "Canada" }, { "PY2ABC", "Brazil" },
        { "LU1ABC", "Argentina" }, { "ZL2ABC", "New Zealand" }, { "ZS6ABC", "South Africa" },
        { "4X1ABC", "Israel" }, { "VU2ABC", "India" }, { "dl1abc", "Fed. Rep. of Germany" },
        // Exact calls of the country file win over prefixes and match only themselves.
        { "AA0NN", "Alaska" }, { "AA2TT", "Hawaii" }, { "VK3FY/9", "Christmas Island" },
        { "EA1DFP/9", "Ceuta & Melilla" }, { "AM70URE/8", "Canary Islands" }, { "KC4/W3ASA", "Antarctica" },
        { "VP8DFK", "Antarctica" }, { "4U1UN", "United Nations HQ" }, { "4U1ITU", "ITU HQ" },
        { "4U1VIC", "Vienna Intl Ctr" }, { "AA0NNX", "United States of America" }, { "Q1XYZ", "" } };
    for (const auto& [call, entity] : cases)
        EXPECT_EQ(lookup(db, call), entity) << call;
}

TEST(DbDxcc, FirstRowFoundAgreesWithTheCountryFileRules)
{
    TestDb db;
    ASSERT_TRUE(db.created);
    const QList<CtyEntity> entities = CtyParser::parse(SeedData::ctyText());
    QStringList calls;
    int n = 0;
    for (const CtyEntity& e : entities) {
        for (const QString& c : e.exactCalls) {
            if (n++ % 60 == 0)
                calls << c;
        }
        for (const QString& p : e.prefixes) {
            if (n++ % 20 == 0)
                calls << p + QStringLiteral("1AB");
        }
    }
    ASSERT_GT(calls.size(), 500);
    const QStringList expected = CtyParser::entitiesFor(entities, calls);
    for (int i = 0; i < calls.size(); ++i)
        EXPECT_EQ(lookup(db, calls[i]), expected[i]) << calls[i].toStdString();
}

} // namespace
