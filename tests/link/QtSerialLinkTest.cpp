#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <termios.h>

namespace {

const QString lineSettings = QStringLiteral("9600,n,8,1");

// Reads from the link until `count` bytes have come or two seconds have passed.
QByteArray readFromLink(SerialLink& link, int count)
{
    QByteArray got;
    (void)QTest::qWaitFor(
        [&] {
            got += link.readAll();
            return got.size() >= count;
        },
        2000);
    return got;
}

} // namespace

TEST(QtSerialLink, CarriesEveryByteUnchangedBothWays)
{
    PtyPair pty;
    ASSERT_TRUE(pty.isOpen()) << pty.errorText().toStdString();
    QtSerialLink link;
    ASSERT_TRUE(link.open(pty.slavePath(), lineSettings)) << link.errorText().toStdString();

    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    EXPECT_EQ(link.write(all), 256);
    EXPECT_EQ(pty.readExactly(256), all);

    QSignalSpy ready(&link, &SerialLink::readyRead);
    ASSERT_TRUE(pty.write(all));
    EXPECT_EQ(readFromLink(link, 256), all);
    EXPECT_GE(ready.count(), 1);
}

TEST(QtSerialLink, AppliesTheLineSettingsToTheLine)
{
    PtyPair pty;
    QtSerialLink link;
    ASSERT_TRUE(link.open(pty.slavePath(), QStringLiteral("4800,n,8,2")));
    termios tio {};
    ASSERT_EQ(tcgetattr(pty.masterFd(), &tio), 0); // a master reports its slave's settings
    EXPECT_EQ(cfgetospeed(&tio), speed_t(B4800));
    EXPECT_EQ(tio.c_cflag & CSIZE, tcflag_t(CS8));
    EXPECT_TRUE(tio.c_cflag & CSTOPB);
}

TEST(QtSerialLink, RefusesSettingsNamingThePortAndTheReason)
{
    PtyPair pty;
    QtSerialLink link;
    QSignalSpy errors(&link, &SerialLink::errorOccurred);
    EXPECT_FALSE(link.open(pty.slavePath(), QStringLiteral("9600,x,8,1")));
    EXPECT_FALSE(link.isOpen());
    const QString expected = pty.slavePath()
        + QStringLiteral(": line settings \"9600,x,8,1\" refused: parity \"x\" must be n, e, o, m or s");
    ASSERT_EQ(errors.count(), 1);
    EXPECT_EQ(errors.at(0).at(0).toString(), expected);
    EXPECT_EQ(link.errorText(), expected);
    EXPECT_EQ(link.write("AI1;"), -1);

    // A pseudo-terminal carries only eight data bits without parity, like some USB adapters.
    EXPECT_FALSE(link.open(pty.slavePath(), QStringLiteral("4800,e,7,1")));
    EXPECT_EQ(link.errorText(),
        pty.slavePath()
            + QStringLiteral(": the port does not take the line settings \"4800,e,7,1\" (Invalid argument)"));
    EXPECT_EQ(errors.count(), 2);
    EXPECT_TRUE(link.open(pty.slavePath(), lineSettings));
}

TEST(QtSerialLink, ReportsAPortThatDoesNotExist)
{
    QtSerialLink link;
    QSignalSpy errors(&link, &SerialLink::errorOccurred);
    EXPECT_FALSE(link.open(QStringLiteral("/dev/kestrel-no-such-port"), lineSettings));
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.errorText(), QStringLiteral("/dev/kestrel-no-such-port: no such port"));
    ASSERT_EQ(errors.count(), 1);
    EXPECT_FALSE(link.open(QStringLiteral("0"), lineSettings));
    EXPECT_TRUE(link.errorText().startsWith(QStringLiteral("0: not a port")));
}

TEST(QtSerialLink, ClosesAndReportsWhenTheDeviceVanishes)
{
    auto pty = std::make_unique<PtyPair>();
    const QString path = pty->slavePath();
    QtSerialLink link;
    ASSERT_TRUE(link.open(path, lineSettings));
    QSignalSpy errors(&link, &SerialLink::errorOccurred);

    pty->closeMaster();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !errors.isEmpty(); }, 3000));
    EXPECT_FALSE(link.isOpen());
    EXPECT_TRUE(link.errorText().startsWith(path + QStringLiteral(": the device vanished while open")))
        << link.errorText().toStdString();
    EXPECT_EQ(link.write("AI1;"), -1);
    QTest::qWait(50);
    EXPECT_EQ(errors.count(), 1); // said once, not once per failed poll

    // The same link works again on a new device (the old path may already name another one).
    PtyPair again;
    ASSERT_TRUE(link.open(again.slavePath(), lineSettings));
    link.write("ST;");
    EXPECT_EQ(again.readExactly(3), QByteArray("ST;"));
}

TEST(QtSerialLink, ReopensAfterCloseAndMovesToAnotherPort)
{
    PtyPair pty, other;
    QtSerialLink link;
    ASSERT_TRUE(link.open(pty.slavePath(), lineSettings));
    link.close();
    EXPECT_FALSE(link.isOpen());
    EXPECT_EQ(link.write("x"), -1);
    link.close(); // twice is harmless
    ASSERT_TRUE(link.open(pty.slavePath(), QStringLiteral("4800,n,8,1")));
    pty.write("123");
    EXPECT_EQ(readFromLink(link, 3), QByteArray("123"));

    ASSERT_TRUE(link.open(other.slavePath(), lineSettings)); // while open: moves
    link.write("ST;");
    EXPECT_EQ(other.readExactly(3), QByteArray("ST;"));
    EXPECT_EQ(pty.readFor(50), QByteArray());
}
