#include "hub/HubLog.h"

Q_LOGGING_CATEGORY(lcHub, "kestrel.hub")
