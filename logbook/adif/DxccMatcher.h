#pragma once
// The DXCC lookup for many callsigns at once (the ADIF import): the dxccdata patterns read
// once, matched in memory with LIKE's rules (no case, "%" any text, "_" one character) and in
// the table's order, so the first matching row gives the entity, as the window's lookup does.
// Plain prefixes ("DL%") and exact calls are found through hashes, other patterns are tried
// one by one, and the first row of all that match wins.
#include "logbook/db/DbError.h"

#include <QHash>
#include <QList>
#include <QString>

class DxccMatcher {
public:
    // Reads column 1 (pattern) and column 2 (entity) of "SELECT * FROM dxccdata  ".
    bool load(const QString& connection, DbError* error = nullptr);
    void add(const QString& pattern, const QString& entity);

    // The entity of the first matching row; "" when none.
    QString entityFor(const QString& callsign);
    qsizetype size() const { return rows_.size(); }

    // SQL LIKE of `text` against `pattern` (ASCII letters without case).
    static bool like(const QString& text, const QString& pattern);

private:
    struct Row {
        QString pattern;
        QString entity;
    };
    QList<Row> rows_;
    QHash<QString, int> prefixes_; // upper-case prefix of "PREFIX%" -> its first row
    QHash<QString, int> exact_; // upper-case text of a pattern without wildcards -> its first row
    QList<int> others_; // rows with wildcards elsewhere
    int longestPrefix_ = 0;
    QHash<QString, QString> cache_;
};
