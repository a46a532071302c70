// The map data completion of imported records (the gridDEC button) on a real database file.
#include "EntryTestDb.h"
#include "geo/Locator.h"
#include "logbook/completion/MapDataCompletion.h"
#include "logbook/entry/ContactSummary.h"

namespace {

Row record(const QVariant& grid, const QString& band, const QString& call, double qrb = 100, double qtf = 45)
{
    return contact(call, grid, band,
        { { "GMT", "18:20:00" }, { "rsts", "59" }, { "rstr", "57" }, { "QSL", "Q" }, { "Prop", "Es" },
            { "Comment", "from Tarnwick" }, { "QRB", qrb }, { "QTF", qtf }, { "GEdata", "old" } });
}

MapDataCompletion::State runToEnd(MapDataCompletion& c)
{
    MapDataCompletion::State s = c.start();
    while (s == MapDataCompletion::State::Running)
        s = c.step(50'000'000);
    return s;
}

const MapPosition Before { "9,48", 1.0f, 2.0f };

} // namespace

TEST(CompletionRun, NullGridSkippedEmptyGridProcessedOtherBandsLeft)
{
    EntryTestDb db;
    ASSERT_TRUE(db.add({ record(QVariant(), "144", "DL1NUL"), record("", "144", "DL2EMP"),
        record("JO62QM", "144", "DL3LOC"), record("JO31", "14200", "DL4HF"), record("JN48", "", "DL5NOB"),
        { { "Callsign", "DL6NUL" }, { "Grid", "" }, { "Band", "144" } } }));
    MapDataCompletion c(db.path(), "144%", db.locator(), Before);
    ASSERT_EQ(runToEnd(c), MapDataCompletion::State::Done) << c.error().text().toStdString();
    EXPECT_EQ(c.total(), 4);
    EXPECT_EQ(c.completed(), 3);
    EXPECT_EQ(MapDataCompletion::message(3), "3 Dataset from Tarnwick backup.mdB imported");

    const QList<Row> rows = db.rows({ "GEdata", "GEgridXY" });
    EXPECT_EQ(rows[0]["GEdata"].toString(), "old"); // NULL grid: untouched
    // An empty grid is no locator: the record's own QRB and QTF, the coordinates left before.
    EXPECT_EQ(rows[1]["GEdata"].toString(),
        "Log: DL2EMP 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:100km  QTF:45 QSL: Q Prop:Es from "
        "Tarnwick");
    EXPECT_EQ(rows[1]["GEgridXY"].toString(), "9,48");
    // A locator: distance, bearing and coordinates computed as for a new contact.
    MapPosition p;
    ASSERT_TRUE(db.locator()("JO62QM", p));
    EXPECT_EQ(rows[2]["GEgridXY"].toString(), CoordText(LocatorToDegrees("JO62QM")));
    EXPECT_EQ(rows[2]["GEdata"].toString(),
        "Log: DL3LOC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:"
            + ContactSummary::numberText(p.distanceKm) + "km  QTF:" + ContactSummary::numberText(p.bearing)
            + " QSL: Q Prop:Es from Tarnwick");
    EXPECT_NE(ContactSummary::numberText(p.distanceKm), "100");
    EXPECT_EQ(rows[3]["GEdata"].toString(), "old"); // another band
    EXPECT_EQ(rows[4]["GEdata"].toString(), "old");
    EXPECT_EQ(rows[5]["GEdata"].toString(), "Log: DL6NUL 144 kHz   rsts: rstr: QRB:0km  QTF:0 QSL:  Prop: ");
    EXPECT_EQ(c.position().coordText, p.coordText); // the last locator's values stay stored
}

TEST(CompletionRun, WithoutBandOnlyRecordsWithEmptyBandText)
{
    EntryTestDb db;
    ASSERT_TRUE(db.add({ record("JO62", "144", "DL1BND"), record("JN48", "", "DL2NOB"),
        record(QVariant(), "", "DL3NUL"), record("JO31", "14200", "DL4HF") }));
    MapDataCompletion c(db.path(), "", db.locator(), Before);
    ASSERT_EQ(runToEnd(c), MapDataCompletion::State::Done);
    EXPECT_EQ(c.total(), 2); // the reported number: both empty-band records
    EXPECT_EQ(c.completed(), 1);
    QStringList data;
    for (const Row& r : db.rows({ "GEdata" }))
        data << r["GEdata"].toString().left(17);
    EXPECT_EQ(data, (QStringList { "old", "Log: DL2NOB  kHz ", "old", "old" }));
}

TEST(CompletionRun, CancelKeepsWhatWasCompleted)
{
    EntryTestDb db;
    QList<Row> many;
    for (int i = 0; i < 3000; ++i)
        many << record("JO62QM", "144", QStringLiteral("DL%1X").arg(i));
    ASSERT_TRUE(db.add(many));
    MapDataCompletion c(db.path(), "144%", db.locator(), Before);
    ASSERT_EQ(c.start(), MapDataCompletion::State::Running);
    EXPECT_EQ(c.step(0), MapDataCompletion::State::Running);
    const qint64 done = c.completed();
    EXPECT_TRUE(done > 0 && done < 3000) << done;
    c.cancel();
    EXPECT_EQ(c.state(), MapDataCompletion::State::Cancelled);
    int completed = 0;
    for (const Row& r : db.rows({ "GEdata" }))
        completed += r["GEdata"].toString() != "old";
    EXPECT_EQ(completed, done);
}
