#pragma once
// A whole log from one place to another, file or server either way (a single station's log to
// the club server and back): logtab, PNT_Beacon and dxccdata with every column, row by row in ID
// order with the IDs kept (the DXCC lookup takes the first match in stored order). NULL stays
// NULL, '' stays '', numbers stay numbers, texts keep their bytes. The source is only read; the
// target is made when missing or empty and must hold no contacts (never merged). All of it goes
// in in one transaction: a failure leaves the target without a single row of the copy.
//
// deliberate: a text in a number column (QRB "12,5"; SQLite keeps it) cannot go into a server's
// number column, nor can a fraction or a number beyond 32 bits in an INTEGER one. It goes into
// AdifExtra as its ADIF field (QRB DISTANCE, CQZone CQZ, ITUZone ITUZ, DxccNr DXCC, QTF
// APP_KESTREL_QTF; APP_KESTREL_<column> where AdifExtra has that field already), the column
// stays NULL, and the report names the row; an empty text there becomes NULL. Such a value in
// dxccdata (no AdifExtra), binary data, or a text longer than a server's text(250) column
// stops the copy with the row named.
#include "logbook/db/DbError.h"

#include <QList>
#include <QString>
#include <QStringList>

class LogCopy {
public:
    struct Table {
        QString name;
        qint64 rows = 0;
        QStringList moved; // "ID 17 QRB "12,5" as DISTANCE": values kept in AdifExtra
    };
    struct Result {
        DbError error;
        QList<Table> tables; // logtab, PNT_Beacon, dxccdata; empty after a failure
        // One line per table: "logtab: 100000 rows copied" (and what went to AdifExtra).
        QStringList report() const;
    };

    // `from` and `to`: a file path or a postgresql:// address each.
    static Result run(const QString& from, const QString& to);
};
