// A port another program holds is reported busy, never shared.
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
// Another process holding the port: opens it, takes it the way `how` says, and keeps it
// until the object goes.
class Holder {
public:
    enum class How { Exclusive, Flock };
    Holder(const QString& path, How how)
    {
        int ready[2];
        if (::pipe(ready) != 0 || ::pipe(release_) != 0)
            return;
        const QByteArray p = QFile::encodeName(path);
        pid_ = ::fork();
        if (pid_ == 0) { // only async-signal-safe calls from here on
            ::close(ready[0]);
            ::close(release_[1]);
            const int fd = ::open(p.constData(), O_RDWR | O_NOCTTY);
            const bool held = fd >= 0
                && (how == How::Exclusive ? ::ioctl(fd, TIOCEXCL) == 0 : ::flock(fd, LOCK_EX | LOCK_NB) == 0);
            const char answer = held ? 'y' : 'n';
            (void)!::write(ready[1], &answer, 1);
            char c;
            while (::read(release_[0], &c, 1) > 0) { }
            if (how == How::Exclusive)
                ::ioctl(fd, TIOCNXCL);
            ::_exit(0);
        }
        ::close(ready[1]);
        ::close(release_[0]);
        char answer = 'n';
        held_ = ::read(ready[0], &answer, 1) == 1 && answer == 'y';
        ::close(ready[0]);
    }
    ~Holder()
    {
        ::close(release_[1]);
        if (pid_ > 0)
            ::waitpid(pid_, nullptr, 0);
    }
    bool held() const { return held_; }

private:
    pid_t pid_ = -1;
    int release_[2] = { -1, -1 };
    bool held_ = false;
};
} // namespace

TEST(QtSerialLink, APortAnotherProcessHoldsIsReportedBusy)
{
    const struct {
        Holder::How how;
        const char* name;
    } holders[]
        = { { Holder::How::Exclusive, "TIOCEXCL (gpsd)" }, { Holder::How::Flock, "flock (picocom)" } };
    for (const auto& h : holders) {
        SCOPED_TRACE(h.name);
        PtyPair pty;
        QtSerialLink link;
        QSignalSpy errors(&link, &SerialLink::errorOccurred);
        {
            Holder holder(pty.slavePath(), h.how);
            ASSERT_TRUE(holder.held());
            EXPECT_FALSE(link.open(pty.slavePath(), QStringLiteral("9600,n,8,1")));
            EXPECT_FALSE(link.isOpen());
            EXPECT_TRUE(link.isBusy());
            EXPECT_EQ(link.errorText(), pty.slavePath() + ": the port is busy (another program has it open)");
            EXPECT_EQ(errors.count(), 1);
        }
        // once the other program lets go, the port is ours, and held so
        ASSERT_TRUE(link.open(pty.slavePath(), QStringLiteral("9600,n,8,1")))
            << link.errorText().toStdString();
        EXPECT_FALSE(link.isBusy());
        Holder late(pty.slavePath(), Holder::How::Flock);
        EXPECT_FALSE(late.held());
    }
}
