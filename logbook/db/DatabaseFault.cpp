#include "logbook/db/DatabaseFault.h"

#include "core/FilePlace.h"

QString DatabaseFaultText(const QString& path, const DbError& error)
{
    return QStringLiteral("The logbook database %1 cannot be used: %2\n"
                          "The logbook and the beacon list stay empty until it is repaired, replaced "
                          "from a backup or moved away (a new one is then made). Kestrel.ini can name "
                          "another file (database/file).")
        .arg(FilePlace(path), error.description);
}
