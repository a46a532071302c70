#pragma once
// The save of the entry line: one new logtab row with its fields in the window's order, the
// distance, bearing and coordinate text left by the last locator entered (the save does not
// compute them), and the GEdata summary. No field is checked: an empty callsign is saved so.
#include "logbook/db/DbError.h"
#include "logbook/entry/EntryLine.h"
#include "logbook/entry/MapPosition.h"

#include <QList>
#include <QString>
#include <QVariant>

struct SavedField {
    QString column;
    QVariant value;
};

namespace ContactSave {
inline const QString NoNewRecordset = QStringLiteral("No new Recorset available");

// Date, GMT, Callsign, Grid, rsts, rstr, Band, mode, Nam, Comment, QSL, Prop, DXCC, QRB, QTF,
// GEdata, GEgridXY, in this order, then NrSent and NrRcvd when a serial number was given. The
// date goes in as yyyy-MM-dd (so the list sorts by it).
QList<SavedField> fields(const EntryLine& line, const MapPosition& stored);
// The GEdata text of the entry line.
QString summary(const EntryLine& line, const MapPosition& stored);
// A single-precision value as stored: the number its default text shows.
double storedNumber(float value);
// The same from that text (ContactSummary::numberText of `value`), when it is already made.
double storedNumber(float value, const QString& text);

// Appends the row through a recordset on "SELECT * FROM logtab"; the error when it failed.
// On a club's server several positions save at once: there the row goes in only when no
// contact with its key (AdifImport::duplicateKey) is in the log, checked and written under a
// lock on that key, else DbErrorNumber::AlreadyLogged; *id gets the new row's ID there (a log
// file has nobody else saving, and no check).
DbError save(const QString& connection, const QList<SavedField>& fields, qint64* id = nullptr);
} // namespace ContactSave
