#pragma once
// The fixed texts the beacon list and the beacon map show the operator, byte for byte, and
// the form of an error report that names its procedure.
#include <QString>

struct DbError;

namespace BeaconTexts {
inline const QString SelectBand = QStringLiteral("Please select Band");
inline const QString NoNewRecordset = QStringLiteral("No new Recorset available");
// deliberate: the leading blank stays.
inline const QString DeleteQuestion = QStringLiteral(" Delete Recordset ?");
inline const QString NoCoords = QStringLiteral("No lat/long coords where found.");
// Shared with the logbook's import, so it names the old database file.
inline const QString ImportedTail = QStringLiteral(" Dataset from Tarnwick backup.mdB imported");
// The beacons-only name filter set by BeMon and by every activation.
inline const QString BeaconsOnly = QStringLiteral("%/b%");

// "Error " + number + " (" + description + ") in procedure " + procedure + " of Formular form1".
QString procedureError(int number, const QString& description, const QString& procedure);
QString procedureError(const DbError& error, const QString& procedure);
} // namespace BeaconTexts
