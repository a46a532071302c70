#pragma once
// The hub on a test station: rig and rotator controllers on pseudo-terminals (Com1 open, the
// rig binary on Com1), the read-back heading and sensor elevation as plain values.
#include "devices/rig/RigController.h"
#include "devices/rotator/RotatorController.h"
#include "hub/HubRig.h"
#include "hub/HubRotator.h"
#include "hub/RigctlProtocol.h"
#include "hub/RotctlProtocol.h"
#include "tests/devices/StationRig.h"

#include <optional>

struct HubStation : StationRig {
    HubStation()
    {
        for (int com : { 1, 2, 4 })
            open(com);
    }

    RigController rig { station, ports };
    RotatorController rotatorController { station, ports, lines };
    HubRig hubRig { station, ports, rig };
    QString readBack = QStringLiteral("000");
    std::optional<double> sensorElevation;
    QString azimuthBox;
    HubRotator hubRotator { rotatorController,
        { [this] { return readBack; }, [this] { return sensorElevation; },
            [this](const QString& text) { azimuthBox = text; } } };
    RigctlProtocol rigProtocol { hubRig };
    RotctlProtocol rotatorProtocol { hubRotator };
};
