#pragma once
// The DXCC lookup for many callsigns at once (ADIF import, re-checking a log, kestrel-log):
// the dxccdata rows read once and matched in memory with exactly the window's SQL text's
// semantics: LIKE's rules (ASCII letters without case, "%" any text, "_" one character), rows
// in stored order, the first matching row wins. Plain prefixes ("DL%") and exact calls are
// found through hashes, other patterns are tried one by one. find() reads the call with the
// country rules first (DxccCall), as the window's lookup does.
#include "logbook/browse/DxccEntity.h"
#include "logbook/db/DbError.h"

#include <QHash>
#include <QList>
#include <QString>

class DxccIndex {
public:
    // Reads "SELECT * FROM dxccdata  ": pattern and name by position (1, 2), entity number,
    // zones and continent by column name where the table has them.
    bool load(const QString& connection, DbError* error = nullptr);
    void add(const QString& pattern, const DxccEntity& entity);
    void add(const QString& pattern, const QString& name)
    {
        add(pattern, DxccEntity { true, name, 0, 0, 0, {} });
    }

    // The entity of a callsign as heard (normalised by the country rules).
    DxccEntity find(const QString& callsign) const;
    // The entity of the first row whose pattern `text` matches, as the SQL text finds it.
    DxccEntity match(const QString& text) const;
    // True when a row's pattern is `text` itself, without wildcards (an exact call).
    bool isExactCall(const QString& text) const;
    qsizetype size() const { return rows_.size(); }

    // SQL LIKE of `text` against `pattern` (ASCII letters without case).
    static bool like(const QString& text, const QString& pattern);

private:
    struct Row {
        QString pattern;
        DxccEntity entity;
    };
    QList<Row> rows_;
    QHash<QString, int> prefixes_; // upper-case prefix of "PREFIX%" -> its first row
    QHash<QString, int> exact_; // upper-case text of a pattern without wildcards -> its first row
    QList<int> others_; // rows with wildcards elsewhere
    int longestPrefix_ = 0;
};
