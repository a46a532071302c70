#pragma once
// The bytes of the rig's CAT commands: the FT-847 five-byte binary dialect (four parameter
// bytes, then the opcode) and the short text dialect ending in ";". Pure functions.
#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace Cat {

inline const QByteArray ModeCw = QByteArray("\x02\x00\x00\x00\x07", 5);
inline const QByteArray ModeUsb = QByteArray("\x01\x00\x00\x00\x07", 5);
inline const QByteArray PttOn = QByteArray("\x00\x00\x00\x00\x08", 5);
inline const QByteArray PttOff = QByteArray("\x00\x00\x00\x00\x88", 5);
inline const QByteArray TextModeCw = QByteArrayLiteral("MD03;");
inline const QByteArray TextModeUsb = QByteArrayLiteral("MD02;");
inline const QByteArray TextTransmit = QByteArrayLiteral("TX1;");
inline const QByteArray TextReceive = QByteArrayLiteral("TX0;");

// Packed BCD of a two-digit group: 6 added for every full ten (tens x 16 + units). Values
// outside 10..99 stay as they are.
quint8 bcdByte(int value);

// The set-frequency command F1 F2 F3 F4 01 for a frequency text in 10 Hz units. The trimmed
// text is read as a number (its leading digits) and cut from the right into two-digit groups;
// the leading group is whatever remains. digitCount (7 or 8) only pads the text on the left.
QByteArray frequencyCommand(const QString& frequencyText, int digitCount);

// "FA" + text + padding + "0;": the padding is "00" for a text of exactly 6 characters,
// none otherwise (deliberate: a 7-digit text is sent as it stands).
QByteArray frequencyTextCommand(const QString& frequencyText);

// 7 digits on the 50 MHz band (band index 1), 8 otherwise.
int digitCount(int bandIndex);

// The frequency text as the serial port gets it: one byte per character.
QByteArray plainText(const QString& text);

} // namespace Cat

namespace Cat {
// The formatFre display: the counter (10 Hz units) divided by 100000, in MHz, as few digits as
// the value needs ("144.2", "144.10001"), with a decimal point.
QString megahertzText(qint64 counter);
// Tuning step in counter units for the "QRG" options 1..4: 1, 10, 100, 1000 (the captions
// "0.1kHz" .. "100kHz" read ten times the real step; both kept).
int tuningStep(int option);
// Band preset for the VHF band index 1..3: 5020000, 14420000, 43220000 (0 for others).
qint64 bandPreset(int bandIndex);
} // namespace Cat
