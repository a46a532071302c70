#pragma once
// The station hub: Kestrel holds the rig and the rotator and serves them to the station's other
// programs through Hamlib's rigctld and rotctld protocols on TCP (Kestrel.ini [hub], both off by
// default). Works on the main window's RigController and RotatorController.
#include "hub/HubRig.h"
#include "hub/HubRotator.h"
#include "hub/RigctlProtocol.h"
#include "hub/RotctlProtocol.h"

#include <QObject>

class LineServer;
class Station;

class StationHub : public QObject {
    Q_OBJECT
public:
    StationHub(Station& station, StationPorts& ports, RigController& rig, RotatorController& rotator,
        HubRotator::Window window, QObject* parent = nullptr);

    // Listens as Kestrel.ini says; a server that cannot listen is reported to the operator.
    void start();

    // nullptr while switched off or not listening.
    LineServer* rigServer() const { return rigServer_; }
    LineServer* rotatorServer() const { return rotatorServer_; }
    HubRig& rig() { return rig_; }
    HubRotator& rotator() { return rotator_; }

private:
    LineServer* serve(const QString& name, const QString& switchKey, const QString& portKey,
        quint16 defaultPort, std::function<HamlibCommands::Answer(const QByteArray&)> answer);

    Station& station_;
    HubRig rig_;
    HubRotator rotator_;
    RigctlProtocol rigProtocol_;
    RotctlProtocol rotatorProtocol_;
    LineServer* rigServer_ = nullptr;
    LineServer* rotatorServer_ = nullptr;
};
