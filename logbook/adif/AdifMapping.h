#pragma once
// How a log contact and an ADIF record map onto each other, both ways:
//   Date <-> QSO_DATE, GMT <-> TIME_ON, Callsign <-> CALL, Grid <-> GRIDSQUARE,
//   rsts/rstr <-> RST_SENT/RST_RCVD, Band <-> BAND and FREQ, mode <-> MODE and SUBMODE,
//   Nam <-> NAME, Comment <-> COMMENT, QSL <-> QSL_SENT and QSL_RCVD, Prop <-> PROP_MODE,
//   DXCC <-> COUNTRY, DxccNr <-> DXCC, QRB <-> DISTANCE, QSLman <-> QSL_VIA, and the further columns Freq,
//   TxPwr, Antenna, MyCall, MyGrid, Contest, NrSent, NrRcvd, QSLsent, QSLrcvd, Cont, CQZone,
//   ITUZone, Remarks (FREQ, TX_PWR, MY_ANTENNA, STATION_CALLSIGN, MY_GRIDSQUARE, CONTEST_ID,
//   STX(_STRING), SRX(_STRING), QSLSDATE, QSLRDATE, CONT, CQZ, ITUZ, NOTES).
// Every other field of a record is kept in AdifExtra and written back.
// Where the standard fields cannot carry a value exactly (the band text "1014", the QSL letter
// "D", a propagation code ADIF does not know), the export adds APP_KESTREL_BAND, _QSL, _PROP or _FREQ,
// which the import prefers, so a file written here reads back unchanged.
#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifReader.h"
#include "logbook/browse/DxccEntity.h"
#include "logbook/entry/LogClock.h"

#include <QByteArray>
#include <QDateTime>

namespace AdifMapping {
// Fills `contact` from a record; false with the reason only when the record has no CALL or no
// valid QSO_DATE. QSO_DATE and TIME_ON (UTC) are put on the log's `clock`. A field that cannot
// go into its column (a GRIDSQUARE that is no locator, a DISTANCE that is no number, a TIME_ON
// that is no time, a band the log has no text for) is kept as text in adifExtra and named in
// `notes`, as is every field without a column. COUNTRY and DXCC are the station's own claim:
// they stay in dxcc and dxccNr until the importer's lookup decides (setEntity).
bool toContact(const AdifRecord& record, AdifContact& contact, QString* reason, QStringList* notes = nullptr,
    LogClock::Base clock = LogClock::Base::Utc);
// Sets the entity the lookup found; a COUNTRY or DXCC of the record that says otherwise is kept
// in adifExtra.
void setEntity(AdifContact& contact, const DxccEntity& entity);

// The record text of a contact (date and time on the log's `clock`): its fields, the fields of
// adifExtra and "<EOR>", one line. GRIDSQUARE has at most 8 characters (the rest goes in
// GRIDSQUARE_EXT), DISTANCE is written only with a locator. An extra field whose name a
// column already wrote goes as APP_KESTREL_<name>, which the import reads back into adifExtra.
QByteArray recordText(const AdifContact& contact, LogClock::Base clock = LogClock::Base::Utc);
// The file header: a line of text, ADIF_VER, PROGRAMID, CREATED_TIMESTAMP and <EOH>.
QByteArray header(const QDateTime& createdUtc);
// One field: "<NAME:length>value " (length in bytes of the UTF-8 value); empty for an empty value.
QByteArray field(const char* name, const QString& value);

// adifExtra <-> its fields (upper-case names, in the text's order; written sorted by name).
QList<QPair<QString, QString>> extraFields(const QString& adifExtra);
QString extraText(QList<QPair<QString, QString>> fields);

// QSL letter <-> QSL_SENT/QSL_RCVD: Q = Y/Y, T = Q/Y, Y = Q/N, S = R/N, N = Y/N. A paper card
// received (QSL_RCVD Y or V) gives Q when ours went out, else T (to be answered with thanks);
// a confirmation through LoTW or eQSL (LOTW_QSL_RCVD, EQSL_QSL_RCVD Y or V) gives Q.
struct QslStatus {
    QString sent;
    QString rcvd;
};
QslStatus qslStatus(const QString& letter);
QString qslLetter(const QString& sent, const QString& rcvd, const QString& lotwRcvd = QString(),
    const QString& eqslRcvd = QString());
// Propagation code <-> PROP_MODE: Tr = TR, Rs = RS, Es = ES, Au = AUR, Ms = MS; other codes
// that are ADIF values go as they are (upper case).
QString propMode(const QString& code);
QString propCode(const QString& propMode);
// mode <-> MODE/SUBMODE: USB and LSB are SSB submodes, FT4, JS8, FST4 and Q65 MFSK ones,
// PSK31/63/125 PSK ones; the import keeps SUBMODE when there is one.
QPair<QString, QString> modeFields(const QString& mode);

// "2026-11-15" -> "20261115"; "182000" or "1820" <-> "18:20:00" or "18:20".
QString dateToAdif(const QString& stored);
QString timeFromAdif(const QString& adif);
QString timeToAdif(const QString& text);
} // namespace AdifMapping
