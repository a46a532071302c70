#pragma once
// Locators as contest robots score them: 4, 6, 8 or 10 characters, letters of either case;
// distance between the centres of the smallest squares given, on the sphere of radius
// 6371.291 km that IARU Region 1 contest rules name.
#include <QString>

namespace EdiLocator {
// A Maidenhead locator of 4, 6, 8 or 10 characters, case-blind.
bool isValid(const QString& locator);
// Great-circle distance in km between the centres of two valid locators.
double distanceKm(const QString& from, const QString& to);
// Contest points of a distance: whole kilometres, cut, at least 1.
int points(double km);
} // namespace EdiLocator
