#pragma once
// Imports an ADIF file into logtab. Each record is mapped (AdifMapping); contacts with a
// locator get distance, bearing, coordinate text and the GEdata summary from the window's
// locator procedure, contacts without COUNTRY their DXCC entity from dxccdata. Records that
// cannot be imported (damaged, no call, date, time or band, a bad locator, a contact already
// in the log) are refused with their line and the reason. The work goes in slices (step) so the
// window stays live; records are stored in transactions of CommitEvery, and a Cancel keeps
// every record read before it.
#include "logbook/adif/AdifReader.h"
#include "logbook/adif/DxccMatcher.h"
#include "logbook/db/DbError.h"
#include "logbook/entry/MapPosition.h"

#include <QList>
#include <QSet>
#include <QString>

#include <memory>

struct AdifContact;
class DbConnection;
class QSqlQuery;

struct AdifRefusal {
    int line = 0;
    QString callsign;
    QString reason;
};

class AdifImport {
public:
    enum class State { Running, Done, Cancelled, Failed };
    static constexpr int CommitEvery = 5000;

    // `locate` may be empty: then no distance or map texts are computed (DISTANCE is kept).
    AdifImport(const QString& connection, LocatorProcedure locate);
    ~AdifImport();

    // Reads the file; Failed (error() says why) when it cannot be read.
    State start(const QString& path);
    // The same on data already read (`name` is used in the report).
    State startData(QByteArray data, const QString& name);
    // Imports records for about `budgetNs` nanoseconds.
    State step(qint64 budgetNs);
    void cancel();

    State state() const { return state_; }
    qint64 done() const;
    qint64 total() const;
    int imported() const { return imported_; }
    const QList<AdifRefusal>& refusals() const { return refusals_; }
    const DbError& error() const { return error_; }

    // "998 records imported from log.adi, 2 refused:" and up to `maxLines` refusal lines
    // ("line 12 (DL1ABC): no QSO_DATE"), then how many more there are.
    QString report(int maxLines = 30) const;
    // Every refusal, one a line.
    QString refusalList() const;

    // The key that finds a contact twice: callsign, date, hour and minute, band text.
    static QString duplicateKey(
        const QString& callsign, const QString& date, const QString& time, const QString& band);

private:
    State fail(const DbError& e);
    bool prepareTable();
    bool complete(AdifContact& contact);
    void refuse(const AdifRecord& record, const QString& reason);
    bool commitPending();

    QString connection_;
    LocatorProcedure locate_;
    QString name_;
    std::unique_ptr<AdifReader> reader_;
    DxccMatcher dxcc_;
    bool dxccLoaded_ = false;
    QSet<QString> known_;
    QStringList columns_; // the AdifContact columns the table has
    QList<int> columnIndex_; // their positions in AdifContact::columns()
    QString insertSql_;
    std::unique_ptr<DbConnection> conn_;
    std::unique_ptr<QSqlQuery> insert_; // goes before its connection
    bool inTransaction_ = false;
    int pending_ = 0; // records of the open transaction
    int imported_ = 0;
    QList<AdifRefusal> refusals_;
    State state_ = State::Running;
    DbError error_;
};
