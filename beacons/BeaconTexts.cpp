#include "beacons/BeaconTexts.h"

#include "logbook/db/DbError.h"

namespace BeaconTexts {

QString procedureError(int number, const QString& description, const QString& procedure)
{
    return QStringLiteral("Error ") + QString::number(number) + QStringLiteral(" (") + description
        + QStringLiteral(") in procedure ") + procedure + QStringLiteral(" of Formular form1");
}

QString procedureError(const DbError& error, const QString& procedure)
{
    return procedureError(error.number, error.description, procedure);
}

} // namespace BeaconTexts
