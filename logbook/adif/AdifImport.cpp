#include "logbook/adif/AdifImport.h"

#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifMapper.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/ServerCopyIn.h"
#include "logbook/db/WalCheckpointer.h"
#include "logbook/entry/ContactSummary.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSqlQuery>
#include <QStringBuilder>

#include <sqlite3.h>

#include <utility>

AdifImport::AdifImport(const QString& connection, LocatorProcedure locate, LogClock::Base clock)
    : connection_(connection)
    , locate_(std::move(locate))
    , clock_(clock)
{
}

AdifImport::~AdifImport()
{
    commitPending(); // what was read before the import was dropped stays
    closeConnection();
}

QString AdifImport::duplicateKey(const QString& callsign, const QString& date, const QString& time,
    const QString& band, const QString& mode)
{
    // One allocation (QStringBuilder): a key is made for every record and every contact of the log.
    return callsign.toUpper() % QLatin1Char('|') % date % QLatin1Char('|') % ContactSummary::timeText(time)
        % QLatin1Char('|') % band % QLatin1Char('|') % mode.toUpper();
}

AdifImport::State AdifImport::fail(const DbError& e)
{
    error_ = e.isError() ? e : DbError { 1, QStringLiteral("unknown error") };
    mapper_.reset();
    // The records of the open transaction are not stored: they do not count as imported.
    sqlite3_finalize(insert_);
    insert_ = nullptr;
    serverCopy_.reset(); // its COPY ends before the rollback
    if (conn_)
        conn_->rollback();
    closeConnection();
    pending_ = 0;
    return state_ = State::Failed;
}

bool AdifImport::commitPending()
{
    if (!conn_)
        return true;
    sqlite3_finalize(insert_);
    insert_ = nullptr;
    DbError copyError;
    if (serverCopy_)
        std::exchange(serverCopy_, nullptr)->finish(&copyError);
    const bool ok = !copyError && (!inTransaction_ || conn_->commit());
    if (!ok) {
        const DbError e = copyError ? copyError : conn_->error();
        conn_->rollback();
        closeConnection();
        pending_ = 0;
        error_ = e;
        return false;
    }
    inTransaction_ = false;
    imported_ += pending_;
    pending_ = 0;
    return true;
}

AdifImport::State AdifImport::start(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail({ DbErrorNumber::NoFile,
            QStringLiteral("The ADIF file cannot be read: %1 (%2)").arg(path, file.errorString()) });
    return startData(file.readAll(), QFileInfo(path).fileName());
}

AdifImport::State AdifImport::startData(QByteArray data, const QString& name)
{
    name_ = name;
    auto reader = std::make_unique<AdifReader>(std::move(data));
    done_ = reader->position();
    total_ = reader->size();
    if (!prepareTable())
        return state_;
    std::optional<DxccIndex> dxcc(std::in_place);
    if (!dxcc->load(connection_))
        dxcc.reset(); // without a prefix list the entity stays empty
    mapper_ = std::make_unique<AdifMapper>(std::move(reader), std::move(dxcc), locate_, clock_);
    return state_ = State::Running;
}

// Learns which columns the log has (an old log lacks the map columns) and the contacts
// already in it.
bool AdifImport::prepareTable()
{
    DbConnection c(connection_);
    if (!c.isOpen()) {
        fail(c.error());
        return false;
    }
    QSqlQuery q(c.database());
    q.setForwardOnly(true);
    QSet<QString> present;
    if (q.exec(c.sql(QStringLiteral("PRAGMA table_info(logtab)")))) {
        while (q.next())
            present.insert(q.value(1).toString().toLower());
    }
    if (present.isEmpty()) {
        fail({ DbErrorNumber::NoSuchField, QStringLiteral("The database has no table logtab.") });
        return false;
    }
    const QStringList& all = AdifContact::columns();
    QStringList marks;
    for (int i = 0; i < all.size(); ++i) {
        if (!present.contains(all[i].toLower()))
            continue;
        columns_ << all[i];
        columnIndex_ << i;
        marks << QStringLiteral("?");
    }
    insertSql_ = QStringLiteral("INSERT INTO logtab (%1) VALUES (%2)")
                     .arg(columns_.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    if (q.exec(c.sql(QStringLiteral("SELECT Callsign, Date, GMT, Band, mode FROM logtab")))) {
        while (q.next())
            known_.insert(duplicateKey(q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                q.value(3).toString(), q.value(4).toString()));
    }
    return true;
}

DbError AdifImport::statementError() const
{
    sqlite3* h = conn_->handle();
    return DbConnection::sqliteError(
        sqlite3_extended_errcode(h), QString::fromUtf8(sqlite3_errmsg(h)), connection_);
}

bool AdifImport::insert(const AdifContact& contact)
{
    // Bound as the Qt driver would bind these values: a null text is NULL, an empty one ''.
    if (conn_->onServer()) {
        const QVariantList values = contact.values();
        // A round trip per record would take minutes for a large file: the transaction's records
        // go to the server in one COPY, ended before its COMMIT (commitPending).
        if (!serverCopy_)
            serverCopy_ = std::make_unique<ServerCopyIn>(*conn_, QStringLiteral("logtab"), columns_);
        for (const int column : std::as_const(columnIndex_)) {
            const QVariant& v = values[column];
            if (!v.isValid() || (v.typeId() == QMetaType::QString && v.toString().isNull()))
                serverCopy_->addNull();
            else if (v.typeId() == QMetaType::Double)
                serverCopy_->add(QByteArray::number(v.toDouble(), 'g', QLocale::FloatingPointShortest));
            else
                serverCopy_->add(v.toString().toUtf8());
        }
        serverCopy_->endRow();
        return true;
    }
    texts_.resize(std::size_t(columnIndex_.size()));
    for (int k = 0; k < columnIndex_.size(); ++k) {
        const AdifContact::Cell cell = contact.cell(columnIndex_[k]);
        const int at = k + 1;
        int rc = SQLITE_OK;
        switch (cell.kind) {
        case AdifContact::Cell::Kind::Null:
            rc = sqlite3_bind_null(insert_, at);
            break;
        case AdifContact::Cell::Kind::Integer:
            rc = sqlite3_bind_int(insert_, at, cell.integer);
            break;
        case AdifContact::Cell::Kind::Number:
            rc = sqlite3_bind_double(insert_, at, cell.number);
            break;
        case AdifContact::Cell::Kind::Text: {
            // ASCII goes in as UTF-8, the log's encoding, so SQLite neither copies nor converts
            // it; other text as UTF-16 as before. The buffers live until the next record.
            const QString& text = *cell.text;
            std::string& bytes = texts_[std::size_t(k)];
            bytes.resize(std::size_t(text.size()));
            const QChar* from = text.constData();
            bool ascii = true;
            for (qsizetype i = 0; ascii && i < text.size(); ++i) {
                ascii = from[i].unicode() < 0x80;
                bytes[std::size_t(i)] = char(from[i].unicode());
            }
            rc = ascii ? sqlite3_bind_text(insert_, at, bytes.data(), int(bytes.size()), SQLITE_STATIC)
                       : sqlite3_bind_text16(insert_, at, from, int(text.size() * 2), SQLITE_STATIC);
            break;
        }
        }
        if (rc != SQLITE_OK) {
            error_ = statementError();
            return false;
        }
    }
    const int rc = sqlite3_step(insert_);
    sqlite3_reset(insert_);
    if (rc != SQLITE_DONE) {
        error_ = statementError();
        return false;
    }
    return true;
}

AdifImport::State AdifImport::step(qint64 budgetNs)
{
    if (state_ != State::Running)
        return state_;
    QElapsedTimer clock;
    clock.start();
    // One connection for the whole import; a transaction holds CommitEvery records, so the
    // disk is synced a few times per 100 000 records instead of at every slice.
    if (!conn_) {
        conn_ = std::make_unique<DbConnection>(connection_);
        // The indexes take keys all over the file: a page cache that holds them spares
        // reading pages back from the journal and the file for every record.
        if (conn_->isOpen())
            conn_->exec(QStringLiteral("PRAGMA cache_size=-65536"));
    }
    if (!conn_->isOpen())
        return fail(conn_->error());
    if (!inTransaction_) {
        if (!conn_->begin())
            return fail(conn_->error());
        inTransaction_ = true;
    }
    if (!insert_ && !conn_->onServer()) {
        const QByteArray sql = insertSql_.toUtf8();
        if (sqlite3_prepare_v2(conn_->handle(), sql.constData(), int(sql.size()), &insert_, nullptr)
            != SQLITE_OK)
            return fail(statementError());
    }
    bool more = true;
    for (int i = 1; (i % 64 != 0 || clock.nsecsElapsed() < budgetNs); ++i) {
        const AdifMapped* m = mapper_->next();
        if (!(more = m != nullptr))
            break;
        done_ = m->end;
        if (m->refused) {
            refusals_.append({ m->line, m->callsign, m->reason });
            continue;
        }
        if (known_.contains(m->key)) {
            refusals_.append({ m->line, m->callsign, QStringLiteral("the contact is already in the log") });
            continue;
        }
        if (!insert(m->contact))
            return fail(error_);
        known_.insert(m->key);
        ++pending_;
        for (const QString& note : m->notes)
            kept_.append({ m->line, m->callsign, note });
    }
    const bool commitNow = !more || pending_ >= CommitEvery;
    if (commitNow && !commitPending())
        return fail(error_);
    if (commitNow && more && !conn_->onServer()) {
        // Copies what was committed into the file while the import goes on, so that the
        // closing checkpoint is left with the last stretch.
        if (!checkpointer_)
            checkpointer_ = std::make_unique<WalCheckpointer>(connection_);
        checkpointer_->request();
    }
    if (!more) {
        done_ = total_;
        closeConnection();
        mapper_.reset(); // joined after the close: its threads free their caches meanwhile
        state_ = State::Done;
    }
    return state_;
}

void AdifImport::closeConnection()
{
    checkpointer_.reset(); // before the close's own checkpoint, which would find it busy
    conn_.reset();
}

void AdifImport::cancel()
{
    if (state_ != State::Running)
        return;
    if (!commitPending()) {
        fail(error_);
        return;
    }
    mapper_.reset();
    closeConnection();
    state_ = State::Cancelled;
}

QString AdifImport::refusalList() const
{
    QStringList lines;
    for (const QList<AdifRefusal>* list : { &refusals_, &kept_ }) {
        for (const AdifRefusal& r : *list)
            lines << QStringLiteral("line %1 (%2): %3")
                         .arg(r.line)
                         .arg(r.callsign.isEmpty() ? QStringLiteral("no call") : r.callsign, r.reason);
    }
    return lines.join(QLatin1Char('\n'));
}

QString AdifImport::report(int maxLines) const
{
    QString text = QStringLiteral("%1 records imported from %2, %3 refused")
                       .arg(imported_)
                       .arg(name_)
                       .arg(refusals_.size());
    if (!kept_.isEmpty())
        text += kept_.size() == 1 ? QStringLiteral(", 1 field kept as text")
                                  : QStringLiteral(", %1 fields kept as text").arg(kept_.size());
    if (state_ == State::Cancelled)
        text += QStringLiteral(" (the import was stopped before the end of the file)");
    if (refusals_.isEmpty() && kept_.isEmpty())
        return text + QLatin1Char('.');
    text += QLatin1Char(':');
    const QStringList lines = refusalList().split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size() && i < maxLines; ++i)
        text += QLatin1Char('\n') + lines[i];
    if (lines.size() > maxLines)
        text += QStringLiteral("\n... and %1 more.").arg(lines.size() - maxLines);
    return text;
}
