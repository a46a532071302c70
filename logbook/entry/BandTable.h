#pragma once
// The logbook's 22 band buttons: the LIKE pattern each one sets (which filters the log list
// and the map exports) and the band text a new contact gets from it. Index 21 is all bands.
#include <QString>

namespace BandTable {
constexpr int Count = 22;
constexpr int AllBands = 21;

// "14200%", ...; "10140" for index 3 (deliberate: no "%"); "" for index 21 or out of range.
QString pattern(int index);
// The band text of a new contact: the pattern less its last character ("10140" -> "1014",
// deliberate); "" for an empty pattern.
QString bandText(const QString& pattern);
// The button caption of an index: "160m", ..., "2.5mm", "all".
QString caption(int index);
// The index whose pattern this is; -1 when none (an empty pattern is index 21).
int indexOf(const QString& pattern);
} // namespace BandTable
