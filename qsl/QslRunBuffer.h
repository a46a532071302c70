#pragma once
// The contacts of one print run in nine parallel arrays (date, time, callsign, band, mode,
// report sent, distance, bearing, QSL manager) of 1001 entries each, indices 0 to 1000.
// Appending past the last entry is refused, so a large selection can never overrun them.
#include "qsl/QslContact.h"

#include <QString>

#include <array>

class QslRunBuffer {
public:
    static constexpr int Capacity = 1001;

    int count() const { return count_; }
    bool isFull() const { return count_ >= Capacity; }
    // Stores the contact at the next index; false (and nothing stored) when all are taken.
    bool append(const QslContact& contact);
    // Entry i (0 <= i < count()).
    QslContact at(int i) const;
    void clear();

    std::array<QString, Capacity> date;
    std::array<QString, Capacity> time;
    std::array<QString, Capacity> callsign;
    std::array<QString, Capacity> band;
    std::array<QString, Capacity> mode;
    std::array<QString, Capacity> rsts;
    std::array<QString, Capacity> qrb;
    std::array<QString, Capacity> qtf;
    std::array<QString, Capacity> manager;

private:
    int count_ = 0;
};
