#pragma once
// A cluster window on a station whose settings point at a test node, in a temporary directory.
#include "cluster/ClusterClient.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "tests/cluster/TestNode.h"
#include "tests/support/TempDir.h"
#include "ui/cluster/ClusterWindow.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

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
            EXPECT_TRUE(node.waitForClient());
            EXPECT_TRUE(QTest::qWaitFor([&] { return window->client()->isConnected(); }, 5000));
        }
    }

    template <class T> T* child(const char* name) const
    {
        T* w = window->findChild<T*>(QString::fromLatin1(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    void click(const char* button) { QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton); }
    QString terminalText() const { return child<QPlainTextEdit>("TXTterm")->toPlainText(); }
    bool waitForTerminal(const QString& text, int timeoutMs = 5000) const
    {
        return QTest::qWaitFor([&] { return terminalText().contains(text); }, timeoutMs);
    }
};
