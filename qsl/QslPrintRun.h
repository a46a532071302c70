#pragma once
// One print run of the QSL window: reads the contacts with the selection letter (moving their
// letters on), sets the card's greeting, confirmation and closing lines, prints the cards and
// empties the text boxes again. Whatever goes wrong is returned as messages for the operator;
// when printing fails after letters were changed, the message names those contacts.
#include "qsl/QslPrintJob.h"
#include "qsl/QslRunReader.h"

#include <QString>
#include <QStringList>

class CardDesign;
class QPagedPaintDevice;
struct SignaturePictures;

struct QslRunOutcome {
    QString letter;
    bool hasRows = false;
    int contacts = 0; // read into the arrays (and printed, unless printing failed)
    int cards = 0;
    int leftOver = 0; // past the arrays' bound, untouched
    QList<MarkedContact> marked;
    bool databaseFailed = false;
    QString databaseError;
    PrintResult print;
    QStringList messages; // for message boxes, in order
    QStringList notes; // for the window's note line
};

class QslPrintRun {
public:
    static constexpr int ListedContacts = 40; // one line each in a failure message; the rest by callsign

    // Runs letter `letter` on the database `connection`, printing onto `device`. `design` is
    // the window's card: its greeting lines are set as the run sets them and its text boxes
    // are left empty afterwards.
    static QslRunOutcome run(const QString& connection, const QString& letter, CardDesign& design,
        QPagedPaintDevice& device, const SignaturePictures& pictures);

    // Label4 is printed as "PSE QSL" when it is empty.
    static void completeGreeting(CardDesign& design);

    // "Printing failed: ..." naming the contacts whose letters have already moved on.
    static QString printFailedMessage(const QString& reason, const QList<MarkedContact>& marked);
    static QString leftOverMessage(int leftOver, const QString& letter);

    // The offer after a failed print: "Set the QSL letter of these n contacts back ...?"
    static QString restoreQuestion(int marked);
    // Sets each marked contact's letter back to what it was before the run, where the run's
    // letter still stands (one transaction); returns what happened, for a message box.
    static QString restoreLetters(const QString& connection, const QList<MarkedContact>& marked);
};
