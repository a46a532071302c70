#pragma once
// The beacon subsystem's logging category, "kestrel.beacons".
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcBeacons)
