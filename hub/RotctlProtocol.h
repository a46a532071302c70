#pragma once
// rotctld's side of Hamlib's NET rotctl protocol (Hamlib 4.5): set and get position, stop,
// park, \dump_state. Shared by every client of the rotator server.
#include "hub/HamlibCommands.h"

class RotatorBackend;

class RotctlProtocol {
public:
    explicit RotctlProtocol(RotatorBackend& rotator);

    HamlibCommands::Answer answer(const QByteArray& line) const { return commands_.answer(line); }

    static QByteArray dumpState();

private:
    RotatorBackend& rotator_;
    HamlibCommands commands_;
};
