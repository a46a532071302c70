#include "core/Station.h"
#include "geo/Locator.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"
#include "mapexport/RunCounter.h"

#include <gtest/gtest.h>

TEST(RunCounter, RunsOfSquaresAndEntitiesWithTheirLabels)
{
    using Kind = RunCounter::Kind;
    struct Case {
        Kind kind;
        QStringList keys;
        QList<bool> starts;
        int label;
    };
    const Case cases[] = {
        { Kind::Squares, { "JN48AA", "JN48QQ", "JN49", "JO50XX" }, { true, false, true, true }, 3 },
        { Kind::Squares, { "JN48", "JN48" }, { true, false }, 1 },
        { Kind::Squares, { "JN48", "jn48" }, { true, true }, 2 }, // case-sensitive
        { Kind::Squares, { "JN48", "JN49", "JN48" }, { true, true, true }, 3 }, // runs, not distinct squares
        { Kind::Entities, { "Germany", "Germany", "Austria" }, { false, false, true }, 2 },
        { Kind::Entities, { "Germany" }, { false }, 1 },
        { Kind::Entities, { "Asiatic Russia", "Asiatic Turkey" }, { false, false }, 1 }, // eight characters
    };
    for (const Case& c : cases) {
        RunCounter counter(c.kind);
        QList<bool> starts;
        for (const QString& k : c.keys)
            starts << counter.add(k);
        EXPECT_EQ(starts, c.starts) << c.keys.join(' ').toStdString();
        EXPECT_EQ(counter.labelValue(), c.label) << c.keys.join(' ').toStdString();
    }
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

TEST(RichtungQrb, OddLongitudeRuleGivesTwoByOneDegrees)
{
    for (const double lon : { -2.5, -3.4 }) {
        const SquareBounds b = SquareAround(lon, -0.5);
        EXPECT_EQ(b.west, -4) << lon;
        EXPECT_EQ(b.east, -2) << lon;
        EXPECT_EQ(b.south, -1) << lon;
        EXPECT_EQ(b.north, 0) << lon;
    }
}

// The pass-over square of the counts is shown through SQNr on a real log.
TEST(RichtungQrb, HomeCoordinatesOutlineAndDistance)
{
    RecordingPrompts prompts;
    Station station { prompts };
    LogMapFields fields;
    station.settings.setText(Setting::MyLocator, "JN48OW");
    ASSERT_TRUE(RichtungQRB(station, fields, "jn48"));
    EXPECT_EQ(station.homeCoords, "9.16666666666667,48.9166666666667");
    EXPECT_EQ(station.coordText, "8.58333333333333,48.2916666666667"); // JN48HH
    EXPECT_EQ(fields.outline, "8.0,48.0,2000 10.0,48.0,2000 10.0,49.0,2000 8.0,49.0,2000 8.0,48.0,2000 ");
    EXPECT_GT(fields.distanceKm, 50.0f);
    EXPECT_LT(fields.distanceKm, 100.0f);

    // An invalid locator leaves outline and coordinate text but still sets home.
    station.homeCoords.clear();
    for (const char* bad : { "JN4", "ZZ99" }) {
        EXPECT_FALSE(RichtungQRB(station, fields, bad)) << bad;
        EXPECT_TRUE(fields.outline.startsWith("8.0,48.0,2000 ")) << bad;
        EXPECT_EQ(station.coordText, "8.58333333333333,48.2916666666667") << bad;
    }
    EXPECT_FALSE(station.homeCoords.isEmpty());
}

TEST(RichtungQrb, ABadOwnLocatorLeavesNoHomeAndStoresDistanceAndBearingZero)
{
    for (const char* own : { "", "JN48O", "JN48OW ", "JN48OWX" }) {
        RecordingPrompts prompts;
        Station station { prompts };
        LogMapFields fields;
        fields.distanceKm = 12.0f; // from the contact before
        fields.bearing = 34.0f;
        station.homeCoords = "from before";
        station.settings.setText(Setting::MyLocator, QLatin1String(own));
        ASSERT_TRUE(RichtungQRB(station, fields, "JO62QM")) << own;
        EXPECT_EQ(station.homeCoords, QString()) << own;
        EXPECT_EQ(station.coordText, CoordText(LocatorToDegrees("JO62QM")));
        EXPECT_FALSE(fields.outline.isEmpty());
        EXPECT_EQ(fields.distanceKm, 0.0f) << own;
        EXPECT_EQ(fields.bearing, 0.0f) << own;
        EXPECT_TRUE(prompts.shown.isEmpty()); // the window that shows the result says why
    }
    // four characters stand for the HH subsquare, as for a target
    RecordingPrompts prompts;
    Station station { prompts };
    LogMapFields fields;
    station.settings.setText(Setting::MyLocator, "jn48");
    ASSERT_TRUE(RichtungQRB(station, fields, "JN48HH"));
    EXPECT_EQ(station.homeCoords, CoordText(LocatorToDegrees("JN48HH")));
    EXPECT_EQ(fields.distanceKm, 0.0f);
}
