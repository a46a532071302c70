#include "core/SensorFrame.h"

#include <gtest/gtest.h>

namespace {
QByteArray frame(int elevation, int temperature)
{
    QByteArray f(16, '\0');
    f[0] = char(0x7e);
    f[11] = char(elevation >> 8);
    f[12] = char(elevation & 0xff);
    f[15] = char(temperature);
    return f;
}
} // namespace

TEST(SensorFrame, FieldsAtCharacters23And31)
{
    // 0x02EE = 750 thousandths at characters 23-26, 0x15 = 21 at characters 31-32
    const auto r = SensorFrame::decode(frame(750, 21));
    ASSERT_TRUE(r);
    EXPECT_EQ(SensorFrame::hexText(frame(750, 21)).mid(22, 4), QStringLiteral("02EE"));
    EXPECT_EQ(r->elevationRaw, 750);
    EXPECT_EQ(r->temperature, 21);
    EXPECT_EQ(SensorFrame::temperatureText(*r), QStringLiteral("Temp = 21"));
    EXPECT_EQ(SensorFrame::elevationText(*r), QStringLiteral("Ele = 0.8"));
}

TEST(SensorFrame, ElevationFormatHasOneDecimalAndALeadingZero)
{
    EXPECT_EQ(SensorFrame::elevationText({ 40, 0 }), QStringLiteral("Ele = 0.0"));
    EXPECT_EQ(SensorFrame::elevationText({ 1000, 0 }), QStringLiteral("Ele = 1.0"));
    EXPECT_EQ(SensorFrame::elevationText({ 65535, 0 }), QStringLiteral("Ele = 65.5"));
}

TEST(SensorFrame, ShortRepliesGiveNothingLongerOnesTheFirstFrame)
{
    EXPECT_FALSE(SensorFrame::decode(QByteArray()));
    EXPECT_FALSE(SensorFrame::decode(frame(500, 9).left(15)));
    const auto two = SensorFrame::decode(frame(500, 9) + frame(900, 30));
    ASSERT_TRUE(two);
    EXPECT_EQ(two->elevationRaw, 500);
    EXPECT_EQ(two->temperature, 9);
}
