#pragma once
// One spot announced by the node: "DX de SPOTTER:  FREQ  CALL  comment  TIMEZ [locator]".
#include <QString>
#include <optional>

struct Spot {
    QString time; // "1234Z"
    QString frequency; // kHz as the node sent it: "144174.0"
    double kHz = 0.0;
    QString call; // upper case
    QString spotter; // without the colon: "DL1ABC-#"
    QString comment; // trimmed, inner spacing kept
    QString band; // ADIF band name (core/AdifBandPlan), "" outside the bands
    QString locator; // the text some nodes add after the time; often empty

    bool operator==(const Spot&) const = default;
};

// The spot of one terminal line; nothing when the line is no complete spot (no time, no
// number for the frequency, a callsign with odd characters, ...).
std::optional<Spot> parseSpotLine(QStringView line);
