#pragma once
// Test station with its four ports on pseudo-terminals through the real Qt serial link: the
// settings table points Com1..Com4 at the pseudo-terminals, line settings "9600,n,8,1". The
// key, elevation-up and elevation-down lines record their edges.
#include "core/Prompts.h"
#include "core/Station.h"
#include "devices/lines/OutputLines.h"
#include "devices/lines/RecordingLine.h"
#include "devices/link/QtSerialLink.h"
#include "devices/link/StationPorts.h"
#include "sim/pty/PtyPair.h"

#include <array>

struct StationRig {
    RecordingPrompts prompts;
    Station station { prompts };
    std::array<PtyPair, 4> pty;
    StationPorts ports { makeQtSerialLink };
    OutputLines lines;
    std::shared_ptr<RecordingLine> key = std::make_shared<RecordingLine>();
    std::shared_ptr<RecordingLine> up = std::make_shared<RecordingLine>();
    std::shared_ptr<RecordingLine> down = std::make_shared<RecordingLine>();

    static constexpr int portIndex[]
        = { Setting::Com1Port, Setting::Com2Port, Setting::Com3Port, Setting::Com4Port };

    explicit StationRig(
        const QString& rigPort = QStringLiteral("Com1"), bool check2 = false, bool check3 = false)
    {
        const int settingsIndex[]
            = { Setting::Com1Settings, Setting::Com2Settings, Setting::Com3Settings, Setting::Com4Settings };
        for (int i = 0; i < 4; ++i) {
            station.settings.setText(portIndex[i], pty[i].slavePath());
            station.settings.setText(settingsIndex[i], QStringLiteral("9600,n,8,1"));
        }
        station.settings.setInt16(Setting::Check2, check2 ? -1 : 0);
        station.settings.setInt16(Setting::Check3, check3 ? -1 : 0);
        station.rigPortName = rigPort;
        lines.setLine(OutputLines::Role::Key, key);
        lines.setLine(OutputLines::Role::Up, up);
        lines.setLine(OutputLines::Role::Down, down);
    }

    bool open(int com)
    {
        return ports.com(com).open(station.settings.textAt(portIndex[com - 1]), QStringLiteral("9600,n,8,1"));
    }

    // What the device on Com n has received, once `expected` bytes are there (or two seconds
    // passed), plus anything that follows within a short while.
    QByteArray received(int com, qsizetype expected, int settleMs = 30)
    {
        QByteArray got = pty[com - 1].readExactly(static_cast<int>(expected));
        return got + pty[com - 1].readFor(settleMs);
    }
};
