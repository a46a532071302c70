#include "devices/lines/OutputLines.h"
#include "core/ExtensionSettings.h"
#include "devices/lines/LineChoice.h"
#include "devices/lines/LinePulser.h"
#include "devices/lines/RecordingLine.h"
#include "sim/pty/PtyPair.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

using namespace std::chrono;

TEST(LineChoice, ReadsEveryBackendAndRefusesOtherTexts)
{
    QString problem;
    EXPECT_EQ(LineChoice::parse("", &problem).kind, LineChoice::Kind::None);
    EXPECT_EQ(problem, QString());
    EXPECT_EQ(LineChoice::parse(" None ").kind, LineChoice::Kind::None);

    LineChoice s = LineChoice::parse("dtr:/dev/ttyUSB0");
    EXPECT_EQ(s.kind, LineChoice::Kind::Dtr);
    EXPECT_EQ(s.port, QString("/dev/ttyUSB0"));
    s = LineChoice::parse("RTS:3");
    EXPECT_EQ(s.kind, LineChoice::Kind::Rts);
    EXPECT_EQ(s.port, QString("3"));
    EXPECT_EQ(s.toText(), QString("rts:3"));
    s = LineChoice::parse("gpio:gpiochip0:17");
    EXPECT_EQ(s.kind, LineChoice::Kind::Gpio);
    EXPECT_EQ(s.chip, QString("gpiochip0"));
    EXPECT_EQ(s.line, 17u);
    EXPECT_EQ(s.toText(), QString("gpio:gpiochip0:17"));
    EXPECT_EQ(LineChoice::parse("gpio:/dev/gpiochip1:4").chip, QString("/dev/gpiochip1"));

    for (const char* bad : { "dtr:", "dtr", "usb:0:16", "gpio:gpiochip0", "gpio:gpiochip0:x", "gpio::3" }) {
        const LineChoice b = LineChoice::parse(bad, &problem);
        EXPECT_EQ(b.kind, LineChoice::Kind::None) << bad;
        EXPECT_TRUE(problem.contains(QString::fromLatin1(bad))) << problem.toStdString();
    }
}

TEST(OutputLines, RoutesPortZeroLines16_18_19AndIgnoresTheRest)
{
    OutputLines lines;
    auto key = std::make_shared<RecordingLine>();
    auto down = std::make_shared<RecordingLine>();
    auto up = std::make_shared<RecordingLine>();
    lines.setLine(OutputLines::Role::Key, key);
    lines.setLine(OutputLines::Role::Down, down);
    lines.setLine(OutputLines::Role::Up, up);

    lines.UsbSetIODir(0, 19, 1);
    lines.UsbSetIOState(0, 19, 1);
    lines.UsbSetIOState(0, 18, 1);
    lines.UsbSetIOState(0, 16, 1);
    lines.UsbSetIOState(0, 16, 0);
    lines.UsbSetIOState(1, 16, 1); // another port
    lines.UsbSetIOState(0, 17, 1); // another line
    lines.UsbSetIODir(0, 18, 0); // input: left alone

    EXPECT_EQ(up->outputCalls(), 1);
    EXPECT_EQ(down->outputCalls(), 0);
    ASSERT_EQ(up->edges().size(), 1u);
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
    EXPECT_TRUE(lines->line(OutputLines::Role::Up).setState(true));
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
    EXPECT_FALSE(lines->line(OutputLines::Role::Key).setState(true));
}

TEST(LinePulser, OnePulseIsOutputOnLengthOff)
{
    OutputLines lines;
    auto up = std::make_shared<RecordingLine>();
    lines.setLine(OutputLines::Role::Up, up);
    LinePulser pulser(lines);
    pulser.pulse(OutputLines::UpLine, milliseconds(50));
    pulser.waitIdle();
    EXPECT_EQ(up->outputCalls(), 1);
    const auto e = up->edges();
    ASSERT_EQ(e.size(), 2u);
    EXPECT_TRUE(e[0].on);
    EXPECT_FALSE(e[1].on);
    const double ms = duration<double, std::milli>(e[1].at - e[0].at).count();
    EXPECT_GE(ms, 50.0);
    EXPECT_LT(ms, 80.0);
}
