#include "devices/link/LinkLog.h"

Q_LOGGING_CATEGORY(lcLink, "kestrel.devices.link", QtInfoMsg)
