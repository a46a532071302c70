#include "logbook/adif/AdifExport.h"

#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifMapping.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/BandTable.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QFileInfo>

AdifExport::AdifExport(const QString& connection, const QString& bandPattern, LogClock::Base clock)
    : connection_(connection)
    , bandPattern_(bandPattern)
    , clock_(clock)
    , rs_(connection)
{
}

AdifExport::~AdifExport()
{
    if (file_)
        file_->cancelWriting();
}

AdifExport::State AdifExport::fail(const DbError& e)
{
    error_ = e.isError() ? e : DbError { 1, QStringLiteral("unknown error") };
    if (file_)
        file_->cancelWriting();
    file_.reset();
    rs_.close();
    return state_ = State::Failed;
}

AdifExport::State AdifExport::start(const QString& path)
{
    path_ = path;
    QString filter = SqlText::logListFilter(bandPattern_);
    // The band buttons save a text their own filter may not find (30 m: "1014" beside "10140").
    const QString entry = BandTable::bandText(bandPattern_);
    if (!bandPattern_.endsWith(QLatin1Char('%')) && !entry.isEmpty() && entry != bandPattern_)
        filter += QStringLiteral(" or") + SqlText::bandFilter(entry);
    rs_.setFilter(filter);
    rs_.setSort(Sort);
    if (!rs_.open(SqlText::LogList))
        return fail(rs_.error());
    total_ = rs_.recordCount();
    if (rs_.hasError())
        return fail(rs_.error());
    for (const QString& column : AdifContact::columns())
        fields_ << rs_.fieldIndex(column);
    dxccLoaded_ = dxcc_.load(connection_); // without a prefix list the stored values go alone
    file_ = std::make_unique<QSaveFile>(path);
    if (!file_->open(QIODevice::WriteOnly))
        return fail({ DbErrorNumber::NoFile,
            QStringLiteral("The ADIF file cannot be written: %1 (%2)").arg(path, file_->errorString()) });
    file_->write(AdifMapping::header(QDateTime::currentDateTimeUtc()));
    return state_ = State::Running;
}

AdifExport::State AdifExport::step(qint64 budgetNs)
{
    if (state_ != State::Running)
        return state_;
    QElapsedTimer clock;
    clock.start();
    QByteArray chunk;
    for (int i = 1; row_ < total_ && (i % 256 != 0 || clock.nsecsElapsed() < budgetNs); ++i, ++row_) {
        AdifContact c;
        for (int k = 0; k < fields_.size(); ++k) {
            if (fields_[k] >= 0)
                c.setValue(k, rs_.valueAt(row_, fields_[k]));
        }
        if (c.dxccNr.isEmpty() && dxccLoaded_) {
            const DxccEntity e = dxcc_.find(c.callsign);
            if (c.dxcc.isEmpty())
                c.dxcc = e.name;
            AdifMapping::setEntity(c, { e.found, c.dxcc, e.dxccNr, e.cqZone, e.ituZone, e.continent });
        }
        if (AdifMapping::dateToAdif(c.date).isEmpty())
            undated_ << (c.callsign + QLatin1Char(' ') + c.band).trimmed();
        chunk += AdifMapping::recordText(c, clock_);
    }
    if (file_->write(chunk) != chunk.size())
        return fail({ DbErrorNumber::NoFile,
            QStringLiteral("The ADIF file cannot be written: %1 (%2)").arg(path_, file_->errorString()) });
    if (row_ < total_)
        return state_;
    if (!file_->commit()) {
        const QString why = file_->errorString();
        file_.reset();
        return fail({ DbErrorNumber::NoFile,
            QStringLiteral("The ADIF file cannot be written: %1 (%2)").arg(path_, why) });
    }
    file_.reset();
    rs_.close();
    return state_ = State::Done;
}

void AdifExport::cancel()
{
    if (state_ != State::Running)
        return;
    if (file_)
        file_->cancelWriting();
    file_.reset();
    rs_.close();
    state_ = State::Cancelled;
}

QString AdifExport::report() const
{
    QString text = QStringLiteral("%1 records written to %2.").arg(row_).arg(QFileInfo(path_).fileName());
    if (!undated_.isEmpty())
        text += QStringLiteral("\n%1 %2 no date: %3")
                    .arg(undated_.size())
                    .arg(undated_.size() == 1 ? QStringLiteral("record has") : QStringLiteral("records have"),
                        undated_.join(QStringLiteral(", ")));
    return text;
}
