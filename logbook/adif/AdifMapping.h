#pragma once
// How a log contact and an ADIF record map onto each other, both ways:
//   Date <-> QSO_DATE, GMT <-> TIME_ON, Callsign <-> CALL, Grid <-> GRIDSQUARE,
//   rsts/rstr <-> RST_SENT/RST_RCVD, Band <-> BAND and FREQ, mode <-> MODE and SUBMODE,
//   Nam <-> NAME, Comment <-> COMMENT, QSL <-> QSL_SENT and QSL_RCVD, Prop <-> PROP_MODE,
//   DXCC <-> COUNTRY, QRB <-> DISTANCE, QSLman <-> QSL_VIA, and the further columns Freq,
//   TxPwr, Antenna, MyCall, MyGrid, Contest, NrSent, NrRcvd, QSLsent, QSLrcvd, Cont, CQZone,
//   ITUZone, Remarks (FREQ, TX_PWR, MY_ANTENNA, STATION_CALLSIGN, MY_GRIDSQUARE, CONTEST_ID,
//   STX(_STRING), SRX(_STRING), QSLSDATE, QSLRDATE, CONT, CQZ, ITUZ, NOTES).
// Where the standard fields cannot carry a value exactly (the band text "1014", the QSL letter
// "D", a propagation code ADIF does not know), the export adds APP_KESTREL_BAND, _QSL, _PROP or _FREQ,
// which the import prefers, so a file written here reads back unchanged.
#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifReader.h"

#include <QByteArray>
#include <QDateTime>

namespace AdifMapping {
// Fills `contact` from a record. False with the reason when the record cannot be imported
// (no CALL, no valid QSO_DATE or TIME_ON, no band, a GRIDSQUARE that is no locator, a
// DISTANCE that is no number). Distance, bearing, map texts and a missing DXCC are the
// importer's work.
bool toContact(const AdifRecord& record, AdifContact& contact, QString* reason);

// The record text of a contact: its fields and "<EOR>", one line.
QByteArray recordText(const AdifContact& contact);
// The file header: a line of text, ADIF_VER, PROGRAMID, CREATED_TIMESTAMP and <EOH>.
QByteArray header(const QDateTime& createdUtc);
// One field: "<NAME:length>value " (length in bytes of the UTF-8 value); empty for an empty value.
QByteArray field(const char* name, const QString& value);

// QSL letter <-> QSL_SENT/QSL_RCVD: Q = Y/Y, T = Q/Y, Y = Q/N, S = R/N, N = Y/N.
struct QslStatus {
    QString sent;
    QString rcvd;
};
QslStatus qslStatus(const QString& letter);
QString qslLetter(const QString& sent, const QString& rcvd);
// Propagation code <-> PROP_MODE: Tr = TR, Rs = RS, Es = ES, Au = AUR, Ms = MS; other codes
// that are ADIF values go as they are (upper case).
QString propMode(const QString& code);
QString propCode(const QString& propMode);
// mode <-> MODE/SUBMODE: USB and LSB are SSB submodes, FT4, JS8, FST4 and Q65 MFSK ones,
// PSK31/63/125 PSK ones; the import keeps SUBMODE when there is one.
QPair<QString, QString> modeFields(const QString& mode);

// "20261115" <-> "2026-11-15"; "182000" or "1820" <-> "18:20:00" or "18:20".
QString dateFromAdif(const QString& adif);
QString dateToAdif(const QString& stored);
QString timeFromAdif(const QString& adif);
QString timeToAdif(const QString& text);
} // namespace AdifMapping
