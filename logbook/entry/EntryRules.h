#pragma once
// The rules of the logbook's entry line that need no window: the defaults of a new contact,
// the mode preset from the received report and the locator check.
#include "logbook/entry/EntryLine.h"

#include <QDateTime>
#include <QString>

namespace EntryRules {
inline const QString SelectBand = QStringLiteral("Please select Band");
inline const QString LocatorIncorrect = QStringLiteral("Locator input incorrect");
inline const QString DateFormat = QStringLiteral("dd.MM.yyyy");
inline const QString TimeFormat = QStringLiteral("HH:mm:ss");

// `addnew`: with an empty band pattern, clears GM, DA, Rss, Rr, mo, Qs, Pr and returns false
// (the window shows SelectBand). Otherwise fills today's date and the computer's local time
// (deliberate: no conversion to UTC), 59/59, SSB, Y, Tr and the band text, and returns true.
// Ca, Gr, Na and Co keep what they hold.
bool NewContact(EntryLine& line, const QString& bandPattern, const QDateTime& now);

// The mode for the text of Rr as it is before the key takes effect: three characters are an
// RST report (CW), anything else an RS report (SSB).
QString ModePreset(const QString& rrText);

// The locator check on leaving Gr: upper-cases `text` and tells whether it is a locator of
// 4, 6, 8 or 10 characters. An empty text is not checked (true).
bool CheckEntryLocator(QString& text);
} // namespace EntryRules
