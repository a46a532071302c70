#pragma once
// A logbook database for the window's logic tests: a Station pointed at a new file, and the
// locator procedure the window hands to the completion and the import.
#include "DbTestSupport.h"
#include "core/Station.h"
#include "logbook/entry/MapPosition.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"

class EntryTestDb : public TestDb {
public:
    EntryTestDb()
    {
        station.dbConnection = path();
        station.settings.setText(Setting::MyCall, QStringLiteral("N0CALL"));
        station.settings.setText(Setting::MyLocator, QStringLiteral("JN48OW"));
    }

    // RichtungQRB on scratch fields, as the window's ADIF import uses it.
    LocatorProcedure locator()
    {
        return [this](const QString& grid, MapPosition& p) {
            LogMapFields scratch;
            if (!RichtungQRB(station, scratch, grid))
                return false;
            p = { station.coordText, scratch.distanceKm, scratch.bearing };
            return true;
        };
    }

    RecordingPrompts prompts;
    Station station { prompts };
};
