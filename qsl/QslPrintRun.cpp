#include "qsl/QslPrintRun.h"

#include "qsl/CardDesign.h"
#include "qsl/CardNames.h"
#include "qsl/QslCards.h"
#include "qsl/QslLogging.h"
#include "qsl/QslText.h"

#include "logbook/db/DbConnection.h"

QslRunOutcome QslPrintRun::run(const QString& connection, const QString& letter, CardDesign& design,
    QPagedPaintDevice& device, const SignaturePictures& pictures)
{
    QslRunOutcome out;
    out.letter = letter;
    const QslRunRead read = QslRunReader::read(connection, letter);
    out.hasRows = read.hasRows;
    out.contacts = read.contacts->count();
    out.leftOver = read.leftOver;
    out.marked = read.marked;
    out.databaseFailed = read.failed;
    out.databaseError = read.errorDetail;

    if (read.hasRows) {
        design.setText(CardName::Greeting, QslText::greeting(letter));
        design.setText(CardName::Confirmation, QslText::confirmation(letter));
        design.setText(CardName::Closing, QslText::closing(letter));
    }
    const QList<CardTexts> cards = QslCards::make(*read.contacts);
    out.cards = cards.size();
    if (!cards.isEmpty()) {
        completeGreeting(design);
        out.print = QslPrintJob::print(device, design, cards, pictures);
        if (!out.print.ok)
            out.messages << printFailedMessage(out.print.error, read.marked);
        else
            out.notes << QStringLiteral("%1 contacts with QSL \"%2\" printed on %3 cards.")
                             .arg(out.contacts)
                             .arg(letter)
                             .arg(out.cards);
    } else if (!read.failed) {
        out.notes << QStringLiteral("No contacts with QSL \"%1\" to print.").arg(letter);
    }
    if (read.hasRows)
        design.setTexts(QslCards::cleared()); // an empty selection leaves what the operator typed

    if (read.failed) {
        out.messages << QslText::NoRecordset;
        out.notes << read.errorDetail;
    }
    if (read.leftOver > 0)
        out.messages << leftOverMessage(read.leftOver, letter);
    qCInfo(lcQsl) << "print run" << letter << out.contacts << "contacts," << out.cards << "cards,"
                  << out.marked.size() << "marked," << out.leftOver << "left";
    return out;
}

void QslPrintRun::completeGreeting(CardDesign& design)
{
    if (design.text(CardName::Greeting).isEmpty())
        design.setText(CardName::Greeting, QslText::Please);
}

QString QslPrintRun::printFailedMessage(const QString& reason, const QList<MarkedContact>& marked)
{
    QString text = QStringLiteral("Printing failed: %1").arg(reason);
    if (marked.isEmpty())
        return text;
    text += QStringLiteral("\n\nThe QSL letter of these %1 contacts has already been changed; "
                           "print their cards again:")
                .arg(marked.size());
    QStringList rest;
    for (int i = 0; i < marked.size(); ++i) {
        const MarkedContact& c = marked.at(i);
        if (i < ListedContacts)
            text += QStringLiteral("\n%1 %2 %3 (%4 -> %5)")
                        .arg(c.callsign, c.date.trimmed(), c.time.trimmed(), c.before, c.after);
        else
            rest << c.callsign;
    }
    if (!rest.isEmpty())
        text += QStringLiteral("\nand %1 more: %2").arg(rest.size()).arg(rest.join(QStringLiteral(", ")));
    return text;
}

QString QslPrintRun::leftOverMessage(int leftOver, const QString& letter)
{
    return QStringLiteral("Only %1 contacts fit into one print run: %2 more with QSL \"%3\" keep their "
                          "letter. Start the run again to print them.")
        .arg(QslRunBuffer::Capacity)
        .arg(leftOver)
        .arg(letter);
}

QString QslPrintRun::restoreQuestion(int marked)
{
    return QStringLiteral("Set the QSL letter of these %1 contacts back to what it was before this run, "
                          "so that the next run prints their cards again?")
        .arg(marked);
}

QString QslPrintRun::restoreLetters(const QString& connection, const QList<MarkedContact>& marked)
{
    DbConnection c(connection);
    int restored = 0;
    bool ok = c.isOpen() && c.begin();
    for (qsizetype i = 0; ok && i < marked.size(); ++i) {
        const MarkedContact& m = marked.at(i);
        // A letter changed since (by hand, or by another run) is left as it now stands.
        ok = c.exec(QStringLiteral("UPDATE logtab SET QSL = ? WHERE ID = ? AND QSL = ?"),
            { m.before, m.id, m.after });
        restored += ok ? c.changes() : 0;
    }
    ok = ok && c.commit();
    if (!ok) {
        const QString why = c.error().text();
        c.rollback();
        qCWarning(lcQsl) << "letters not set back:" << why;
        return QStringLiteral("The QSL letters could not be set back: %1\nThey stay as the run left them.")
            .arg(why);
    }
    qCInfo(lcQsl) << restored << "of" << marked.size() << "letters set back";
    if (restored == marked.size())
        return QStringLiteral("The QSL letter of %1 contacts is back to what it was.").arg(restored);
    return QStringLiteral("The QSL letter of %1 of %2 contacts is back to what it was; the others had "
                          "been changed since and keep their letter.")
        .arg(restored)
        .arg(marked.size());
}
