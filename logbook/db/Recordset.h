#pragma once
// A client-side recordset over one SQL text of the logbook database, as the log list, search,
// DXCC lookup, beacon list, map export and QSL printing use it: open a query, narrow it with a
// filter text (" band like '144%'") and order it with a sort text ("date  desc "), walk it, read
// fields by name (case-blind) or position, add, change and delete rows.
//
// Rows are fetched on first use, in one pass, into compact storage, and the connection is
// closed again: every action (fetch, update, delete) opens its own connection, and every
// write runs in its own transaction. Nothing here throws or aborts: a failing action returns
// false (or an empty value) and leaves a DbError with a readable sentence in error().
#include "logbook/db/DbError.h"
#include "logbook/db/RowStore.h"
#include "logbook/db/SqlSource.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class DbConnection;

class Recordset {
public:
    // `connection` is the database connection text: the database file's path, as kept in
    // Station::dbConnection.
    explicit Recordset(const QString& connection = QString());
    Recordset(Recordset&&) noexcept;
    Recordset& operator=(Recordset&&) noexcept;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    ~Recordset();

    void setConnection(const QString& connection) { connection_ = connection; }
    const QString& connection() const { return connection_; }
    // How long a write waits for another writer before it gives up (milliseconds).
    void setBusyTimeout(int ms) { busyTimeoutMs_ = ms; }

    // Opens the recordset on a SQL text. The text is checked at once (a wrong table or column
    // is reported here); the rows are fetched when first needed.
    bool open(const QString& sql);
    bool open(const QString& sql, const QString& connection);
    void close();
    bool isOpen() const { return open_; }
    QString source() const { return source_.sql(); }

    // A condition over the whole query, e.g. " band like '144%'"; empty: none. Setting it on an
    // open recordset re-reads the rows and puts the cursor on the first one.
    bool setFilter(const QString& filter);
    const QString& filter() const { return filter_; }
    // An order over the whole query, e.g. "date  desc "; empty: the query's own order.
    bool setSort(const QString& sort);
    const QString& sort() const { return sort_; }
    // Reads the rows again (after changes made elsewhere); the cursor goes to the first row.
    bool requery();

    // The statement actually run. When canUpdate(), its column 0 is the hidden row id
    // (SqlSource::RowIdColumn), which fieldCount() and the field positions leave out.
    QString finalSql() const;
    // The same rows without the hidden column, for a plain QSqlQueryModel (ties in the sort
    // may come in another order there).
    QString plainSql() const;

    int recordCount() const;
    int fieldCount() const;
    QString fieldName(int index) const;
    QStringList fieldNames() const;
    // Position of a field by name, whatever its case ("Date", "date"); -1 if none.
    int fieldIndex(const QString& name) const;

    // BOF / EOF. Both are true on an empty recordset.
    bool atStart() const;
    bool atEnd() const;
    // Cursor position from 0; -1 before the first row, recordCount() after the last.
    int position() const;
    // Moving saves pending field changes first (as update() would); a move fails, and the
    // cursor stays, when that save fails.
    bool first();
    bool last();
    bool next();
    bool previous();
    bool move(int position);

    // The current row's field; an invalid QVariant for SQL NULL (and, with error() set, when
    // there is no current row or no such field). Texts come as QString, numbers as
    // qlonglong or double.
    QVariant value(int field) const;
    QVariant value(const QString& field) const;
    // The same as text: NULL and errors give an empty string.
    QString text(int field) const;
    QString text(const QString& field) const;
    // Any row's field without moving the cursor (for table models): row 0..recordCount()-1.
    QVariant valueAt(int row, int field) const;

    // True when the rows can be written back (the SQL reads one table).
    bool canUpdate() const { return source_.updatable(); }
    // Starts a new row; setValue() fills it, update() appends it to the table and to this
    // recordset, where it becomes the current (last) row.
    bool addNew();
    // Changes a field of the new row or of the current row; update() writes it. An empty (even
    // null) QString is stored as an empty text; only an invalid QVariant stores NULL.
    bool setValue(int field, const QVariant& value);
    bool setValue(const QString& field, const QVariant& value);
    // Writes the new row or the changed fields of the current row in one transaction. On
    // failure nothing is written and the pending values stay, so update() can be tried again.
    bool update();
    void cancelUpdate();
    bool isEditing() const { return mode_ != Mode::None; }
    // Deletes the current row from the table. As with classic recordsets the cursor stays on
    // the deleted row (fields give error 3021) until the next move: next() goes on with the
    // row after it.
    bool deleteCurrent();

    // Gathers the writes that follow (update, deleteCurrent) into one connection and one
    // transaction until commitWrites(), for runs that change many rows: one commit and one
    // checkpoint instead of one each per row. A write that fails inside leaves the earlier ones
    // in place for the commit; rollbackWrites() takes all of them back (and reads the rows again
    // at next use).
    bool beginWrites();
    bool commitWrites();
    void rollbackWrites();

    bool hasError() const { return error_.isError(); }
    const DbError& error() const { return error_; }
    QString errorText() const { return error_.text(); }
    void clearError() { error_ = DbError(); }

    // Bytes held by the fetched rows (for the benchmarks).
    std::size_t memoryUse() const { return rows_.memoryUse(); }

private:
    enum class Mode { None, Edit, Add };

    bool ensureLoaded() const;
    bool load() const;
    bool checkStatement();
    bool flushPending();
    bool hasCurrent(bool report) const;
    bool fail(int number, const QString& text) const;
    bool fail(const DbError& e) const;
    int resolveField(const QString& name) const;
    bool writeNew();
    bool writeChanges();
    // Runs `body` on the gathered writes' connection, or on a connection and transaction of its
    // own; false with error() set when it fails (nothing of it is then stored).
    template <typename Body> bool write(Body&& body);

    QString connection_;
    int busyTimeoutMs_;
    SqlSource source_;
    QString filter_;
    QString sort_;
    bool open_ = false;

    mutable bool loaded_ = false;
    mutable RowStore rows_;
    mutable QStringList names_;
    mutable QHash<QString, int> index_; // lower-case name -> position
    mutable int pos_ = -1;
    mutable bool currentDeleted_ = false;
    mutable DbError error_;

    Mode mode_ = Mode::None;
    QMap<int, QVariant> pending_;
    std::unique_ptr<DbConnection> writes_;
};
