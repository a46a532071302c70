#include "devices/lines/LinesLog.h"

Q_LOGGING_CATEGORY(lcLines, "kestrel.devices.lines")
