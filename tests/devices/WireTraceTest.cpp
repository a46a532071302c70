#include "StationRig.h"
#include "core/ExtensionSettings.h"
#include "devices/link/LinkLog.h"
#include "devices/link/TracingLink.h"
#include "devices/rig/RigController.h"
#include "tests/support/TempDir.h"

#include <QRegularExpression>
#include <QTest>
#include <gtest/gtest.h>

#include <mutex>

namespace {
// Collects what the kestrel.devices.link category writes.
class LinkMessages {
public:
    LinkMessages()
    {
        self_ = this;
        previous_ = qInstallMessageHandler(&LinkMessages::handle);
    }
    ~LinkMessages()
    {
        qInstallMessageHandler(previous_);
        self_ = nullptr;
        const_cast<QLoggingCategory&>(lcLink()).setEnabled(QtDebugMsg, false);
    }
    QStringList lines() const
    {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        if (self_ && type == QtDebugMsg && qstrcmp(context.category, "kestrel.devices.link") == 0) {
            const std::lock_guard lock(self_->mutex_);
            self_->lines_ << text;
        }
    }
    static inline LinkMessages* self_ = nullptr;
    QtMessageHandler previous_ = nullptr;
    mutable std::mutex mutex_;
    QStringList lines_;
};

// The station with Kestrel.ini written before its ports are made.
struct TracedStation {
    TempDir dir;
    LinkMessages messages;
    std::unique_ptr<StationRig> rig;
    explicit TracedStation(const QByteArray& ini)
    {
        dir.write("Kestrel.ini", ini);
        rig = std::make_unique<StationRig>();
    }
    // The trace lines with their time stamps checked and taken off.
    QStringList traced() const
    {
        static const QRegularExpression stamp(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d\\d\\d "));
        QStringList out;
        for (const QString& line : messages.lines())
            if (line.contains(stamp))
                out << line.mid(13);
        return out;
    }
};
} // namespace

TEST(WireTrace, ABandClickShowsTheExactBytesOnBothPorts)
{
    TracedStation t("[trace]\nlink=true\n");
    StationRig& s = *t.rig;
    ASSERT_TRUE(s.open(1));
    ASSERT_TRUE(s.open(2));
    RigController rig(s.station, s.ports);
    rig.setPresetFlag(true);
    rig.OptBandV_Click(2); // 144.2 MHz
    s.received(1, 5);
    s.received(2, 8);
    ASSERT_TRUE(s.pty[0].write(QByteArray::fromHex("1442000001")));
    (void)QTest::qWaitFor(
        [&] { return s.ports.com(1).readAll().size() > 0 || t.traced().size() >= 3; }, 2000);

    const QString com1 = s.pty[0].slavePath();
    const QString com2 = s.pty[1].slavePath();
    EXPECT_EQ(t.traced(),
        (QStringList { com2 + " sent 31 34 34 32 30 30 30 30", com1 + " sent 14 42 00 00 01",
            com1 + " received 14 42 00 00 01" }));
}

TEST(WireTrace, StaysSilentUnlessSwitchedOn)
{
    TracedStation t("");
    StationRig& s = *t.rig;
    ASSERT_TRUE(s.open(1));
    EXPECT_EQ(s.ports.com(1).write("FA;"), 3);
    s.received(1, 3);
    EXPECT_TRUE(t.traced().isEmpty()) << t.traced().join('\n').toStdString();
    EXPECT_EQ(TracingLink::traceLine("/dev/ttyUSB0", true, QByteArray("\x00\xff;", 3)),
        QString("/dev/ttyUSB0 sent 00 ff 3b"));
}
