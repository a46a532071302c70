#include "tests/support/PgServer.h"
#include "tests/support/PgSession.h"
#include "tests/support/TempDir.h"

#include <QFileInfo>
#include <QTcpSocket>

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

class PgServerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        qunsetenv("PGPASSWORD");
        QString error;
        ASSERT_TRUE(server.start(&error)) << error.toStdString();
        qputenv("PGPASSFILE", server.passFile().toLocal8Bit());
    }

    // Owner of a process, from /proc.
    static int uidOf(qint64 pid)
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(pid));
        if (!status.open(QIODevice::ReadOnly))
            return -1;
        for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine())
            if (line.startsWith("Uid:"))
                return line.mid(4).simplified().split(' ').value(0).toInt();
        return -1;
    }

    bool canConnect(const char* address) const
    {
        QTcpSocket s;
        s.connectToHost(QString::fromLatin1(address), quint16(server.port()));
        return s.waitForConnected(3000);
    }

    PgServer server;
};

TEST_F(PgServerTest, RunsUnprivilegedAndListensOnLoopbackOnly)
{
    PgSession db(server.uri("postgres"));
    ASSERT_TRUE(db.opened()) << db.error().toStdString();
    const qint64 backend = db.value("SELECT pg_backend_pid()").toLongLong();
    EXPECT_GT(uidOf(backend), 0);
    EXPECT_EQ(server.account().isEmpty(), geteuid() != 0);
    EXPECT_EQ(db.value("SHOW listen_addresses").toString(), "127.0.0.1");
    EXPECT_EQ(db.value("SHOW port").toInt(), server.port());
    EXPECT_EQ(db.value("SELECT current_user").toString(), "kestrel");
    EXPECT_EQ(db.value("SHOW server_encoding").toString(), "UTF8");
    EXPECT_TRUE(canConnect("127.0.0.1"));
    // All of 127/8 reaches this machine; the server must answer only its own address.
    EXPECT_FALSE(canConnect("127.0.0.2"));
    EXPECT_EQ(
        server.uri("club"), QStringLiteral("postgresql://kestrel@127.0.0.1:%1/club").arg(server.port()));
    // libpq ignores a password file others may read.
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup
        | QFileDevice::ExeGroup | QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
    EXPECT_FALSE(QFileInfo(server.passFile()).permissions() & others);
}

TEST_F(PgServerTest, PasswordComesFromThePassFileOnly)
{
    TempDir tmp;
    tmp.write("wrong", QStringLiteral("127.0.0.1:%1:*:kestrel:not-it\n").arg(server.port()).toUtf8());
    QFile::setPermissions(tmp.file("wrong"), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    struct Case {
        QString passFile;
        bool opens;
        QString error;
    };
    const Case cases[] = {
        { server.passFile(), true, "" },
        { tmp.file("missing"), false, "fe_sendauth: no password supplied" },
        { tmp.file("wrong"), false, "password authentication failed for user \"kestrel\"" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.passFile.toStdString());
        qputenv("PGPASSFILE", c.passFile.toLocal8Bit());
        PgSession db(server.uri("postgres"));
        EXPECT_EQ(db.opened(), c.opens);
        EXPECT_TRUE(db.error().contains(c.error)) << db.error().toStdString();
    }
}

} // namespace
