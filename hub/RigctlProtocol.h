#pragma once
// rigctld's side of Hamlib's NET rigctl protocol (Hamlib 4.5) for one rig: what the client
// asks while it opens and polls (\chk_vfo, \dump_state, \get_powerstat, the VFO queries) and
// frequency, mode and passband, PTT, VFO and split. The rig has one VFO; split is remembered
// and reported. Shared by every client of the rig server.
#include "hub/HamlibCommands.h"

class RigBackend;

class RigctlProtocol {
public:
    explicit RigctlProtocol(RigBackend& rig);

    HamlibCommands::Answer answer(const QByteArray& line) const { return commands_.answer(line); }

    // The \dump_state block: ranges, modes and filters of the rig, then Hamlib 4.5's key=value
    // lines up to "done".
    static QByteArray dumpState();

private:
    RigBackend& rig_;
    HamlibCommands commands_;
    bool split_ = false;
    QString txVfo_ = QStringLiteral("VFOA");
};
