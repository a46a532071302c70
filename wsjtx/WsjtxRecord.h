#pragma once
// A logged contact of WSJT-X as an ADIF record, so that QSO Logged and Logged ADIF go through
// the one mapping the ADIF import uses (mode and submode, band from the frequency, UTC to the
// log's clock) and reach the log alike.
#include "logbook/adif/AdifReader.h"
#include "wsjtx/WsjtxMessage.h"

namespace WsjtxRecord {
// QSO Logged: TIME_ON with seconds, FREQ in MHz from the Tx frequency in Hz.
AdifRecord fromQso(const WsjtxQsoLogged& qso);
// Logged ADIF: its first good record; false with the reason when it has none.
bool fromAdif(const QString& adif, AdifRecord& record, QString* reason);
// MHz with six decimals, as WSJT-X's ADIF writes FREQ ("144.174000"), or without trailing
// zeros for the eye ("144.174").
QString megahertz(quint64 hz, bool trimmed = false);
} // namespace WsjtxRecord
