#include "beacons/BeaconMapExport.h"

#include "beacons/BeaconTexts.h"
#include "beacons/BeaconsLog.h"
#include "core/FilePlace.h"
#include "core/Station.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "mapexport/KmlWriter.h"
#include "mapexport/MapViewer.h"

namespace {

const QString kProcedure = QStringLiteral("GeB_Click");
// The classic run-time errors a too-short name and a file failure raise.
constexpr int kInvalidCall = 5;
const QString kInvalidCallText = QStringLiteral("Invalid procedure call or argument");
constexpr int kFileAccess = 75;
const QString kFileAccessText = QStringLiteral("Path/File access error");

} // namespace

std::optional<QString> ShortBeaconName(const QString& name)
{
    const qsizetype length = name.size();
    if (length < 2)
        return std::nullopt;
    const QChar secondToLast = name[length - 2];
    if (secondToLast == u'-') {
        if (length < 4)
            return std::nullopt;
        return name.left(length - 4); // deliberate: four characters, not two
    }
    if (secondToLast == u'/')
        return name.left(length - 2);
    return name;
}

QString BeaconDocumentName(const QString& callsign)
{
    return callsign + QStringLiteral(" ") + QStringLiteral(" BeaconsAFB");
}

BeaconExportOutcome GeB_Click(Station& station, const QString& nameFilter, MapViewer& viewer)
{
    BeaconExportOutcome out;
    const QString lineColourBefore = station.lineColour;
    std::optional<KmlFile> file;
    auto fail = [&](int number, const QString& description) {
        if (file)
            file->cancel();
        // nothing reached the file, so the line colour goes back too
        station.lineColour = lineColourBefore;
        out.status = BeaconExportOutcome::Status::Failed;
        out.message = BeaconTexts::procedureError(number, description, kProcedure);
        qCWarning(lcBeacons) << out.message;
        station.prompts.information(out.message);
        return out;
    };

    Recordset rs(station.dbConnection);
    if (!rs.open(SqlText::BeaconMap) || (rs.recordCount(), rs.hasError()))
        return fail(rs.error().number, rs.error().description);
    out.path = Kml::outputPath();
    if (rs.recordCount() == 0) {
        out.status = BeaconExportOutcome::Status::NoRecords;
        out.message = BeaconTexts::NoCoords;
        station.prompts.information(out.message);
        return out;
    }
    station.documentName = BeaconDocumentName(station.settings.textAt(Setting::MyCall));

    file.emplace(out.path);
    if (!file->open())
        return fail(kFileAccess,
            kFileAccessText + QStringLiteral(": ") + FilePlace(out.path) + QStringLiteral(": ")
                + file->errorString());
    if (!rs.setFilter(SqlText::beaconNameFilter(nameFilter)) || (rs.recordCount(), rs.hasError()))
        return fail(rs.error().number, rs.error().description);

    KmlWriter writer(station, *file);
    writer.begin();
    const int beacon = rs.fieldIndex(QStringLiteral("Beacon"));
    const int geData = rs.fieldIndex(QStringLiteral("GEdata"));
    const int gridXY = rs.fieldIndex(QStringLiteral("GEgridXY"));
    if (beacon < 0 || geData < 0 || gridXY < 0)
        return fail(3265, QStringLiteral("PNT_Beacon lacks Beacon, GEdata or GEgridXY"));
    for (int row = 0; row < rs.recordCount(); ++row) {
        const QString name = rs.valueAt(row, beacon).toString();
        const std::optional<QString> shown = ShortBeaconName(name);
        if (!shown)
            return fail(kInvalidCall, kInvalidCallText + QStringLiteral(": beacon name \"") + name + u'"');
        writer.beaconRecord(*shown, rs.valueAt(row, geData).toString(), rs.valueAt(row, gridXY).toString(),
            station.lineBeacons);
        ++out.records;
    }
    writer.end();
    rs.close();
    if (!file->commit())
        return fail(kFileAccess,
            kFileAccessText + QStringLiteral(": ") + FilePlace(out.path) + QStringLiteral(": ")
                + file->errorString());
    out.status = BeaconExportOutcome::Status::Written;
    if (!viewer.open(out.path)) {
        out.message = MapViewer::notShownText(out.path);
        station.prompts.information(out.message);
    }
    return out;
}
