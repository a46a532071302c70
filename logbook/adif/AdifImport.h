#pragma once
// Imports an ADIF file into logtab. Each record is mapped (AdifMapping) with its date and time
// put on the log's clock; contacts with a locator get distance, bearing, coordinate text and
// the GEdata summary from the window's locator procedure; every contact gets its DXCC entity,
// number, zones and continent by looking its call up in dxccdata (the record's COUNTRY and
// DXCC are kept as the station's claim). Only damaged records, records without a call or a
// date and contacts already in the log are refused, with their line and the reason; a field
// that does not fit its column is kept as text and named. The work goes in slices (step) so
// the window stays live; records are stored in transactions of CommitEvery, and a Cancel keeps
// every record taken before it. Reading, mapping and completing run ahead on a thread of
// their own (AdifMapper); the duplicate check and the inserts stay on the caller's thread, in
// file order.
#include "logbook/db/DbError.h"
#include "logbook/entry/LogClock.h"
#include "logbook/entry/MapPosition.h"

#include <QList>
#include <QSet>
#include <QString>

#include <memory>
#include <string>
#include <vector>

struct AdifContact;
class AdifMapper;
class DbConnection;
class ServerCopyIn;
class WalCheckpointer;
struct sqlite3_stmt;

struct AdifRefusal {
    int line = 0;
    QString callsign;
    QString reason;
};

class AdifImport {
public:
    enum class State { Running, Done, Cancelled, Failed };
    static constexpr int CommitEvery = 5000;

    // `locate` may be empty: then no distance or map texts are computed (DISTANCE is kept). It
    // is called on the mapping thread while the import runs, so it must share nothing.
    // `clock` is the log's clock (LogClock::configured() for the operator's log).
    AdifImport(
        const QString& connection, LocatorProcedure locate, LogClock::Base clock = LogClock::Base::Local);
    ~AdifImport();

    // Reads the file; Failed (error() says why) when it cannot be read.
    State start(const QString& path);
    // The same on data already read (`name` is used in the report).
    State startData(QByteArray data, const QString& name);
    // Imports records for about `budgetNs` nanoseconds.
    State step(qint64 budgetNs);
    void cancel();

    State state() const { return state_; }
    qint64 done() const { return done_; }
    qint64 total() const { return total_; }
    int imported() const { return imported_; }
    const QList<AdifRefusal>& refusals() const { return refusals_; }
    // Fields kept as text in imported records, with the reason.
    const QList<AdifRefusal>& keptAsText() const { return kept_; }
    const DbError& error() const { return error_; }

    // "998 records imported from log.adi, 2 refused, 1 field kept as text:" and up to
    // `maxLines` lines ("line 12 (DL1ABC): no QSO_DATE"), refusals first, then how many more
    // there are.
    QString report(int maxLines = 30) const;
    // Every refusal and every field kept as text, one a line.
    QString refusalList() const;

    // The key that finds a contact twice: callsign, date, hour and minute, band text, mode.
    static QString duplicateKey(const QString& callsign, const QString& date, const QString& time,
        const QString& band, const QString& mode);

private:
    State fail(const DbError& e);
    bool prepareTable();
    bool commitPending();
    void closeConnection();
    // Binds one contact's values and runs the INSERT; false with error_ set.
    bool insert(const AdifContact& contact);
    DbError statementError() const;

    QString connection_;
    LocatorProcedure locate_;
    LogClock::Base clock_;
    QString name_;
    std::unique_ptr<AdifMapper> mapper_;
    qint64 done_ = 0; // the file position after the last record taken
    qint64 total_ = 0;
    QSet<QString> known_;
    QStringList columns_; // the AdifContact columns the table has
    QList<int> columnIndex_; // their positions in AdifContact::columns()
    QString insertSql_;
    std::unique_ptr<DbConnection> conn_;
    std::unique_ptr<WalCheckpointer> checkpointer_; // file logs: between commits, declared after conn_
    std::unique_ptr<ServerCopyIn> serverCopy_; // on a server: the open transaction's records
    std::vector<std::string> texts_; // UTF-8 of the bound texts, one a column
    sqlite3_stmt* insert_ = nullptr; // one prepared INSERT per transaction, finalized before its connection
    bool inTransaction_ = false;
    int pending_ = 0; // records of the open transaction
    int imported_ = 0;
    QList<AdifRefusal> refusals_;
    QList<AdifRefusal> kept_;
    State state_ = State::Running;
    DbError error_;
};
