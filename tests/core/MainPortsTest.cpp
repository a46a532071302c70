#include "core/MainPorts.h"
#include "core/SettingsTable.h"

#include <gtest/gtest.h>

TEST(MainPorts, TableRowsGivePortSettingsAndUse)
{
    SettingsTable t;
    t.setInt16(Setting::Com2Used, 0);
    t.setText(Setting::Com2Port, QStringLiteral(" 11 "));
    t.setText(Setting::Com2Settings, QStringLiteral("9600,n,8,1"));
    t.setInt16(Setting::Com4Used, 1);
    t.setText(Setting::Com4Port, QStringLiteral("/dev/ttyUSB0"));
    t.setText(Setting::Com4Settings, QStringLiteral("4800,n,8,1"));
    const auto com2 = MainPorts::fromTable(t, 2, QString());
    EXPECT_EQ(com2.portText, QStringLiteral("11"));
    EXPECT_FALSE(com2.inUse);
    const auto com4 = MainPorts::fromTable(t, 4, QString());
    EXPECT_EQ(com4.portText, QStringLiteral("/dev/ttyUSB0"));
    EXPECT_EQ(com4.settings, QStringLiteral("4800,n,8,1"));
    EXPECT_TRUE(com4.inUse);
}

TEST(MainPorts, SensorBoxRunsAt9600OnItsOwnPort)
{
    SettingsTable t;
    t.setInt16(Setting::Com3Used, 0);
    t.setText(Setting::Com3Port, QStringLiteral("13"));
    t.setText(Setting::Com3Settings, QStringLiteral("4800,n,8,1"));
    const auto fallback = MainPorts::fromTable(t, 3, QString());
    EXPECT_EQ(fallback.portText, QStringLiteral("13"));
    EXPECT_EQ(fallback.settings, QStringLiteral("9600,n,8,1"));
    EXPECT_TRUE(fallback.inUse);
    EXPECT_EQ(
        MainPorts::fromTable(t, 3, QStringLiteral("/dev/ttyACM1")).portText, QStringLiteral("/dev/ttyACM1"));
}

TEST(MainPorts, LampTextsAndRoles)
{
    EXPECT_EQ(MainPorts::lampText(1, QStringLiteral("10")), QStringLiteral("Com1 PortNr: 10 "));
    EXPECT_EQ(MainPorts::role(3), QStringLiteral("sensor box"));
    EXPECT_EQ(MainPorts::role(4), QStringLiteral("rotator"));
}
