#pragma once
// Which band a beacon's frequency text names: its leading characters are compared with the
// band values 50, 144, 432, 1296 ... 122250 in that order and the first match wins, so a
// qrg of "1440..." is 144, never 1296. Also the rig's frequency counter for the beacon.
#include <QString>

#include <optional>

struct BeaconBand {
    QString value; // "50", "144", ... "122250"
    int vhfOption = 0; // OptBandV index 1..3 (50, 144, 432 MHz), 0 for a microwave band
    int microwaveOption = 0; // OptBandR index 1..9 (1296 ... 122G), 0 for a VHF band
};

// What the rig does for a chosen beacon: the band to switch on (none for a band without a
// button, such as 4 m) and, when the frequency text is a number of kHz, the frequency counter
// in 10 Hz units ("144471" -> 14447100).
struct BeaconTuning {
    std::optional<BeaconBand> band;
    std::optional<qint64> counter;
};

// The band whose value the qrg begins with; nothing when it begins with none of them
// (the band then stays as it is).
std::optional<BeaconBand> BeaconBandFor(const QString& qrg);

// kHz text (a point or a comma before decimals) to 10 Hz units; nothing for other text.
std::optional<qint64> BeaconCounterFor(const QString& qrg);

// Nothing when the text names neither a band nor a frequency.
std::optional<BeaconTuning> BeaconTuningFor(const QString& qrg);
