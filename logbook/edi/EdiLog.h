#pragma once
// One band of a contest in the IARU Region 1 EDI format (REG1TEST;1): scoring by distance
// with dupes, new-square, new-exchange and new-DXCC marks, and the file's text. No file or
// database access here.
#include "logbook/edi/EdiContest.h"
#include "logbook/edi/EdiQso.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

class EdiLog {
public:
    struct Totals {
        int qsos = 0; // contacts that score
        int qsoPoints = 0; // sum of their points
        int squares = 0; // distinct 4-character squares
        int exchanges = 0; // distinct received exchanges
        int dxccs = 0; // distinct entities
        int squareBonus = 0;
        int exchangeBonus = 0;
        int dxccBonus = 0;
        int score = 0;
        int odx = -1; // index of the longest contact, -1 when none scores
    };

    // Scores the contacts in the order given (oldest first).
    EdiLog(const EdiContest& contest, const QString& band, QList<EdiQso> qsos);

    const QList<EdiQso>& qsos() const { return qsos_; }
    const Totals& totals() const { return totals_; }
    // One sentence per contact scored 0 for its locator, and per 4-character locator.
    const QStringList& problems() const { return problems_; }

    // The whole file, CR LF ended lines; `version` goes into the closing line.
    QByteArray text(const QString& version) const;

    // "144 MHz", "1,3 GHz", ... for a log band text or band button pattern ("144", "1296%");
    // empty for bands below 50 MHz and texts that name no band.
    static QString bandName(const QString& bandText);
    // 0 none, 1 SSB, 2 CW, 5 AM, 6 FM, 7 RTTY, 8 SSTV, 9 ATV.
    static int modeCode(const QString& mode);

private:
    void score();

    EdiContest contest_;
    QString band_;
    QList<EdiQso> qsos_;
    Totals totals_;
    QStringList problems_;
};
