#pragma once
// What the four NMEA parsers hand back: one plain struct per sentence type. A parser writes
// these only when the sentence is valid, so a rejected sentence leaves them as they were.
#include <QString>

#include <array>
#include <optional>

// An array indexed 1 to 12 like the receivers' channel tables; element 0 is never used.
using SatelliteTable = std::array<std::optional<int>, 13>;

struct RmcData {
    QString time; // "hh:mm:ss"; "" when the field is empty
    bool valid = false; // status "A"
    double latitude = 0.0; // degrees as in the field, without sign: see latHemisphere
    QString latHemisphere; // "N" or "S" (a blank when the field is empty)
    double longitude = 0.0; // degrees as in the field, without sign
    QString lonHemisphere; // "E" or "W"
    double speed = 0.0; // knots
    double course = 0.0; // degrees true
    QString date; // "dd.mm.yy"; left as it was when the field is empty
    double magneticVariation = 0.0;
};

struct GgaData {
    QString time;
    double latitude = 0.0;
    QString latHemisphere;
    double longitude = 0.0;
    QString lonHemisphere;
    QString quality; // "no fix", "GPS fix", "DGPS fix", "guessed" or "unknown"
    int satellites = 0; // satellites used
    double hdop = 0.0;
    double altitude = 0.0;
    QString altitudeUnit; // "M" from the receiver
    double separation = 0.0; // geoid separation
    QString separationUnit;
};

struct GsaData {
    bool automatic = false; // selection mode "A"
    QString fix; // "3D-Fix", "2D-Fix", "No-Fix" or "unknown"
    SatelliteTable satellites; // numbers of the satellites used, 1 to 12; empty where none
    double pdop = 0.0;
    double hdop = 0.0;
    double vdop = 0.0;
    int systemId = 0; // NMEA 4.10 and later: 1 GPS, 2 GLONASS, 3 Galileo, 4 BeiDou, 5 QZSS, 6 NavIC; 0 none
};

// Slots 1 to 36: the nine messages a GSV cycle can have, four satellites each.
using GsvTable = std::array<std::optional<int>, 37>;

// One GSV cycle (messages 1 to messageCount of one talker) fills the four tables: satellite
// k of message m goes to slot (m - 1) * 4 + k. Message 1 empties the tables first, so slots
// of satellites no longer in view do not linger.
struct GsvData {
    int messageCount = 0;
    int messageNumber = 0;
    int satellitesInView = 0;
    GsvTable prn;
    GsvTable elevation; // degrees
    GsvTable azimuth; // degrees true
    GsvTable snr; // dB-Hz; empty while the satellite is not tracked
};
