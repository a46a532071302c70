#pragma once
// The sensor box on the main window's Com3: the query bytes 127, 1, 135 and the reply read as
// hexadecimal text, two digits per byte; elevation in thousandths at character 23, temperature
// at character 31 (characters counted from 1).
#include <QByteArray>
#include <QString>

#include <optional>

namespace SensorFrame {

inline const QByteArray Query = QByteArray("\x7f\x01\x87", 3);

// Field positions in the hexadecimal text, counted from 1, and their lengths in digits.
constexpr int ElevationAt = 23;
constexpr int ElevationDigits = 4;
constexpr int TemperatureAt = 31;
constexpr int TemperatureDigits = 2;
// Bytes needed to reach the end of both fields.
constexpr int MinimumBytes = (TemperatureAt + TemperatureDigits - 1) / 2;

struct Reading {
    int elevationRaw = 0; // thousandths
    int temperature = 0;
    double elevation() const { return elevationRaw / 1000.0; }
};

// Two upper-case hexadecimal digits per byte ("0" before a single digit).
QString hexText(const QByteArray& bytes);

// Nothing when the reply is too short to hold both fields.
std::optional<Reading> decode(const QByteArray& reply);

// "Temp = " + temperature.
QString temperatureText(const Reading& r);
// "Ele = " + elevation in "##0.0".
QString elevationText(const Reading& r);

} // namespace SensorFrame
