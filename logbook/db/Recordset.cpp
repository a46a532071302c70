#include "logbook/db/Recordset.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"

#include <QSqlQuery>
#include <QSqlRecord>


namespace {
const QString NoCurrentText = QStringLiteral(
    "There is no current record: the recordset is at its start or its end, or the record was deleted.");
const QString NotOpenText = QStringLiteral("The recordset is not open.");

// An empty text box gives a null QString; it is stored as an empty text, not as NULL.
QVariant normalised(const QVariant& value)
{
    if (value.typeId() == QMetaType::QString && value.toString().isNull())
        return QVariant(QStringLiteral(""));
    return value;
}

QString quotedName(const QString& name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}
} // namespace

Recordset::Recordset(const QString& connection)
    : connection_(connection)
    , busyTimeoutMs_(DbConnection::DefaultBusyTimeoutMs)
{
}

Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

bool Recordset::fail(int number, const QString& text) const
{
    error_ = { number, text };
    qCDebug(lcLogbook) << "recordset:" << error_.text();
    return false;
}

bool Recordset::fail(const DbError& e) const
{
    error_ = e;
    return false;
}

bool Recordset::open(const QString& sql, const QString& connection)
{
    connection_ = connection;
    return open(sql);
}

bool Recordset::open(const QString& sql)
{
    close();
    source_ = SqlSource(sql);
    open_ = true;
    if (!checkStatement()) {
        open_ = false;
        return false;
    }
    return true;
}

void Recordset::close()
{
    rollbackWrites();
    open_ = false;
    loaded_ = false;
    rows_.reset(0);
    names_.clear();
    index_.clear();
    pos_ = -1;
    currentDeleted_ = false;
    mode_ = Mode::None;
    pending_.clear();
    error_ = DbError();
}

// Prepares the statement as it will run: reports a wrong table, column, filter or file now,
// and learns the field names without reading any row.
bool Recordset::checkStatement()
{
    error_ = DbError();
    DbConnection c(connection_, busyTimeoutMs_);
    if (!c.isOpen())
        return fail(c.error());
    QStringList all;
    if (!c.describe(finalSql(), &all))
        return fail(c.error());
    const int first = canUpdate() ? 1 : 0;
    names_.clear();
    index_.clear();
    for (int i = first; i < all.size(); ++i) {
        const QString& name = all[i];
        if (!index_.contains(name.toLower())) // the first of equal names wins
            index_.insert(name.toLower(), int(names_.size()));
        names_ << name;
    }
    loaded_ = false;
    return true;
}

bool Recordset::ensureLoaded() const
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    return loaded_ || load();
}

bool Recordset::load() const
{
    DbConnection c(connection_, busyTimeoutMs_);
    if (!c.isOpen())
        return fail(c.error());
    if (!c.readRows(finalSql(), rows_, canUpdate() ? 1 : 0))
        return fail(c.error());
    loaded_ = true;
    pos_ = rows_.rowCount() > 0 ? 0 : -1;
    currentDeleted_ = false;
    return true;
}

bool Recordset::setFilter(const QString& filter)
{
    if (!flushPending())
        return false;
    filter_ = filter;
    return !open_ || checkStatement();
}

bool Recordset::setSort(const QString& sort)
{
    if (!flushPending())
        return false;
    sort_ = sort;
    return !open_ || checkStatement();
}

bool Recordset::requery()
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (!flushPending())
        return false;
    loaded_ = false;
    return load();
}

QString Recordset::finalSql() const
{
    return source_.statement(filter_, sort_);
}

QString Recordset::plainSql() const
{
    return source_.plainStatement(filter_, sort_);
}

int Recordset::recordCount() const
{
    return ensureLoaded() ? rows_.rowCount() : 0;
}

int Recordset::fieldCount() const
{
    return open_ ? int(names_.size()) : 0;
}

QString Recordset::fieldName(int index) const
{
    return index >= 0 && index < names_.size() ? names_[index] : QString();
}

QStringList Recordset::fieldNames() const
{
    return names_;
}

int Recordset::fieldIndex(const QString& name) const
{
    return index_.value(name.toLower(), -1);
}

int Recordset::resolveField(const QString& name) const
{
    const int i = fieldIndex(name);
    if (i < 0)
        fail(
            DbErrorNumber::NoSuchField, QStringLiteral("The recordset has no field named \"%1\".").arg(name));
    return i;
}

bool Recordset::atStart() const
{
    if (!ensureLoaded())
        return true;
    return rows_.rowCount() == 0 || pos_ < 0;
}

bool Recordset::atEnd() const
{
    if (!ensureLoaded())
        return true;
    return rows_.rowCount() == 0 || pos_ >= rows_.rowCount();
}

int Recordset::position() const
{
    return ensureLoaded() ? pos_ : -1;
}

bool Recordset::hasCurrent(bool report) const
{
    if (!ensureLoaded())
        return false;
    if (currentDeleted_ || pos_ < 0 || pos_ >= rows_.rowCount()) {
        if (report)
            fail(DbErrorNumber::NoCurrentRecord, NoCurrentText);
        return false;
    }
    return true;
}

bool Recordset::first()
{
    return move(0);
}

bool Recordset::last()
{
    return ensureLoaded() && move(rows_.rowCount() - 1);
}

bool Recordset::next()
{
    if (!flushPending() || !ensureLoaded())
        return false;
    if (currentDeleted_) {
        currentDeleted_ = false; // the row after the deleted one is already under the cursor
        return pos_ < rows_.rowCount();
    }
    if (pos_ >= rows_.rowCount())
        return fail(DbErrorNumber::NoCurrentRecord, NoCurrentText);
    ++pos_;
    return pos_ < rows_.rowCount();
}

bool Recordset::previous()
{
    if (!flushPending() || !ensureLoaded())
        return false;
    currentDeleted_ = false;
    if (pos_ < 0)
        return fail(DbErrorNumber::NoCurrentRecord, NoCurrentText);
    pos_ = std::min(pos_, rows_.rowCount()) - 1;
    return pos_ >= 0;
}

bool Recordset::move(int position)
{
    if (!flushPending() || !ensureLoaded())
        return false;
    currentDeleted_ = false;
    if (position < 0 || position >= rows_.rowCount()) {
        pos_ = position < 0 ? -1 : rows_.rowCount();
        return rows_.rowCount() == 0 ? false : fail(DbErrorNumber::NoCurrentRecord, NoCurrentText);
    }
    pos_ = position;
    return true;
}

QVariant Recordset::value(int field) const
{
    if (mode_ != Mode::None && pending_.contains(field))
        return pending_.value(field);
    if (field < 0 || field >= fieldCount()) {
        fail(DbErrorNumber::NoSuchField,
            QStringLiteral("The recordset has no field at position %1 (it has %2).")
                .arg(field)
                .arg(fieldCount()));
        return QVariant();
    }
    if (mode_ == Mode::Add)
        return QVariant();
    if (!hasCurrent(true))
        return QVariant();
    return rows_.value(pos_, field);
}

QVariant Recordset::value(const QString& field) const
{
    const int i = resolveField(field);
    return i < 0 ? QVariant() : value(i);
}

QString Recordset::text(int field) const
{
    return value(field).toString();
}

QString Recordset::text(const QString& field) const
{
    return value(field).toString();
}

QVariant Recordset::valueAt(int row, int field) const
{
    if (!ensureLoaded() || row < 0 || row >= rows_.rowCount() || field < 0 || field >= rows_.columnCount())
        return QVariant();
    return rows_.value(row, field);
}

bool Recordset::addNew()
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (!canUpdate())
        return fail(DbErrorNumber::NotUpdatable,
            QStringLiteral("This recordset cannot be changed: its query does not read one table."));
    if (!flushPending())
        return false;
    mode_ = Mode::Add;
    pending_.clear();
    return true;
}

bool Recordset::setValue(int field, const QVariant& value)
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (!canUpdate())
        return fail(DbErrorNumber::NotUpdatable,
            QStringLiteral("This recordset cannot be changed: its query does not read one table."));
    if (field < 0 || field >= fieldCount())
        return fail(DbErrorNumber::NoSuchField,
            QStringLiteral("The recordset has no field at position %1 (it has %2).")
                .arg(field)
                .arg(fieldCount()));
    if (mode_ == Mode::None) {
        if (!hasCurrent(true))
            return false;
        mode_ = Mode::Edit;
    }
    pending_.insert(field, normalised(value));
    return true;
}

bool Recordset::setValue(const QString& field, const QVariant& value)
{
    const int i = resolveField(field);
    return i >= 0 && setValue(i, value);
}

void Recordset::cancelUpdate()
{
    mode_ = Mode::None;
    pending_.clear();
}

bool Recordset::flushPending()
{
    return mode_ == Mode::None || update();
}

bool Recordset::update()
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (mode_ == Mode::None)
        return true;
    const bool ok = mode_ == Mode::Add ? writeNew() : writeChanges();
    if (ok) {
        mode_ = Mode::None;
        pending_.clear();
    }
    return ok;
}

bool Recordset::writeNew()
{
    QStringList columns;
    QStringList marks;
    QVariantList values;
    for (auto it = pending_.cbegin(); it != pending_.cend(); ++it) {
        columns << quotedName(names_[it.key()]);
        marks << QStringLiteral("?");
        values << it.value();
    }
    const QString sql = columns.isEmpty()
        ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quotedName(source_.baseTable()))
        : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
              .arg(quotedName(source_.baseTable()), columns.join(QStringLiteral(", ")),
                  marks.join(QStringLiteral(", ")));
    qint64 rowId = 0;
    QList<QVariant> row;
    const bool ok = write([&](DbConnection& c) {
        if (!c.exec(sql, values))
            return false;
        rowId = c.lastInsertRowId();
        if (!loaded_)
            return true;
        // The stored row as the table now holds it (defaults and the id included).
        row.resize(fieldCount());
        for (auto it = pending_.cbegin(); it != pending_.cend(); ++it)
            row[it.key()] = it.value();
        QSqlQuery back(c.database());
        back.setForwardOnly(true);
        if (back.exec(c.sql(QStringLiteral("SELECT * FROM %1 WHERE rowid = %2")
                                    .arg(quotedName(source_.baseTable()))
                                    .arg(rowId)))
            && back.next()) {
            const QSqlRecord rec = back.record();
            for (int i = 0; i < fieldCount(); ++i) {
                const int j = rec.indexOf(names_[i]);
                if (j >= 0)
                    row[i] = back.value(j);
            }
        }
        return true;
    });
    if (!ok)
        return false;
    if (loaded_) {
        rows_.appendRow(row, rowId);
        pos_ = rows_.rowCount() - 1;
        currentDeleted_ = false;
    }
    return true;
}

bool Recordset::writeChanges()
{
    if (!hasCurrent(true))
        return false;
    QStringList sets;
    QVariantList values;
    for (auto it = pending_.cbegin(); it != pending_.cend(); ++it) {
        sets << quotedName(names_[it.key()]) + QStringLiteral(" = ?");
        values << it.value();
    }
    values << QVariant(qlonglong(rows_.rowId(pos_)));
    const QString sql = QStringLiteral("UPDATE %1 SET %2 WHERE rowid = ?")
                            .arg(quotedName(source_.baseTable()), sets.join(QStringLiteral(", ")));
    bool found = true;
    if (!write([&](DbConnection& c) {
            if (!c.exec(sql, values))
                return false;
            found = c.changes() == 1;
            return found;
        }))
        return found
            ? false
            : fail(DbErrorNumber::RowChanged,
                QStringLiteral("The record could not be found to be changed: it was deleted meanwhile."));
    for (auto it = pending_.cbegin(); it != pending_.cend(); ++it)
        rows_.setValue(pos_, it.key(), it.value());
    return true;
}

bool Recordset::deleteCurrent()
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (mode_ == Mode::Add) {
        cancelUpdate();
        return true;
    }
    if (!canUpdate())
        return fail(DbErrorNumber::NotUpdatable,
            QStringLiteral("This recordset cannot be changed: its query does not read one table."));
    if (!hasCurrent(true))
        return false;
    const QString sql = QStringLiteral("DELETE FROM %1 WHERE rowid = ?").arg(quotedName(source_.baseTable()));
    if (!write([&](DbConnection& c) { return c.exec(sql, { QVariant(qlonglong(rows_.rowId(pos_))) }); }))
        return false;
    cancelUpdate();
    rows_.removeRow(pos_);
    currentDeleted_ = true;
    return true;
}

template <typename Body> bool Recordset::write(Body&& body)
{
    if (writes_) {
        // Inside the gathered writes a failing statement takes back only itself.
        return body(*writes_) || fail(writes_->error());
    }
    DbConnection c(connection_, busyTimeoutMs_);
    if (!c.isOpen())
        return fail(c.error());
    if (!c.begin() || !body(c) || !c.commit()) {
        const DbError e = c.error();
        c.rollback();
        return fail(e);
    }
    return true;
}

bool Recordset::beginWrites()
{
    if (!open_)
        return fail(DbErrorNumber::NotOpen, NotOpenText);
    if (writes_)
        return true;
    auto c = std::make_unique<DbConnection>(connection_, busyTimeoutMs_);
    c->setStatementRollback(true);
    if (!c->isOpen() || !c->begin())
        return fail(c->error());
    writes_ = std::move(c);
    return true;
}

bool Recordset::commitWrites()
{
    if (!writes_)
        return true;
    const bool ok = writes_->commit();
    if (!ok) {
        const DbError e = writes_->error();
        rollbackWrites();
        return fail(e);
    }
    writes_.reset();
    return true;
}

void Recordset::rollbackWrites()
{
    if (!writes_)
        return;
    writes_->rollback();
    writes_.reset();
    cancelUpdate();
    loaded_ = false;
}
