#pragma once
// The logbook subsystem's logging category, "kestrel.logbook".
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcLogbook)
