#pragma once
// Logging category of the QSL card printing.
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcQsl)
