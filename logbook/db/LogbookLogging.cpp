#include "logbook/db/LogbookLogging.h"

Q_LOGGING_CATEGORY(lcLogbook, "kestrel.logbook")
