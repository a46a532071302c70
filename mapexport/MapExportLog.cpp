#include "mapexport/MapExportLog.h"

Q_LOGGING_CATEGORY(lcMapExport, "kestrel.mapexport")
