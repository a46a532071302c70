#pragma once
// The ADIF import's locator procedure: the coordinate text, distance and bearing RichtungQRB
// stores for a contact, without the square outline or the window's fields. The home point is
// worked out once, and each locator text once per import (logs repeat their grids).
#include "logbook/entry/MapPosition.h"
#include "mapexport/ContactPosition.h"

#include <QHash>

class ImportLocator {
public:
    // The own locator as setting 6 holds it when the import starts.
    explicit ImportLocator(const QString& ownLocatorSetting);

    // A LocatorProcedure.
    bool operator()(const QString& locator, MapPosition& p);

private:
    std::optional<GeoPoint> home_;
    // Locator text as the record brings it -> its position (nothing: not valid).
    QHash<QString, std::optional<MapPosition>> seen_;
};
