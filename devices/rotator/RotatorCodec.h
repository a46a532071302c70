#pragma once
// The rotator controller's commands (ASCII, written in one piece) and the elevation rule of the
// automatic mode. Pure functions.
#include <QByteArray>
#include <QString>

#include <optional>

namespace Rotator {

inline const QByteArray TurnLeft = QByteArrayLiteral("AA;");
inline const QByteArray TurnRight = QByteArrayLiteral("AB;");
inline const QByteArray Stop = QByteArrayLiteral("ST;");
inline const QByteArray Query = QByteArrayLiteral("AI1;");

// The number format "000": a numeric text rounded to a whole number with at least three
// digits ("45" -> "045", "-5" -> "-005"); a text that is not a number stays as it is.
QString format000(const QString& text);

// "AP1" + format000(text) + carriage return + ";".
QByteArray setHeadingCommand(const QString& text);
// "AW1" + format000(text) + ";" (no carriage return).
QByteArray secondSetValueCommand(const QString& text);
// The heading label: the first three characters of what the rotator sent, unchecked.
QString readBack(const QByteArray& received);

enum class Pulse { None, Up, Down };
// The automatic elevation rule: below 0.4 one pulse up, above 1.0 one pulse down, nothing in
// between or at the limits. m is taken as the window shows it, to one decimal.
Pulse autoElevation(double m);
// EleAuto's caption and back colour (RGB integer as the window's colours are kept).
QString autoCaption(bool on);
int autoColour(bool on);

} // namespace Rotator
