#include "sim/devices/SimSensorBox.h"

#include <gtest/gtest.h>

namespace {

// The main window's reading: two hexadecimal digits per byte, fields counted from 1.
QString hexText(const QByteArray& frame)
{
    return QString::fromLatin1(frame.toHex().toUpper());
}
int field(const QByteArray& frame, int at, int digits)
{
    return hexText(frame).mid(at - 1, digits).toInt(nullptr, 16);
}

const QByteArray query("\x7f\x01\x87", 3);

} // namespace

TEST(SimSensorBox, AnswersTheQueryWithElevationAtCharacter23AndTemperatureAt31)
{
    SimSensorBox box;
    const QByteArray frame = box.receive(query);
    // Elevation 0.750 at character 23 (02EE), temperature 18 at 31, closing the frame.
    EXPECT_EQ(hexText(frame), QStringLiteral("7E0187100000056409770102EE028C12"));
}

TEST(SimSensorBox, ElevationDriftsSlowlyBetweenItsLimits)
{
    SimSensorBox box;
    box.tick(45000); // a quarter of the three-minute period
    EXPECT_EQ(field(box.receive(query), 23, 4), 1200);
    box.tick(90000);
    EXPECT_EQ(field(box.receive(query), 23, 4), 300);
    box.tick(200); // one main-window tick moves it by a few thousandths at most
    const int a = box.elevationThousandths();
    box.tick(200);
    EXPECT_LE(std::abs(box.elevationThousandths() - a), 10);

    SimSensorBox warm;
    warm.tick(150000); // a quarter of the temperature's ten minutes
    EXPECT_EQ(field(warm.receive(query), 31, 2), 21);
}

TEST(SimSensorBox, OneFramePerQueryEvenWhenSplitOrSurroundedByNoise)
{
    SimSensorBox box;
    EXPECT_EQ(box.receive(QByteArray("\x00\x7f", 2)), QByteArray());
    EXPECT_EQ(box.receive(QByteArray("\x01", 1)), QByteArray());
    const QByteArray first = box.receive(QByteArray("\x87garbage", 8));
    ASSERT_EQ(first.size(), 16);
    EXPECT_EQ(field(first, 9, 4), 0); // sequence number

    const QByteArray two = box.receive(query + query);
    ASSERT_EQ(two.size(), 32);
    EXPECT_EQ(field(two.left(16), 9, 4), 1);
    EXPECT_EQ(field(two.mid(16), 9, 4), 2);
    EXPECT_EQ(box.receive(QByteArray("\x7f\x01\x88", 3)), QByteArray());
    EXPECT_EQ(box.stateLine(), QStringLiteral("elevation=750 temperature=18 replies=3"));
}
