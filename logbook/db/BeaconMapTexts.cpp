#include "logbook/db/BeaconMapTexts.h"

#include "geo/Locator.h"

QString BeaconGeData(
    const QString& beacon, const QString& qrg, const QString& locator, const QString& equipment)
{
    return QStringLiteral("Beacon:") + beacon + QStringLiteral(" QRG: ") + qrg + QStringLiteral(" kHz ")
        + QStringLiteral(" LOC:") + locator + QStringLiteral(" Comment:") + equipment + QStringLiteral(" ");
}

QString BeaconGridXY(const QString& locator)
{
    const QString l = Locator::completed(locator.trimmed().toUpper());
    if (!Locator::isValid(l))
        return {};
    return CoordText(LocatorToDegrees(l));
}
