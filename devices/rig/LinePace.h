#pragma once
// How long a serial line takes to carry some bytes at its settings ("9600,n,8,1": a start bit,
// the data bits, the parity bit if any, the stop bits). Hold loops wait this long between
// passes so the output never queues up faster than the line carries it.
#include <QString>
#include <QtGlobal>

namespace LinePace {
// Microseconds on the line; an unreadable settings text counts as "9600,n,8,1".
qint64 microseconds(const QString& settingsText, qint64 bytes);
} // namespace LinePace
