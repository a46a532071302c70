#pragma once
// Dates of the log: stored as yyyy-MM-dd so that "date  desc " sorts chronologically, shown
// and typed as dd.MM.yyyy. Text that is neither form is passed through unchanged, so nothing
// an operator typed is lost.
#include <QDate>
#include <QString>

namespace LogDate {
inline const QString StoredFormat = QStringLiteral("yyyy-MM-dd");
inline const QString DisplayFormat = QStringLiteral("dd.MM.yyyy");

// A date in either form (also d.M.yyyy and dd.MM.yy); invalid if neither.
QDate parse(const QString& text);
// For the Date column: "15.11.2026" -> "2026-11-15".
QString toStored(const QString& text);
// For the windows: "2026-11-15" -> "15.11.2026".
QString toDisplay(const QString& stored);
} // namespace LogDate
