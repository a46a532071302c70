#pragma once
// A cluster window on a station whose settings point at a test node on 127.0.0.1, in a
// temporary directory.
#include "cluster/ClusterClient.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "tests/support/TempDir.h"
#include "ui/cluster/ClusterWindow.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

// The node: records what its client sends and sends what the test gives it.
struct TestNode : QObject {
    TestNode()
    {
        server.listen(QHostAddress::LocalHost, 0);
        connect(&server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* s = server.nextPendingConnection()) {
                ++connections;
                client = s;
                connect(s, &QTcpSocket::readyRead, this, [this, s] { received += s->readAll(); });
            }
        });
    }
    quint16 port() const { return server.serverPort(); }
    void send(const QByteArray& bytes)
    {
        if (client)
            client->write(bytes);
    }
    // Closes the connection from the node's side, once what was sent has gone out.
    void dropClient()
    {
        if (client)
            client->disconnectFromHost();
    }
    bool waitForReceived(const QByteArray& bytes)
    {
        return QTest::qWaitFor([&] { return received == bytes; }, 5000);
    }
    bool waitForClient()
    {
        return QTest::qWaitFor([&] { return !client.isNull(); }, 5000);
    }

    QTcpServer server;
    QPointer<QTcpSocket> client;
    QByteArray received;
    int connections = 0;
};

struct WindowFixture {
    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    TestNode node;
    std::unique_ptr<ClusterWindow> window;

    WindowFixture()
    {
        LoadStationConfig(station);
        pointAt(1, node.port());
        station.settings.setInt16(Setting::ClusterChoice, 1);
        SaveStationConfig(station);
    }

    void pointAt(int server, quint16 port)
    {
        const int host = server == 1 ? Setting::Cluster1Host : Setting::Cluster2Host;
        station.settings.setText(host, "127.0.0.1");
        station.settings.setText(host + 1, QString::number(port));
    }

    // Opens the window (its load connects) and waits for the node to see the client.
    void open(bool waitForNode = true)
    {
        window = std::make_unique<ClusterWindow>(station);
        window->show();
        if (waitForNode) {
            EXPECT_TRUE(connectedTo(node));
        }
    }
    bool connectedTo(TestNode& n)
    {
        return n.waitForClient() && QTest::qWaitFor([&] { return window->client()->isConnected(); }, 5000);
    }

    template <class T> T* child(const char* name) const
    {
        T* w = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    void click(const char* button) { QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton); }
    void type(const char* line)
    {
        QTest::keyClicks(child<QLineEdit>("TXTinput"), line);
        QTest::keyClick(child<QLineEdit>("TXTinput"), Qt::Key_Return);
    }
    int spotRows() const { return child<QTableView>("tblSpots")->model()->rowCount(); }
    QString cell(int row, int column) const
    {
        return child<QTableView>("tblSpots")->model()->index(row, column).data().toString();
    }
    QString terminalText() const { return child<QPlainTextEdit>("TXTterm")->toPlainText(); }
    bool waitForTerminal(const QString& text, int timeoutMs = 5000) const
    {
        return QTest::qWaitFor([&] { return terminalText().contains(text); }, timeoutMs);
    }
};
