#include "mapexport/KmlWriter.h"

#include "core/Station.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"

KmlWriter::KmlWriter(Station& station, KmlFile& file)
    : station_(station)
    , file_(file)
{
}

void KmlWriter::begin()
{
    yellow_ = Kml::yellowFill(station_.transparency);
    red_ = Kml::redFill(station_.transparency);
    QByteArray& out = file_.buffer();
    out.append(Kml::root());
    out.append(Kml::documentOpen());
    // without a valid own locator there is no home: no home point and no lines, never one off the map
    if (!station_.homeCoords.isEmpty())
        Kml::appendHomePlacemark(out, station_.settings.textAt(Setting::MyCall), station_.homeCoords);
    file_.flushIfLarge();
}

void KmlWriter::logRecord(const LogKmlRow& row, bool lines)
{
    // Yellow by default; "D" wins over "Q" because it is tested last.
    const QString* fill = &yellow_;
    if (row.qsl == u"Q")
        fill = &yellow_;
    if (row.qsl == u"D")
        fill = &red_;
    QByteArray& out = file_.buffer();
    Kml::appendLogRecord(out, { station_.documentName, row.grid, row.geData, *fill, row.gridXY, row.poly });
    // deliberate: an unknown code keeps the colour of an earlier record or export.
    station_.lineColour = Kml::lineColourFor(row.prop, station_.lineColour);
    if (lines && !station_.homeCoords.isEmpty())
        Kml::appendLogLine(out, station_.homeCoords, row.gridXY, station_.lineColour);
    file_.flushIfLarge();
}

void KmlWriter::beaconRecord(const QString& name, const QString& geData, const QString& gridXY, bool lines)
{
    QByteArray& out = file_.buffer();
    Kml::appendBeaconRecord(out, { station_.documentName, name, geData, yellow_, gridXY });
    station_.lineColour = QString::fromUtf16(Kml::beaconLineColour);
    if (lines && !station_.homeCoords.isEmpty())
        Kml::appendBeaconLine(out, station_.homeCoords, gridXY, station_.lineColour);
    file_.flushIfLarge();
}

void KmlWriter::end()
{
    file_.buffer().append(Kml::documentClose());
    file_.flushIfLarge();
}
