#include "beacons/BeaconsLog.h"

Q_LOGGING_CATEGORY(lcBeacons, "kestrel.beacons")
