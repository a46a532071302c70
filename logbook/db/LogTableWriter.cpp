#include "logbook/db/LogTableWriter.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/ServerCopyIn.h"

#include <sqlite3.h>

LogTableWriter::LogTableWriter(DbConnection& c, const QString& table, const QList<LogColumn>& columns)
    : c_(c)
{
    QStringList names;
    for (const LogColumn& col : columns)
        names << col.name;
    if (c_.onServer()) {
        copy_ = std::make_unique<ServerCopyIn>(c_, table, names);
        return;
    }
    const QByteArray sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                               .arg(table, names.join(QStringLiteral(", ")),
                                   QStringList(names.size(), QStringLiteral("?")).join(QStringLiteral(", ")))
                               .toUtf8();
    if (sqlite3_prepare_v2(c_.handle(), sql.constData(), int(sql.size()), &insert_, nullptr) != SQLITE_OK)
        error_ = fileError();
}

LogTableWriter::~LogTableWriter()
{
    sqlite3_finalize(insert_);
}

bool LogTableWriter::add(const LogRow& row)
{
    if (copy_) {
        for (const LogCell& cell : row) {
            if (cell.kind == LogCell::Null)
                copy_->addNull();
            else if (cell.kind == LogCell::Text)
                copy_->add(cell.bytes);
            else
                copy_->add(cell.numberText());
        }
        copy_->endRow();
        return true;
    }
    if (error_)
        return false;
    for (int i = 0; i < int(row.size()); ++i) {
        const LogCell& cell = row[std::size_t(i)];
        switch (cell.kind) {
        case LogCell::Null:
            sqlite3_bind_null(insert_, i + 1);
            break;
        case LogCell::Integer:
            sqlite3_bind_int64(insert_, i + 1, cell.integer);
            break;
        case LogCell::Real:
            sqlite3_bind_double(insert_, i + 1, cell.real);
            break;
        case LogCell::Text:
            sqlite3_bind_text(
                insert_, i + 1, cell.bytes.constData(), int(cell.bytes.size()), SQLITE_TRANSIENT);
            break;
        case LogCell::Blob:
            sqlite3_bind_blob(
                insert_, i + 1, cell.bytes.constData(), int(cell.bytes.size()), SQLITE_TRANSIENT);
        }
    }
    if (sqlite3_step(insert_) != SQLITE_DONE)
        error_ = fileError();
    sqlite3_reset(insert_);
    return !error_;
}

bool LogTableWriter::finish(DbError* error)
{
    if (copy_)
        return copy_->finish(error);
    if (error_)
        *error = error_;
    return !error_;
}

DbError LogTableWriter::fileError() const
{
    return DbConnection::sqliteError(sqlite3_extended_errcode(c_.handle()),
        QString::fromUtf8(sqlite3_errmsg(c_.handle())), c_.database().databaseName());
}
