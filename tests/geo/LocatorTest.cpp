#include "core/Station.h"
#include "geo/Bearing.h"
#include "geo/Locator.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cmath>

TEST(Locator, ValidationFollowsThePatterns)
{
    for (const char* ok : {"JO31", "JO31mm", "JO31MM", "JO31YZ", "AA00AA", "RR99XX", "JO31MM22", "JO31MM22ax",
                           "JO31[`", "JO31Ax00^_"})
        EXPECT_TRUE(Locator::isValid(QString::fromLatin1(ok))) << ok;
    for (const char* bad : {"jo31", "Jo31", "JS31", "JO3", "JO31M", "JO31MMM", "JO31MM2", "JO31MM223",
                            "JO31MM22axx", "", "JO31My", "JO31MM2A", "JOA1", "JO31MM22a{", "SO62"})
        EXPECT_FALSE(Locator::isValid(QString::fromLatin1(bad))) << bad;
}

TEST(Locator, CheckSetsTheFlagAndPromptsOncePerFailure)
{
    RecordingPrompts prompts;
    Station station(prompts);
    CheckLocator(station, "jo31");
    EXPECT_TRUE(station.locatorInvalid);
    EXPECT_EQ(prompts.shown, QStringList{"Invalid Gridlocator:"});
    CheckLocator(station, "JO31");
    EXPECT_FALSE(station.locatorInvalid);
    EXPECT_EQ(prompts.shown.size(), 1);
}

TEST(Locator, ConversionGivesTheSouthWestCorner)
{
    auto expectAt = [](const char* l, double lon, double lat) {
        const GeoPoint p = LocatorToDegrees(QString::fromLatin1(l));
        EXPECT_DOUBLE_EQ(p.lon, lon) << l;
        EXPECT_DOUBLE_EQ(p.lat, lat) << l;
    };
    expectAt("AA00AA", -180, -90);
    expectAt("JJ00AA", 0, 0);
    expectAt("RR99XX", 178 + 23.0 / 12, 89 + 23.0 / 24);
    expectAt("JO31mm", 6 + 12.0 / 12, 51 + 12.0 / 24);
    expectAt("JO31MM", 6 + 12.0 / 12, 51 + 12.0 / 24);
    expectAt("JO31MM37", 7 + 3.0 / 120, 51.5 + 7.0 / 240);
    expectAt("JO31MM37CB", 7 + 3.0 / 120 + 2.0 / 2880, 51.5 + 7.0 / 240 + 1.0 / 5760);
    expectAt("JO31", 6, 51); // a bare square converts to its corner
    EXPECT_EQ(Locator::completed("JO31"), "JO31HH");
    EXPECT_EQ(Locator::completed("JO31MM"), "JO31MM");
    expectAt("JO31HH", 6 + 7.0 / 12, 51 + 7.0 / 24);
}

TEST(Locator, CoordinateTextHasFifteenDigitsAndNoTrailingZeros)
{
    EXPECT_EQ(CoordText(LocatorToDegrees("JN48TH")), "9.58333333333333,48.2916666666667");
    EXPECT_EQ(CoordText(LocatorToDegrees("JJ00AA")), "0,0");
    EXPECT_EQ(CoordText(LocatorToDegrees("AA00AA")), "-180,-90");
    EXPECT_EQ(CoordText({-2.5, 0.000347222222222222}), "-2.5,0.000347222222222222");
}

namespace {

// The coordinate text as it was first written, through QString::number: the stored GEgridXY
// of every log must stay what it was.
QString numberText15(double v)
{
    if (v == 0.0 || !std::isfinite(v))
        return QStringLiteral("0");
    const int magnitude = static_cast<int>(std::floor(std::log10(std::fabs(v))));
    QString s = QString::number(v, 'f', std::max(0, 14 - magnitude));
    if (s.contains(u'.')) {
        while (s.endsWith(u'0'))
            s.chop(1);
        if (s.endsWith(u'.'))
            s.chop(1);
    }
    return s == QLatin1String("-0") ? QStringLiteral("0") : s;
}

} // namespace

TEST(Locator, CoordinateTextIsWhatQStringNumberWrites)
{
    // Exact halves at the last digit kept round away from zero, carries included.
    const struct {
        double v;
        const char* text;
    } halves[]
        = { { 1 + std::ldexp(1, -15), "1.00003051757813" }, { -1 - std::ldexp(1, -15), "-1.00003051757813" },
              { 9 + std::ldexp(32767, -15), "9.99996948242188" }, { 999999999999999.5, "1000000000000000" },
              { -999999999999999.5, "-1000000000000000" }, { 12 + std::ldexp(1, -14), "12.0000610351563" },
              { 0.5 + std::ldexp(1, -17), "0.500007629394531" }, { 1e15 + 0.5, "1000000000000001" } };
    for (const auto& h : halves) {
        EXPECT_EQ(numberText15(h.v).toStdString(), h.text) << h.v;
        EXPECT_EQ(CoordText({ h.v, h.v }).toStdString(), std::string(h.text) + ',' + h.text) << h.v;
    }
    // Random points of locators of every length, random coordinates, tiny values and exact
    // binary fractions of every length.
    QRandomGenerator rng(2026);
    auto same = [](double lon, double lat) {
        const QString expected = numberText15(lon) + u',' + numberText15(lat);
        const QString text = CoordText({ lon, lat });
        EXPECT_EQ(text.toStdString(), expected.toStdString())
            << qPrintable(QString::number(lon, 'g', 17)) << " " << qPrintable(QString::number(lat, 'g', 17));
        return text == expected;
    };
    for (const double v : { 1e16, 1.234e20, -1.5e300, 1e-30, 3.3e-200, -7e-27 })
        same(v, -v); // far from any coordinate: QString::number itself
    int wrong = 0;
    for (int i = 0; i < 100000 && wrong < 10; ++i) {
        QString l;
        l += QChar(u'A' + rng.bounded(18));
        l += QChar(u'A' + rng.bounded(18));
        for (int pair = 0; pair < 1 + rng.bounded(4); ++pair) {
            const bool digits = pair % 2 == 0;
            l += QChar((digits ? u'0' : u'A') + rng.bounded(digits ? 10 : 24));
            l += QChar((digits ? u'0' : u'A') + rng.bounded(digits ? 10 : 24));
        }
        const GeoPoint p = LocatorToDegrees(Locator::completed(l));
        wrong += !same(p.lon, p.lat);
        wrong += !same(rng.bounded(360.0) - 180, rng.bounded(180.0) - 90);
        wrong += !same(
            std::ldexp(rng.bounded(1.0), -rng.bounded(80)), -std::ldexp(rng.bounded(1.0), -rng.bounded(80)));
        const int bits = rng.bounded(60);
        wrong += !same(std::ldexp(double(rng.generate64() >> (64 - std::min(53, bits + 8))), -bits),
            -std::ldexp(double(rng.generate64() >> 11), -rng.bounded(70)));
    }
}
