#pragma once
// Compact storage of a recordset's rows: one type byte and one 8-byte word per cell, texts
// kept as UTF-8 in one shared buffer. A 100 000-row log fits in a few tens of megabytes and is
// read without building a QVariant per cell until a value is asked for.
#include <QByteArray>
#include <QList>
#include <QVariant>

#include <cstdint>
#include <vector>

struct sqlite3_stmt;
struct pg_result;

class RowStore {
public:
    void reset(int columns);
    void reserve(int rows);
    int rowCount() const { return int(order_.size()); }
    int columnCount() const { return columns_; }

    // Appends the current row of a stepped statement, columns first..first+columnCount()-1.
    void appendFromStatement(sqlite3_stmt* statement, int first, std::int64_t rowId);
    // Appends row `row` of a server's result (texts in its text format), columns from `first` on.
    void appendFromServer(const pg_result* result, int row, int first, std::int64_t rowId);
    void appendRow(const QList<QVariant>& values, std::int64_t rowId);

    QVariant value(int row, int column) const;
    bool isNull(int row, int column) const;
    std::int64_t rowId(int row) const { return rowIds_[order_[row]]; }
    void setValue(int row, int column, const QVariant& value);
    void removeRow(int row);

    // Bytes held, for the benchmarks.
    std::size_t memoryUse() const;

private:
    enum Type : std::uint8_t { Null, Integer, Real, Text, Blob, BigText, BigBlob };
    // Appends a row of NULL cells with its id; returns the row's first cell.
    std::size_t newRow(std::int64_t rowId);
    void setCell(std::size_t cell, const QVariant& value);
    void setInteger(std::size_t cell, std::int64_t v);
    void setReal(std::size_t cell, double v);
    void setText(std::size_t cell, const char* data, std::size_t size, bool blob);

    int columns_ = 0;
    std::vector<std::uint8_t> types_;
    std::vector<std::uint64_t> words_;
    std::vector<std::int64_t> rowIds_;
    std::vector<int> order_; // position -> physical row; deletions only touch this
    QByteArray pool_;
    QList<QByteArray> big_; // texts too long for a packed offset/length word
};
