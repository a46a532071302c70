#include "devices/keyer/KeyerLog.h"

Q_LOGGING_CATEGORY(lcKeyer, "kestrel.devices.keyer")
