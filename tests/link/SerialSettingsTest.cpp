#include "devices/link/SerialSettings.h"
#include "devices/link/PortText.h"

#include <gtest/gtest.h>

using P = SerialSettings::Parity;
using S = SerialSettings::StopBits;

TEST(SerialSettings, ReadsEveryPartOfTheText)
{
    const std::tuple<const char*, SerialSettings, const char*> cases[] = {
        { "9600,n,8,1", { 9600, P::None, 8, S::One }, "9600,n,8,1" },
        { " 4800 , E , 7 , 2 ", { 4800, P::Even, 7, S::Two }, "4800,e,7,2" },
        { "1200,O,5,1.5", { 1200, P::Odd, 5, S::OneAndHalf }, "1200,o,5,1.5" },
        { "300,m,6,1", { 300, P::Mark, 6, S::One }, "300,m,6,1" },
        { "57600,S,8,2", { 57600, P::Space, 8, S::Two }, "57600,s,8,2" },
    };
    for (const auto& [text, settings, normal] : cases) {
        const auto parsed = SerialSettings::parse(QString::fromLatin1(text));
        ASSERT_TRUE(parsed) << text;
        EXPECT_EQ(*parsed, settings) << text;
        EXPECT_EQ(parsed->toText(), QString::fromLatin1(normal));
    }
}

TEST(SerialSettings, RefusesABadTextWithTheReason)
{
    const QString fourParts = QStringLiteral(
        "refused: expected four parts, baud,parity,data bits,stop bits, such as \"9600,n,8,1\"");
    const std::pair<const char*, QString> cases[] = {
        { "9600,n,8", fourParts },
        { "9600,n,8,1,1", fourParts },
        // "..." ends a reason of which only the start is checked
        { "96o0,n,8,1", "refused: baud rate \"96o0\" is not a whole number from 1 to 4000000" },
        { "0,n,8,1", "refused: baud rate \"0\" is not..." },
        { "9600,none,8,1", "refused: parity \"none\" must be n, e, o, m or s" },
        { "9600,n,9,1", "refused: data bits \"9\" must be 5, 6, 7 or 8" },
        { "9600,n,4,1", "refused: data bits \"4\" must be..." },
        { "9600,n,8,3", "refused: stop bits \"3\" must be 1, 1.5 or 2" },
    };
    for (const auto& [text, reason] : cases) {
        QString problem;
        EXPECT_FALSE(SerialSettings::parse(QString::fromLatin1(text), &problem)) << text;
        const QString wanted
            = QStringLiteral("line settings \"%1\" %2").arg(QString::fromLatin1(text), reason);
        if (wanted.endsWith(QLatin1String("...")))
            EXPECT_TRUE(problem.startsWith(wanted.chopped(3))) << problem.toStdString();
        else
            EXPECT_EQ(problem, wanted);
    }
}

TEST(PortText, ANumberNamesAComPortAnythingElseIsAPath)
{
    using PortText::Platform;
    const std::tuple<const char*, Platform, const char*> paths[]
        = { { "1", Platform::Linux, "/dev/ttyS0" }, { "10", Platform::Linux, "/dev/ttyS9" },
              { " 13 ", Platform::Linux, "/dev/ttyS12" }, { "07", Platform::Linux, "/dev/ttyS6" },
              { "10", Platform::Windows, "COM10" }, { "/dev/ttyUSB0", Platform::Linux, "/dev/ttyUSB0" },
              { "/dev/pts/5", Platform::Windows, "/dev/pts/5" }, { "COM3", Platform::Windows, "COM3" },
              { "0", Platform::Linux, "" }, { "", Platform::Linux, "" } };
    for (const auto& [text, platform, path] : paths)
        EXPECT_EQ(PortText::devicePath(QString::fromLatin1(text), platform), QString::fromLatin1(path))
            << text;

    EXPECT_EQ(PortText::displayName("10", Platform::Linux), QStringLiteral("10 (/dev/ttyS9)"));
    EXPECT_EQ(PortText::displayName("/dev/pts/3", Platform::Linux), QStringLiteral("/dev/pts/3"));
    EXPECT_EQ(PortText::displayName("0", Platform::Linux), QStringLiteral("0"));
}
