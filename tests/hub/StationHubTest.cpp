// Kestrel.ini [hub]: both servers off unless switched on, any free port for 0, and a port or
// address that cannot be used is told to the operator instead of failing silently.
#include "hub/StationHub.h"
#include "core/ExtensionSettings.h"
#include "hub/LineServer.h"
#include "tests/hub/HubStation.h"
#include "tests/support/TempDir.h"

#include <QTcpServer>
#include <gtest/gtest.h>

namespace {
struct Hub : HubStation {
    std::unique_ptr<StationHub> start()
    {
        auto hub
            = std::make_unique<StationHub>(station, ports, rig, rotatorController, HubRotator::Window {});
        hub->start();
        return hub;
    }
    TempDir dir;
};
} // namespace

TEST(StationHub, BothServersAreOffUnlessSwitchedOn)
{
    Hub h;
    auto hub = h.start();
    EXPECT_EQ(hub->rigServer(), nullptr);
    EXPECT_EQ(hub->rotatorServer(), nullptr);
    EXPECT_TRUE(h.prompts.shown.isEmpty());
}

TEST(StationHub, PortZeroTakesAnyFreePortOnTheGivenAddress)
{
    Hub h;
    for (const QString& key : { ExtensionKey::HubRig, ExtensionKey::HubRotator })
        ExtensionSettings::setValue(key, QStringLiteral("on"));
    ExtensionSettings::setValue(ExtensionKey::HubRigPort, QStringLiteral("0"));
    ExtensionSettings::setValue(ExtensionKey::HubRotatorPort, QStringLiteral("0"));
    auto hub = h.start();
    ASSERT_NE(hub->rigServer(), nullptr);
    ASSERT_NE(hub->rotatorServer(), nullptr);
    EXPECT_NE(hub->rigServer()->port(), 0);
    EXPECT_NE(hub->rigServer()->port(), hub->rotatorServer()->port());
    EXPECT_TRUE(h.prompts.shown.isEmpty());
}

TEST(StationHub, AServerThatCannotListenIsReported)
{
    QTcpServer taken;
    ASSERT_TRUE(taken.listen(QHostAddress::LocalHost, 0));
    struct Case {
        QString address;
        QString port;
        QString message;
    };
    const QString prefix = QStringLiteral("Kestrel.ini [hub]: the rig server is not running (");
    for (const Case& c : {
             Case { "127.0.0.1", QString::number(taken.serverPort()),
                 prefix + "127.0.0.1:" + QString::number(taken.serverPort())
                     + ": The bound address is already in use)." },
             Case { "localhost", "4532", prefix + "hub/address \"localhost\" is not an IP address)." },
             Case { "127.0.0.1", "70000", prefix + "hub/rigPort \"70000\" is not a port number)." },
         }) {
        Hub h;
        ExtensionSettings::setValue(ExtensionKey::HubRig, QStringLiteral("on"));
        ExtensionSettings::setValue(ExtensionKey::HubAddress, c.address);
        ExtensionSettings::setValue(ExtensionKey::HubRigPort, c.port);
        auto hub = h.start();
        EXPECT_EQ(hub->rigServer(), nullptr);
        EXPECT_EQ(h.prompts.shown, QStringList { c.message });
    }
}
