#include "devices/link/SerialSettings.h"
#include "devices/link/PortText.h"

#include <gtest/gtest.h>

using P = SerialSettings::Parity;
using S = SerialSettings::StopBits;

TEST(SerialSettings, ReadsEveryPartOfTheText)
{
    const auto a = SerialSettings::parse(QStringLiteral("9600,n,8,1"));
    ASSERT_TRUE(a);
    EXPECT_EQ(*a, (SerialSettings { 9600, P::None, 8, S::One }));

    const auto b = SerialSettings::parse(QStringLiteral(" 4800 , E , 7 , 2 "));
    ASSERT_TRUE(b);
    EXPECT_EQ(*b, (SerialSettings { 4800, P::Even, 7, S::Two }));

    EXPECT_EQ(SerialSettings::parse(QStringLiteral("1200,o,5,1.5"))->parity, P::Odd);
    EXPECT_EQ(SerialSettings::parse(QStringLiteral("1200,o,5,1.5"))->stopBits, S::OneAndHalf);
    EXPECT_EQ(SerialSettings::parse(QStringLiteral("300,m,6,1"))->parity, P::Mark);
    EXPECT_EQ(SerialSettings::parse(QStringLiteral("300,S,6,1"))->parity, P::Space);
    EXPECT_EQ(SerialSettings::parse(QStringLiteral("57600,s,8,2"))->toText(), QStringLiteral("57600,s,8,2"));
    EXPECT_EQ(
        SerialSettings::parse(QStringLiteral("1200,O,5,1.5"))->toText(), QStringLiteral("1200,o,5,1.5"));
}

TEST(SerialSettings, RefusesABadTextWithTheReason)
{
    const auto refused = [](const char* text) {
        QString problem;
        EXPECT_FALSE(SerialSettings::parse(QString::fromLatin1(text), &problem)) << text;
        return problem;
    };
    EXPECT_EQ(refused("9600,n,8"),
        QStringLiteral("line settings \"9600,n,8\" refused: expected four parts, baud,parity,data bits,stop "
                       "bits, such as \"9600,n,8,1\""));
    EXPECT_EQ(refused(""),
        QStringLiteral("line settings \"\" refused: expected four parts, baud,parity,data "
                       "bits,stop bits, such as \"9600,n,8,1\""));
    EXPECT_EQ(refused("9600,n,8,1,1").left(35), QStringLiteral("line settings \"9600,n,8,1,1\" refuse"));
    EXPECT_EQ(refused("96o0,n,8,1"),
        QStringLiteral(
            "line settings \"96o0,n,8,1\" refused: baud rate \"96o0\" is not a whole number from 1 "
            "to 4000000"));
    EXPECT_EQ(refused("0,n,8,1").contains(QStringLiteral("baud rate \"0\"")), true);
    EXPECT_EQ(refused("-9600,n,8,1").contains(QStringLiteral("baud rate \"-9600\"")), true);
    EXPECT_EQ(refused("9600,x,8,1"),
        QStringLiteral("line settings \"9600,x,8,1\" refused: parity \"x\" must be n, e, o, m or s"));
    EXPECT_EQ(refused("9600,none,8,1").contains(QStringLiteral("parity \"none\"")), true);
    EXPECT_EQ(refused("9600,n,9,1"),
        QStringLiteral("line settings \"9600,n,9,1\" refused: data bits \"9\" must be 5, 6, 7 or 8"));
    EXPECT_EQ(refused("9600,n,4,1").contains(QStringLiteral("data bits \"4\"")), true);
    EXPECT_EQ(refused("9600,n,8,3"),
        QStringLiteral("line settings \"9600,n,8,3\" refused: stop bits \"3\" must be 1, 1.5 or 2"));
    EXPECT_EQ(refused("9600,n,8,").contains(QStringLiteral("stop bits \"\"")), true);
}

TEST(PortText, ANumberNamesAComPortAnythingElseIsAPath)
{
    using PortText::Platform;
    EXPECT_EQ(PortText::devicePath(QStringLiteral("1"), Platform::Linux), QStringLiteral("/dev/ttyS0"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("10"), Platform::Linux), QStringLiteral("/dev/ttyS9"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral(" 13 "), Platform::Linux), QStringLiteral("/dev/ttyS12"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("07"), Platform::Linux), QStringLiteral("/dev/ttyS6"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("10"), Platform::Windows), QStringLiteral("COM10"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("1"), Platform::Windows), QStringLiteral("COM1"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("/dev/ttyUSB0"), Platform::Linux),
        QStringLiteral("/dev/ttyUSB0"));
    EXPECT_EQ(
        PortText::devicePath(QStringLiteral("/dev/pts/5"), Platform::Windows), QStringLiteral("/dev/pts/5"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("COM3"), Platform::Windows), QStringLiteral("COM3"));
    EXPECT_EQ(PortText::devicePath(QStringLiteral("0"), Platform::Linux), QString());
    EXPECT_EQ(PortText::devicePath(QStringLiteral(""), Platform::Linux), QString());

    EXPECT_EQ(
        PortText::displayName(QStringLiteral("10"), Platform::Linux), QStringLiteral("10 (/dev/ttyS9)"));
    EXPECT_EQ(
        PortText::displayName(QStringLiteral("/dev/pts/3"), Platform::Linux), QStringLiteral("/dev/pts/3"));
    EXPECT_EQ(PortText::displayName(QStringLiteral("0"), Platform::Linux), QStringLiteral("0"));
}
