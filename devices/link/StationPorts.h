#pragma once
// The main window's four serial ports Com1 to Com4 (rig 1, rig 2, sensor box, rotator),
// created once by a factory so that tests can hand in their own links.
#include "devices/link/SerialLink.h"

#include <array>
#include <functional>
#include <memory>

class StationPorts {
public:
    using Factory = std::function<std::unique_ptr<SerialLink>()>;

    explicit StationPorts(const Factory& make)
    {
        for (auto& link : links_)
            link = make();
    }

    // n from 1 to 4.
    SerialLink& com(int n) { return *links_.at(n - 1); }

private:
    std::array<std::unique_ptr<SerialLink>, 4> links_;
};
