#pragma once
// Serial numbers of contests in the entry line, kept in logtab's NrSent and NrRcvd columns.
// They count per band: the next number sent is the highest sent on the band plus one.
#include <QString>

namespace ContestNumbers {
// "013" after 12 on the band of `bandPattern` (LIKE, as the band buttons set it); empty while
// the band has no numbered contact, so numbering starts only when the operator types one.
QString nextSent(const QString& connection, const QString& bandPattern);
} // namespace ContestNumbers
