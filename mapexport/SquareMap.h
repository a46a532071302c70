#pragma once
// The award map: one KML polygon per worked grid square, in one folder per band, coloured by
// the square's best status (worked, confirmed). Beside the log map, not instead of it.
#include "mapexport/SquareTally.h"

#include <QByteArray>
#include <QString>

namespace SquareMap {
// The KML document of a tally; `title` names the document.
QByteArray document(const SquareTally& tally, const QString& title);
// Reads the contacts of `bandPattern` (every band when empty) and writes the map to `path`,
// replacing the file only when whole. `report` gets "2m: 32 squares, 20 confirmed" lines or why
// nothing was written; false then.
bool write(const QString& connection, const QString& bandPattern, const QString& path, const QString& title,
    SquareTally* tally, QString* report);
} // namespace SquareMap
