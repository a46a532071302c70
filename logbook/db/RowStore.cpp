#include "logbook/db/RowStore.h"

#include <libpq-fe.h>
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>

namespace {
constexpr int LengthBits = 24;
constexpr std::uint64_t MaxLength = (std::uint64_t(1) << LengthBits) - 1;
constexpr std::uint64_t MaxOffset = (std::uint64_t(1) << (64 - LengthBits)) - 1;
} // namespace

void RowStore::reset(int columns)
{
    columns_ = columns;
    types_.clear();
    words_.clear();
    rowIds_.clear();
    order_.clear();
    pool_.clear();
    big_.clear();
}

void RowStore::reserve(int rows)
{
    const std::size_t cells = std::size_t(rows) * std::size_t(columns_);
    types_.reserve(cells);
    words_.reserve(cells);
    rowIds_.reserve(std::size_t(rows));
    order_.reserve(std::size_t(rows));
}

void RowStore::setText(std::size_t cell, const char* data, std::size_t size, bool blob)
{
    const std::uint64_t offset = std::uint64_t(pool_.size());
    if (size <= MaxLength && offset + size <= MaxOffset) {
        pool_.append(data, qsizetype(size));
        types_[cell] = blob ? Blob : Text;
        words_[cell] = (offset << LengthBits) | size;
    } else {
        big_.append(QByteArray(data, qsizetype(size)));
        types_[cell] = blob ? BigBlob : BigText;
        words_[cell] = std::uint64_t(big_.size() - 1);
    }
}

std::size_t RowStore::newRow(std::int64_t rowId)
{
    const std::size_t base = types_.size();
    types_.resize(base + std::size_t(columns_), Null);
    words_.resize(base + std::size_t(columns_), 0);
    rowIds_.push_back(rowId);
    order_.push_back(int(rowIds_.size() - 1));
    return base;
}

void RowStore::setInteger(std::size_t cell, std::int64_t v)
{
    types_[cell] = Integer;
    std::memcpy(&words_[cell], &v, sizeof v);
}

void RowStore::setReal(std::size_t cell, double v)
{
    types_[cell] = Real;
    std::memcpy(&words_[cell], &v, sizeof v);
}

void RowStore::appendFromServer(const pg_result* result, int row, int first, std::int64_t rowId)
{
    // Type numbers of PostgreSQL's catalogue (pg_type.h): the integer and floating-point types
    // become numbers as SQLite gives them; everything else is text.
    enum : Oid { Int8 = 20, Int2 = 21, Int4 = 23, Oid4 = 26, Float4 = 700, Float8 = 701, Numeric = 1700 };
    const std::size_t base = newRow(rowId);
    for (int c = 0; c < columns_; ++c) {
        const std::size_t cell = base + std::size_t(c);
        const int col = first + c;
        if (PQgetisnull(result, row, col))
            continue;
        const char* text = PQgetvalue(result, row, col);
        switch (PQftype(result, col)) {
        case Int8:
        case Int2:
        case Int4:
        case Oid4:
            setInteger(cell, std::strtoll(text, nullptr, 10));
            break;
        case Float4:
        case Float8:
        case Numeric:
            setReal(cell, std::strtod(text, nullptr));
            break;
        default:
            setText(cell, text, std::size_t(PQgetlength(result, row, col)), false);
            break;
        }
    }
}

void RowStore::appendFromStatement(sqlite3_stmt* st, int first, std::int64_t rowId)
{
    const std::size_t base = newRow(rowId);
    for (int c = 0; c < columns_; ++c) {
        const std::size_t cell = base + std::size_t(c);
        const int col = first + c;
        switch (sqlite3_column_type(st, col)) {
        case SQLITE_INTEGER:
            setInteger(cell, sqlite3_column_int64(st, col));
            break;
        case SQLITE_FLOAT:
            setReal(cell, sqlite3_column_double(st, col));
            break;
        case SQLITE_TEXT: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(st, col));
            setText(cell, text, std::size_t(sqlite3_column_bytes(st, col)), false);
            break;
        }
        case SQLITE_BLOB: {
            const auto* data = static_cast<const char*>(sqlite3_column_blob(st, col));
            setText(cell, data, std::size_t(sqlite3_column_bytes(st, col)), true);
            break;
        }
        default:
            break;
        }
    }
}

void RowStore::appendRow(const QList<QVariant>& values, std::int64_t rowId)
{
    const std::size_t base = newRow(rowId);
    for (int c = 0; c < columns_ && c < values.size(); ++c)
        setCell(base + std::size_t(c), values[c]);
}

void RowStore::setCell(std::size_t cell, const QVariant& value)
{
    if (!value.isValid() || value.isNull()) {
        // A null QString stands for an empty text box: it is stored as an empty text.
        if (value.typeId() == QMetaType::QString)
            setText(cell, "", 0, false);
        else
            types_[cell] = Null;
        return;
    }
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Bool:
        setInteger(cell, value.toLongLong());
        return;
    case QMetaType::Double:
    case QMetaType::Float:
        setReal(cell, value.toDouble());
        return;
    case QMetaType::QByteArray: {
        const QByteArray b = value.toByteArray();
        setText(cell, b.constData(), std::size_t(b.size()), true);
        return;
    }
    default: {
        const QByteArray u = value.toString().toUtf8();
        setText(cell, u.constData(), std::size_t(u.size()), false);
        return;
    }
    }
}

QVariant RowStore::value(int row, int column) const
{
    const std::size_t cell = std::size_t(order_[row]) * std::size_t(columns_) + std::size_t(column);
    const std::uint64_t w = words_[cell];
    switch (types_[cell]) {
    case Integer: {
        std::int64_t v;
        std::memcpy(&v, &w, sizeof v);
        return QVariant(qlonglong(v));
    }
    case Real: {
        double v;
        std::memcpy(&v, &w, sizeof v);
        return QVariant(v);
    }
    case Text:
        return QString::fromUtf8(pool_.constData() + (w >> LengthBits), qsizetype(w & MaxLength));
    case Blob:
        return QByteArray(pool_.constData() + (w >> LengthBits), qsizetype(w & MaxLength));
    case BigText:
        return QString::fromUtf8(big_[qsizetype(w)]);
    case BigBlob:
        return big_[qsizetype(w)];
    default:
        return QVariant();
    }
}

bool RowStore::isNull(int row, int column) const
{
    return types_[std::size_t(order_[row]) * std::size_t(columns_) + std::size_t(column)] == Null;
}

void RowStore::setValue(int row, int column, const QVariant& value)
{
    setCell(std::size_t(order_[row]) * std::size_t(columns_) + std::size_t(column), value);
}

void RowStore::removeRow(int row)
{
    order_.erase(order_.begin() + row);
}

std::size_t RowStore::memoryUse() const
{
    std::size_t bytes = types_.capacity() + words_.capacity() * sizeof(std::uint64_t)
        + rowIds_.capacity() * sizeof(std::int64_t) + order_.capacity() * sizeof(int)
        + std::size_t(pool_.capacity());
    for (const QByteArray& b : big_)
        bytes += std::size_t(b.capacity());
    return bytes;
}
