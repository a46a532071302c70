#include "hub/StationHub.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "hub/LineServer.h"

StationHub::StationHub(Station& station, StationPorts& ports, RigController& rig, RotatorController& rotator,
    HubRotator::Window window, QObject* parent)
    : QObject(parent)
    , station_(station)
    , rig_(station, ports, rig)
    , rotator_(rotator, std::move(window))
    , rigProtocol_(rig_)
    , rotatorProtocol_(rotator_)
{
}

void StationHub::start()
{
    rigServer_ = serve(QStringLiteral("rig"), ExtensionKey::HubRig, ExtensionKey::HubRigPort, 4532,
        [this](const QByteArray& line) { return rigProtocol_.answer(line); });
    rotatorServer_ = serve(QStringLiteral("rotator"), ExtensionKey::HubRotator, ExtensionKey::HubRotatorPort,
        4533, [this](const QByteArray& line) { return rotatorProtocol_.answer(line); });
}

LineServer* StationHub::serve(const QString& name, const QString& switchKey, const QString& portKey,
    quint16 defaultPort, std::function<HamlibCommands::Answer(const QByteArray&)> answer)
{
    if (ExtensionSettings::value(switchKey).compare(u"on", Qt::CaseInsensitive) != 0)
        return nullptr;
    const QString addressText
        = ExtensionSettings::value(ExtensionKey::HubAddress, QStringLiteral("127.0.0.1"));
    const QString portText = ExtensionSettings::value(portKey, QString::number(defaultPort));
    bool portOk = false;
    const uint port = portText.toUInt(&portOk);
    const QHostAddress address(addressText);
    QString problem;
    if (address.isNull())
        problem = QStringLiteral("hub/address \"%1\" is not an IP address").arg(addressText);
    else if (!portOk || port > 65535)
        problem = QStringLiteral("%1 \"%2\" is not a port number").arg(portKey, portText);
    auto* server = new LineServer(
        name,
        [answer = std::move(answer)](const QByteArray& line) {
            const HamlibCommands::Answer a = answer(line);
            return LineServer::Reply { a.bytes, a.quit };
        },
        this);
    if (problem.isEmpty() && !server->listen(address, static_cast<quint16>(port)))
        problem = QStringLiteral("%1:%2: %3").arg(addressText).arg(port).arg(server->errorText());
    if (problem.isEmpty())
        return server;
    delete server;
    station_.prompts.information(
        QStringLiteral("Kestrel.ini [hub]: the %1 server is not running (%2).").arg(name, problem));
    return nullptr;
}
