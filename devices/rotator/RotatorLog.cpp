#include "devices/rotator/RotatorLog.h"

Q_LOGGING_CATEGORY(lcRotator, "kestrel.devices.rotator")
