// The logbook window on a club server that goes away: the contact typed stays in the entry line
// and in the local journal, and the journal is saved when the server is back.
#include "core/Station.h"
#include "logbook/browse/WorkedBefore.h"
#include "logbook/db/DbConnection.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/PendingRetry.h"
#include "mapexport/LogCount.h"
#include "ui/logbook/Form5.h"

#include <QDir>

namespace {
QString journalName(const PendingRetry& pending)
{
    return QDir::toNativeSeparators(pending.journal());
}
} // namespace

void Form5::startPending()
{
    if (!DbConnection::isServer(station_.dbConnection))
        return;
    pending_ = std::make_unique<PendingRetry>(PendingContacts::defaultPath(), station_.dbConnection);
    connect(pending_.get(), &PendingRetry::flushed, this, &Form5::pendingFlushed);
    pending_->retryNow(); // what an earlier run kept
}

void Form5::keepPending(const EntryLine& line, const QList<SavedField>& fields, bool serverAway)
{
    PendingContacts journal(pending_->journal());
    QString error;
    // Saved again with the same key: the operator corrected the contact the line holds.
    const bool corrected = !heldId_.isEmpty()
        && PendingContacts::sameContact(ContactSave::fields(heldLine_, {}), fields)
        && journal.replace(heldId_, fields, &error);
    if (!corrected) {
        const QString id = journal.append(station_.dbConnection, fields, &error);
        if (id.isEmpty()) {
            station_.prompts.information(
                QStringLiteral("The contact is not saved: the logbook server %1 cannot be reached, and the "
                               "contact could not be kept on this computer either (%2). It stays in the "
                               "entry line.")
                    .arg(DbConnection::serverName(station_.dbConnection), error));
            return;
        }
        heldId_ = id;
    }
    heldLine_ = line;
    pending_->setWaiting();
    if (!serverAway) {
        pending_->retryNow();
        return;
    }
    if (!awayTold_) {
        awayTold_ = true;
        station_.prompts.information(
            QStringLiteral("The logbook server %1 cannot be reached. The contact stays in the entry line "
                           "and is kept in %2; it is saved as soon as the server is back.")
                .arg(DbConnection::serverName(station_.dbConnection), journalName(*pending_)));
    }
    pending_->retryLater();
}

void Form5::pendingFlushed(const PendingFlush& result)
{
    if (!result.damaged.isEmpty())
        station_.prompts.information(result.damaged.join(QLatin1Char('\n')));
    if (result.error && result.error.number != DbErrorNumber::ServerGone)
        station_.prompts.reportOnce(QStringLiteral("A contact kept in %1 was not saved and stays there: %2")
                                        .arg(journalName(*pending_), result.error.text()),
            PromptGate::Fault::Standalone);
    if (result.left == 0)
        awayTold_ = false;
    else if (result.error.number == DbErrorNumber::ServerGone && !awayTold_) {
        // Contacts an earlier run kept, and the server is still away.
        awayTold_ = true;
        station_.prompts.information(
            QStringLiteral("The logbook server %1 cannot be reached. %2 kept in %3 %4 saved as soon as the "
                           "server is back.")
                .arg(DbConnection::serverName(station_.dbConnection),
                    result.left == 1 ? QStringLiteral("One contact")
                                     : QStringLiteral("%1 contacts").arg(result.left),
                    journalName(*pending_), result.left == 1 ? QStringLiteral("is") : QStringLiteral("are")));
    }
    if (result.saved.isEmpty())
        return;
    if (result.saved.contains(heldId_)) {
        if (entryLine() == heldLine_) // not when the operator has typed on meanwhile
            clearEntryLine();
        heldId_.clear();
    }
    const int n = int(result.saved.size());
    const QString server = DbConnection::serverName(station_.dbConnection);
    QString text = n == 1
        ? QStringLiteral(
            "The contact kept in %1 while the logbook server %2 could not be reached is now saved.")
              .arg(journalName(*pending_), server)
        : QStringLiteral(
            "The %1 contacts kept in %2 while the logbook server %3 could not be reached are now saved.")
              .arg(QString::number(n), journalName(*pending_), server);
    if (result.left > 0)
        text += QStringLiteral(" %1 still waiting.").arg(result.left);
    station_.prompts.information(text);
    worked_->load(station_.dbConnection);
    showWorkedBefore();
    if (!isBusy())
        runCounts({ int(LogCount::Kind::SQNr) }, [this] { loadLogList(QStringLiteral("Save_Click")); });
}
