#pragma once
// GEB ("GE", procedure GeB_Click): writes the beacon list as "earth.kml" through the KML
// writer, one point per beacon under its shortened name and, with the beacon-lines switch,
// a line from home to each, all on one line of the file; then hands the file to the viewer.
// Any failure is reported as "Error n (...) in procedure GeB_Click of Formular form1" and the
// previous "earth.kml" stays whole.
#include <QString>

#include <optional>

class MapViewer;
class Station;

// "XX0BCN-B" -> "XX0B" (deliberate: the dash rule drops four characters), "XX0BCN/B" ->
// "XX0BCN", other names unchanged. Nothing for a name shorter than two characters, or a
// dash name shorter than four: the export stops there.
std::optional<QString> ShortBeaconName(const QString& name);

// Station callsign + " " + " BeaconsAFB" (two blanks between them).
QString BeaconDocumentName(const QString& callsign);

struct BeaconExportOutcome {
    enum class Status {
        Written, // "earth.kml" replaced and the viewer started
        NoRecords, // the table is empty: "No lat/long coords where found.", nothing written
        Failed // the error report was shown; the previous file is untouched
    };
    Status status = Status::Failed;
    QString message; // the text shown, if any
    int records = 0; // beacon placemarks written
    QString path;
};

// Reads "select *  from PNT_Beacon" in stored order; the name filter applies only after the
// emptiness test, so a filter that matches nothing still writes the home placemark alone.
BeaconExportOutcome GeB_Click(Station& station, const QString& nameFilter, MapViewer& viewer);
