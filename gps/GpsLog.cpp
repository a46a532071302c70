#include "gps/GpsLog.h"

Q_LOGGING_CATEGORY(lcGps, "kestrel.gps")
