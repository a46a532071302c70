#pragma once
// The texts and colours the GPS window shows, decided here so that the window only copies them
// into its controls.
#include "gps/GpsReceiver.h"

#include <QString>

namespace GpsDisplay {
// Colours as plain RGB integers (red in the low byte): no fix red, 2D yellow, 3D green.
constexpr int kNoFixColour = 255;
constexpr int kTwoDColour = 65535;
constexpr int kThreeDColour = 65280;

// A number as a text box shows it: up to 15 significant digits, no exponent for the sizes
// a receiver sends, "." as decimal point.
QString numberText(double v);
// Altitude and separation units: "M" is shown as "m".
QString unitText(const QString& unit);
// "A" for automatic selection, "M" for manual.
QString selectionText(bool automatic);
// "A" when valid, "V" when not.
QString validityText(bool valid);
// A satellite table entry, "" when empty.
QString entryText(const std::optional<int>& v);
// The satellites this GSV message brought, "[prn elevation azimuth snr] [...]" with "-" for a
// value the receiver left out; "" when it brought none that has a slot.
QString gsvGroups(const GsvData& gsv);
// The used satellites of every system, one line each in system order: "GPS 2 5 12",
// "GLONASS 65 66 (stale)" when its last GSA is older than GpsReceiver::kStaleMs; a system
// whose GSA lists none is left out.
QString usedText(const GpsReceiver& receiver);
// `Grid`: "GPS NO FIX", or the locator and the position.
QString gridText(FixKind fix, const std::optional<GpsPosition>& position);
int gridColour(FixKind fix);
} // namespace GpsDisplay
