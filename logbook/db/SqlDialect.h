#pragma once
// The logbook's SQL texts are written for SQLite. A PostgreSQL logbook runs the same texts after
// one translation, here, so no caller carries a second dialect. Works on tokens: string
// literals and everything the rules do not name pass through byte for byte.
#include <QList>
#include <QString>

namespace SqlDialect {
// One translation rule with an example: what differs, the SQLite text, its PostgreSQL form.
struct Translation {
    const char* what;
    const char* sqlite;
    const char* postgres;
};

// Every rule toPostgres() applies, one row each (docs/SQL-DIALECTS.md shows the same table).
const QList<Translation>& postgresTable();

// The text in PostgreSQL's dialect; empty for a statement PostgreSQL has no use for (most
// PRAGMAs). Pure and idempotent: translating a translated text changes nothing.
QString toPostgres(const QString& sqliteText);
} // namespace SqlDialect
