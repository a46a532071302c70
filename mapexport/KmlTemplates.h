#pragma once
// The bytes of "earth.kml": every element template of the map document, the colour texts,
// the square ring and the output path. Pure functions; the writer strings them together.
#include <QByteArray>
#include <QString>
#include <QStringView>

namespace Kml {

// Empty text with every "\\" replaced by a folder, plus "earth.kml": always the bare name in
// the current directory (deliberate: the folder literal never applies).
QString outputPath();

// Field values go into the file as single-byte text: "&", "<", ">" become entities and every
// character beyond ASCII a numeric reference, so the file is valid XML whatever it holds.
void appendEscaped(QByteArray& out, QStringView value);
QByteArray escaped(QStringView value);

// Step 1, 2 and 5 of the document, and the home placemark (step 3).
QByteArray root();
QByteArray documentOpen();
QByteArray documentClose();
void appendHomePlacemark(QByteArray& out, QStringView callsign, QStringView home);

struct LogRecordFields {
    QStringView documentName;
    QStringView grid;
    QStringView geData;
    QStringView fill;
    QStringView gridXY;
    QStringView poly;
};
void appendLogRecord(QByteArray& out, const LogRecordFields& f);

struct BeaconRecordFields {
    QStringView documentName;
    QStringView name;
    QStringView geData;
    QStringView fill;
    QStringView gridXY;
};
void appendBeaconRecord(QByteArray& out, const BeaconRecordFields& f);

// Line placemarks from home to a record; the beacon form closes with a leading blank.
void appendLogLine(QByteArray& out, QStringView home, QStringView gridXY, QStringView colour);
void appendBeaconLine(QByteArray& out, QStringView home, QStringView gridXY, QStringView colour);

// Transparency text as two upper-case hex digits ("128" -> "80", "10" -> "0A", above 255 "FF").
// Text that is not a whole number from 0 up counts as 128, the configuration's fill value.
QString alpha(const QString& transparency);
QString yellowFill(const QString& transparency); // "#" + alpha + "00ffff"
QString redFill(const QString& transparency); // "#" + alpha + "0000ff"

// Line colour for a propagation code; an unknown or empty code keeps `previous`, or gives
// defaultLineColour when there is nothing to keep.
QString lineColourFor(QStringView prop, const QString& previous);
inline constexpr char16_t defaultLineColour[] = u"#ffffffff";
inline constexpr char16_t beaconLineColour[] = u"#ff0000ff";

// Closed five-point ring SW, SE, NE, NW, SW, each point "x.0,y.0,2000 ".
QString squareRing(int west, int south, int east, int north);

} // namespace Kml
