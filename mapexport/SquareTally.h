#pragma once
// Worked and confirmed grid squares per band, as VUCC counts them: the 4-character square of
// each contact's locator (case-blind, only valid ones); a rover contact on a square line or
// corner counts every square of its VUCC_GRIDS field instead. A square is confirmed when any
// of its contacts is.
#include <QMap>
#include <QString>
#include <QStringList>

class SquareTally {
public:
    enum class Status { Worked, Confirmed };

    // `band` is the log's band text; `qsl` its QSL letter ("Q" confirmed, without case);
    // `adifExtra` the ADIF fields the log keeps as text ("<VUCC_GRIDS:9>JO50,JO60 ...").
    void add(const QString& band, const QString& grid, const QString& qsl, const QString& adifExtra);

    // Band name ("2m", "70cm"; the band text where ADIF has no name) -> square -> best status.
    const QMap<QString, QMap<QString, Status>>& bands() const { return bands_; }
    int worked(const QString& band) const;
    int confirmed(const QString& band) const;

    // The squares a contact counts for: VUCC_GRIDS when given, else its locator's square;
    // upper case, invalid ones left out.
    static QStringList squaresOf(const QString& grid, const QString& adifExtra);
    // "JO62": field letters A-R, two digits, either case.
    static bool isSquare(const QString& square);

private:
    QMap<QString, QMap<QString, Status>> bands_;
};
