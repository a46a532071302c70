// Hostile clients on real TCP: garbage, a 1 MB line, a client that never reads, a hundred that
// come and go. Each is answered or dropped at once, the others are served meanwhile, and
// nothing stays behind.
#include "hub/LineServer.h"
#include "tests/hub/HubStation.h"

#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {
struct Served : HubStation {
    Served()
    {
        rig.setCounter(14430000);
        EXPECT_TRUE(server.listen(QHostAddress::LocalHost, 0));
    }
    LineServer server { QStringLiteral("rig"), [this](const QByteArray& line) {
                           const auto a = rigProtocol.answer(line);
                           return LineServer::Reply { a.bytes, a.quit };
                       } };

    // A well-behaved client's question and answer, through the event loop.
    QByteArray ask(QTcpSocket& client, const QByteArray& line, qsizetype answerSize)
    {
        client.write(line);
        QByteArray got;
        (void)QTest::qWaitFor(
            [&] {
                got += client.readAll();
                return got.size() >= answerSize;
            },
            3000);
        return got;
    }

    std::unique_ptr<QTcpSocket> connected()
    {
        auto client = std::make_unique<QTcpSocket>();
        client->connectToHost(QHostAddress::LocalHost, server.port());
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return client->state() == QAbstractSocket::ConnectedState; }, 3000));
        return client;
    }

    bool waitForClients(int n)
    {
        return QTest::qWaitFor([&] { return server.clientCount() == n; }, 5000);
    }
};

// A raw client with a small receive buffer that it never reads.
int rawClient(quint16 port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const int small = 4096;
    ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
    sockaddr_in a {};
    a.sin_family = AF_INET;
    a.sin_port = htons(port);
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a), 0);
    ::fcntl(fd, F_SETFL, O_NONBLOCK);
    return fd;
}
} // namespace

TEST(HubClients, GarbageGetsNotImplementedAndTheConnectionStaysUsable)
{
    Served s;
    auto client = s.connected();
    EXPECT_EQ(s.ask(*client, QByteArray("\x00\xff\x1b[2J garbage\n", 15), 8), "RPRT -4\n");
    EXPECT_EQ(s.ask(*client, "\\no_such_command 1 2 3\n", 8), "RPRT -4\n");
    EXPECT_EQ(s.ask(*client, "f\n", 10), "144300000\n");
}

TEST(HubClients, AOneMegabyteLineDropsThatClientOnly)
{
    Served s;
    auto flooder = s.connected();
    auto other = s.connected();
    ASSERT_TRUE(s.waitForClients(2));
    flooder->write(QByteArray(1024 * 1024, 'F'));
    EXPECT_EQ(s.ask(*other, "f\n", 10), "144300000\n");
    EXPECT_TRUE(s.waitForClients(1));
    EXPECT_EQ(s.ask(*other, "+f\n", 40), "get_freq:\nFrequency: 144300000\nRPRT 0\n");
}

TEST(HubClients, AClientThatNeverReadsIsDroppedWhileOthersAreServed)
{
    Served s;
    const int fd = rawClient(s.server.port());
    auto other = s.connected();
    ASSERT_TRUE(s.waitForClients(2));
    // \dump_state answers about 700 bytes for 12: the unread answers pile up at the server.
    const QByteArray requests = QByteArray("\\dump_state\n").repeated(100);
    bool dropped = false;
    for (int round = 0; round < 2000 && !dropped; ++round) {
        (void)::send(fd, requests.constData(), requests.size(), MSG_NOSIGNAL);
        QTest::qWait(1);
        dropped = s.server.clientCount() == 1;
    }
    EXPECT_TRUE(dropped);
    EXPECT_EQ(s.ask(*other, "f\n", 10), "144300000\n");
    ::close(fd);
}

TEST(HubClients, AHundredClientsComingAndGoingLeaveNothingBehind)
{
    Served s;
    for (int round = 0; round < 2; ++round) {
        std::vector<std::unique_ptr<QTcpSocket>> clients;
        for (int i = 0; i < 50; ++i)
            clients.push_back(s.connected());
        ASSERT_TRUE(s.waitForClients(50));
        for (auto& c : clients)
            EXPECT_EQ(s.ask(*c, "t\n", 2), "0\n");
        for (int i = 0; i < 50; ++i) {
            if (i % 2)
                clients[i]->disconnectFromHost();
            else
                clients[i]->write("q\n"); // the server closes
        }
        ASSERT_TRUE(s.waitForClients(0));
    }
    QTest::qWait(50); // the sockets go with the next turn of the event loop
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(s.server.findChildren<QTcpSocket*>().isEmpty());
}
