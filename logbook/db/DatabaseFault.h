#pragma once
// The one message for a logbook database that cannot serve at start: which file, in which
// folder, what is wrong and what the operator can do about it.
#include "logbook/db/DbError.h"

#include <QString>

QString DatabaseFaultText(const QString& path, const DbError& error);
