#pragma once
// casefold(text) for SQL: the text with every letter case-folded as Qt folds it. SQLite's LIKE
// folds ASCII letters only, so a search in another alphabet ("ør" for "Ørsted") folds both
// sides itself. A separate function, so LIKE itself stays built in and keeps its index use.
#include <QString>

struct sqlite3;

namespace SqlCaseFold {
// Adds casefold() to the connection; false when SQLite refused.
bool install(sqlite3* handle);
// True when the text needs casefold() to be searched without regard to case.
bool needsFolding(const QString& text);
} // namespace SqlCaseFold
