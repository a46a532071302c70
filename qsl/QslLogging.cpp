#include "qsl/QslLogging.h"

Q_LOGGING_CATEGORY(lcQsl, "kestrel.qsl")
