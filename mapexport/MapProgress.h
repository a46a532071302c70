#pragma once
// Progress of a long map action: what it is doing, how many records are done of how many.
// Returning false asks the action to stop; an export stopped so leaves "earth.kml" as it was.
#include <QString>

#include <functional>

using MapProgress = std::function<bool(const QString& stage, qint64 done, qint64 total)>;
