#pragma once
// The contact half of the locator procedure: a contact locator turned into its coordinate text,
// distance and bearing from a home point. RichtungQRB and the import's locator both use it, so
// the stored values come from one computation.
#include "geo/Locator.h"
#include "logbook/entry/MapPosition.h"

#include <optional>

// The home point from the own-locator setting; nothing when that is missing or not valid.
std::optional<GeoPoint> HomePoint(const QString& ownLocatorSetting);

// The locator is taken upper case, 4 characters completed with "HH". When it is valid, `p` is
// replaced and the point returned; otherwise nothing is returned and `p` stays as it was.
// Without a home, distance and bearing are 0: never a made-up one.
std::optional<GeoPoint> LocateContact(
    const QString& locator, const std::optional<GeoPoint>& home, MapPosition& p);
