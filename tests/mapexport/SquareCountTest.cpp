#include "core/Station.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"
#include "mapexport/RunCounter.h"

#include <gtest/gtest.h>

namespace {

QList<bool> feed(RunCounter& c, const QStringList& keys)
{
    QList<bool> starts;
    for (const QString& k : keys)
        starts << c.add(k);
    return starts;
}

struct Home {
    RecordingPrompts prompts;
    Station station { prompts };
    LogMapFields fields;
    Home() { station.settings.setText(Setting::MyLocator, "JN48OW"); }
};

} // namespace

TEST(RunCounter, SquaresLabelShowsRunsAndOutlinesGoToFirstOfEachRun)
{
    RunCounter c(RunCounter::Kind::Squares);
    EXPECT_EQ(feed(c, { "JN48AA", "JN48QQ", "JN49", "JO50XX" }), (QList<bool> { true, false, true, true }));
    EXPECT_EQ(c.labelValue(), 3);

    RunCounter one(RunCounter::Kind::Squares);
    EXPECT_EQ(feed(one, { "JN48", "JN48" }), (QList<bool> { true, false }));
    EXPECT_EQ(one.labelValue(), 1);
}

TEST(RunCounter, SquareKeysAreCaseSensitiveAndNotResorted)
{
    RunCounter c(RunCounter::Kind::Squares);
    feed(c, { "JN48", "jn48" });
    EXPECT_EQ(c.labelValue(), 2);
    RunCounter back(RunCounter::Kind::Squares);
    feed(back, { "JN48", "JN49", "JN48" }); // runs, not distinct squares
    EXPECT_EQ(back.labelValue(), 3);
}

TEST(RunCounter, EntitiesHaveNoOffByOne)
{
    RunCounter c(RunCounter::Kind::Entities);
    EXPECT_EQ(feed(c, { "Germany", "Germany", "Austria" }), (QList<bool> { false, false, true }));
    EXPECT_EQ(c.labelValue(), 2);
    RunCounter single(RunCounter::Kind::Entities);
    feed(single, { "Germany" });
    EXPECT_EQ(single.labelValue(), 1);
    // Only the first eight characters count.
    RunCounter longNames(RunCounter::Kind::Entities);
    feed(longNames, { "Asiatic Russia", "Asiatic Turkey" });
    EXPECT_EQ(longNames.labelValue(), 1);
}

TEST(RunCounter, ListsEndAtIndexOneHundredThousand)
{
    RunCounter squares(RunCounter::Kind::Squares);
    for (int i = 0; i < 99999; ++i)
        squares.add(i % 2 ? "JN48" : "JN49"); // every record a new run
    EXPECT_FALSE(squares.overflowed());
    EXPECT_EQ(squares.labelValue(), 99999);
    EXPECT_FALSE(squares.add("JO50"));
    EXPECT_TRUE(squares.overflowed());

    RunCounter entities(RunCounter::Kind::Entities);
    for (int i = 0; i < 100000; ++i)
        entities.add("same");
    EXPECT_FALSE(entities.overflowed());
    entities.add("same"); // the 100001st record has no place in the position list
    EXPECT_TRUE(entities.overflowed());
}

TEST(RichtungQrb, SquareOutlineRule)
{
    const SquareBounds a = SquareAround(-2.5, 10.2);
    EXPECT_EQ(a.west, -4);
    EXPECT_EQ(a.east, -2);
    EXPECT_EQ(a.south, 10);
    EXPECT_EQ(a.north, 11);
    const SquareBounds b = SquareAround(-3.4, -0.5);
    EXPECT_EQ(b.west, -4);
    EXPECT_EQ(b.east, -2);
    EXPECT_EQ(b.south, -1);
    EXPECT_EQ(b.north, 0);
    EXPECT_EQ(
        SquareOutline(9.9, 48.9), "8.0,48.0,2000 10.0,48.0,2000 10.0,49.0,2000 8.0,49.0,2000 8.0,48.0,2000 ");
}

TEST(RichtungQrb, HomeCoordinatesOutlineDistanceAndPassOver)
{
    Home h;
    ASSERT_TRUE(RichtungQRB(h.station, h.fields, "jn48"));
    EXPECT_EQ(h.station.homeCoords, "9.16666666666667,48.9166666666667");
    EXPECT_EQ(h.station.coordText, "8.58333333333333,48.2916666666667"); // JN48HH
    EXPECT_EQ(h.fields.outline, "8.0,48.0,2000 10.0,48.0,2000 10.0,49.0,2000 8.0,49.0,2000 8.0,48.0,2000 ");
    EXPECT_GT(h.fields.distanceKm, 50.0f);
    EXPECT_LT(h.fields.distanceKm, 100.0f);

    // A four-character locator outlines the same square as any six-character one inside it.
    const QString four = h.fields.outline;
    ASSERT_TRUE(RichtungQRB(h.station, h.fields, "JN48XA"));
    EXPECT_EQ(h.fields.outline, four);

    // The pass-over square wins over the box and is used once.
    h.fields.passOver = true;
    h.fields.passOverSquare = "IO91";
    ASSERT_TRUE(RichtungQRB(h.station, h.fields, "JN48"));
    EXPECT_FALSE(h.fields.passOver);
    EXPECT_TRUE(h.fields.outline.startsWith("-2.0,51.0,2000 0.0,51.0,2000 "));
}

TEST(RichtungQrb, InvalidContactLeavesOutlineButStillSetsHome)
{
    Home h;
    h.fields.outline = "old";
    h.station.coordText = "before";
    h.fields.passOver = true;
    h.fields.passOverSquare = "ZZ99";
    EXPECT_FALSE(RichtungQRB(h.station, h.fields, "JN48"));
    EXPECT_EQ(h.fields.outline, "old");
    EXPECT_EQ(h.station.coordText, "before");
    EXPECT_TRUE(h.fields.passOver);
    EXPECT_FALSE(h.station.homeCoords.isEmpty());
    h.fields.passOver = false;
    EXPECT_FALSE(RichtungQRB(h.station, h.fields, "JN4"));
    EXPECT_EQ(h.fields.outline, "old");
}
