#include "devices/lines/OutputLines.h"
#include "StationRig.h"
#include "core/ExtensionSettings.h"
#include "devices/lines/LineChoice.h"
#include "devices/lines/RecordingLine.h"
#include "sim/pty/PtyPair.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

TEST(LineChoice, ReadsEveryBackendAndRefusesOtherTexts)
{
    using K = LineChoice::Kind;
    EXPECT_EQ(LineChoice::parse("").kind, K::None);
    EXPECT_EQ(LineChoice::parse(" None ").kind, K::None);
    EXPECT_EQ(LineChoice::parse("dtr:/dev/ttyUSB0"), (LineChoice { K::Dtr, "/dev/ttyUSB0", {}, 0 }));
    EXPECT_EQ(LineChoice::parse("RTS:3"), (LineChoice { K::Rts, "3", {}, 0 }));
    EXPECT_EQ(LineChoice::parse("RTS:3").toText(), QString("rts:3"));
    const LineChoice gpio = LineChoice::parse("gpio:gpiochip0:17");
    EXPECT_EQ(gpio, (LineChoice { K::Gpio, {}, "gpiochip0", 17 }));
    EXPECT_EQ(gpio.toText(), QString("gpio:gpiochip0:17"));
    EXPECT_EQ(LineChoice::parse("gpio:/dev/gpiochip1:4").chip, QString("/dev/gpiochip1"));

    for (const char* bad : { "dtr:", "dtr", "usb:0:16", "gpio:gpiochip0", "gpio:gpiochip0:x", "gpio::3" }) {
        QString problem;
        EXPECT_EQ(LineChoice::parse(bad, &problem).kind, K::None) << bad;
        EXPECT_TRUE(problem.contains(QString::fromLatin1(bad))) << problem.toStdString();
    }
}

TEST(OutputLines, RoutesPortZeroLines16_18_19AndIgnoresTheRest)
{
    StationRig r;
    auto [lines, key, up, down] = std::tie(r.lines, r.key, r.up, r.down);
    lines.UsbSetIODir(0, 19, 1);
    lines.UsbSetIOState(0, 19, 1);
    lines.UsbSetIOState(0, 19, 0);
    lines.UsbSetIOState(0, 18, 1);
    lines.UsbSetIOState(0, 16, 1);
    lines.UsbSetIOState(0, 16, 0);
    lines.UsbSetIOState(1, 16, 1); // another port
    lines.UsbSetIOState(0, 17, 1); // another line
    lines.UsbSetIODir(0, 18, 0); // input: left alone

    EXPECT_EQ(up->outputCalls(), 1);
    EXPECT_EQ(down->outputCalls(), 0);
    ASSERT_EQ(up->edges().size(), 2u);
    EXPECT_TRUE(up->edges()[0].on);
    ASSERT_EQ(down->edges().size(), 1u);
    ASSERT_EQ(key->edges().size(), 2u);
    EXPECT_TRUE(key->edges()[0].on);
    EXPECT_FALSE(key->edges()[1].on);
}

TEST(OutputLines, DefaultIsNoneAndEveryCallSucceedsSilently)
{
    TempDir dir;
    const auto lines = OutputLines::fromSettings();
    EXPECT_TRUE(lines->problems().isEmpty());
    EXPECT_EQ(lines->line(OutputLines::Role::Key).description(), QString("none"));
    lines->UsbSetIODir(0, 16, 1);
    lines->UsbSetIOState(0, 16, 1);
    EXPECT_TRUE(lines->UsbSetIOState(0, 19, 1));
}

TEST(OutputLines, BackendsThatCannotBeHadAreNamedAndLeaveTheLineSilent)
{
    TempDir dir;
    ExtensionSettings::setValue(ExtensionKey::KeyLine, "dtr:/dev/no-such-port-here");
    ExtensionSettings::setValue(ExtensionKey::UpLine, "gpio:no-such-chip:3");
    ExtensionSettings::setValue(ExtensionKey::DownLine, "relay:7");
    const auto lines = OutputLines::fromSettings();
    const QStringList p = lines->problems();
    ASSERT_EQ(p.size(), 3) << p.join('\n').toStdString();
    EXPECT_TRUE(p[0].startsWith("Kestrel.ini lines/key: /dev/no-such-port-here: ")) << p[0].toStdString();
    EXPECT_TRUE(p[1].startsWith("Kestrel.ini lines/down: \"relay:7\" is not an output line"))
        << p[1].toStdString();
    EXPECT_TRUE(p[2].startsWith("Kestrel.ini lines/up: GPIO chip no-such-chip: ")) << p[2].toStdString();
    for (auto role : { OutputLines::Role::Key, OutputLines::Role::Down, OutputLines::Role::Up })
        EXPECT_EQ(lines->line(role).description(), QString("none"));
}

TEST(OutputLines, SerialLinesShareTheirPortAndSayWhenItHasNoControlLines)
{
    TempDir dir;
    PtyPair pty; // a pseudo-terminal opens, but has no DTR or RTS
    ExtensionSettings::setValue(ExtensionKey::KeyLine, "dtr:" + pty.slavePath());
    ExtensionSettings::setValue(ExtensionKey::UpLine, "rts:" + pty.slavePath());
    const auto lines = OutputLines::fromSettings();
    EXPECT_EQ(lines->line(OutputLines::Role::Key).description(), "dtr:" + pty.slavePath());
    EXPECT_EQ(lines->line(OutputLines::Role::Up).description(), "rts:" + pty.slavePath());
    ASSERT_EQ(lines->problems().size(), 1); // one port, opened once
    EXPECT_TRUE(lines->problems()[0].contains("no DTR/RTS control lines"))
        << lines->problems()[0].toStdString();
    EXPECT_FALSE(lines->UsbSetIOState(0, 16, 1));
}
