#include "devices/rig/RigLog.h"

Q_LOGGING_CATEGORY(lcRig, "kestrel.devices.rig")
