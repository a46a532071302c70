#pragma once
// Reads the contacts of one print run from the log: every contact whose QSL letter is the
// selection letter, in callsign order, into the nine run arrays, and moves each contact's
// letter on (T->Q, S->D, Y->N, B->N) as it is read; the changes of one run are stored in one
// transaction. The contacts beyond the arrays' bound keep their letter for the next run.
#include "qsl/QslRunBuffer.h"

#include <QList>
#include <QString>

#include <memory>

// A contact whose QSL letter this run has changed, for telling the operator which cards are
// owed should printing fail.
struct MarkedContact {
    QString callsign;
    QString date; // card form, " dd.MM.yyyy"
    QString time; // card form, "  HH:mm "
    QString before;
    QString after;
    qint64 id = 0; // the contact's ID in logtab, for setting the letter back
};

struct QslRunRead {
    QString letter;
    std::unique_ptr<QslRunBuffer> contacts = std::make_unique<QslRunBuffer>();
    QList<MarkedContact> marked;
    bool hasRows = false; // the query found at least one contact
    int leftOver = 0; // contacts past the arrays' bound, read and changed next time
    bool failed = false; // a database error ended the reading
    QString errorDetail; // what the database said
};

class QslRunReader {
public:
    // Mark changes the letters as the run reads them; Peek only reads (print preview).
    enum class Mode { Mark, Peek };

    // `connection` is the database connection text (the database file).
    static QslRunRead read(const QString& connection, const QString& letter, Mode mode = Mode::Mark);
};
