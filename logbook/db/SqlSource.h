#pragma once
// How a recordset's SQL text becomes the statement actually run: the base table is found so
// rows can be written back, a hidden row-id column is put in front, and the filter and sort
// texts are applied as a condition and an order over the whole query. Pure text, no I/O.
#include <QString>

class SqlSource {
public:
    // Name of the hidden first column that carries each row's id in its base table.
    static inline const QString RowIdColumn = QStringLiteral("kestrel_rowid");

    explicit SqlSource(const QString& sql = QString());

    const QString& sql() const { return sql_; }
    // The single table the query reads, when rows can be written back to it; else empty.
    const QString& baseTable() const { return table_; }
    bool updatable() const { return !table_.isEmpty(); }

    // The statement as run: the source with the hidden row-id column (when updatable), wrapped
    // as SELECT * FROM (...) WHERE <filter> ORDER BY <sort> when either is given. Rows with
    // equal sort keys keep their entry order (reversed when the last key is descending).
    QString statement(const QString& filter, const QString& sort) const;
    // The same without the hidden column: what a plain query model would run.
    QString plainStatement(const QString& filter, const QString& sort) const;

private:
    QString sql_;
    QString table_;
    int insertAt_ = -1; // where the row-id column goes in the select list
};
