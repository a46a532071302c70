#pragma once
// What an EDI file's header says that the log does not hold: the contest, the station and its
// operators and equipment. Read from the station settings (own call and locator, the QSL card's
// address and foot lines) and from Kestrel.ini's [contest] section.
#include <QString>

class SettingsTable;

struct EdiContest {
    QString name; // TName
    QString dates; // TDate "yyyymmdd;yyyymmdd"; empty: the first and last contact's dates
    QString call; // PCall and RCall
    QString locator; // PWWLo
    QString exchange; // PExch
    QString section; // PSect
    QString club; // PClub
    QString operatorName; // RName
    QString address1; // RAdr1
    QString address2; // RAdr2
    QString postCode; // RPoCo
    QString city; // RCity
    QString country; // RCoun
    QString phone; // RPhon
    QString email; // RHBBS
    QString operators; // MOpe1
    QString operators2; // MOpe2
    QString transmitter; // STXEq
    QString power; // SPowe
    QString receiver; // SRXEq
    QString antenna; // SAnte
    QString antennaHeight; // SAntH
    QString remarks; // [Remarks], lines split at "|"
    int squareBonus = 0; // points per new square (CWWLs second field)
    int dxccBonus = 0; // points per new DXCC entity (CDXCs second field)
    bool squaresMultiply = false; // CWWLs third field: the score is multiplied by the squares
    bool dxccMultiplies = false; // CDXCs third field

    // The station settings and Kestrel.ini in the current directory.
    static EdiContest fromSettings(const SettingsTable& settings);
    // Fills name, address, post code, city and e-mail from the QSL card's address line
    // ("OP: Erika Muster, Lindenweg 3, 12345 Kestrelbach") and foot line ("email: op@...").
    void takeQslLines(const QString& addressLine, const QString& footLine);
};
