#include "qsl/QslRunReader.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "qsl/QslLogging.h"
#include "qsl/QslText.h"

namespace {

QslContact contactOf(const Recordset& rs)
{
    QslContact c;
    c.date = QslText::formatDate(rs.text(QStringLiteral("Date")));
    c.time = QslText::formatTime(rs.text(QStringLiteral("GMT")));
    c.callsign = rs.text(QStringLiteral("Callsign"));
    c.band = QslText::formatBand(rs.text(QStringLiteral("Band")));
    c.mode = rs.text(QStringLiteral("mode"));
    c.rsts = rs.text(QStringLiteral("rsts"));
    c.qrb = QslText::formatNumber(rs.value(QStringLiteral("qrb")));
    c.qtf = QslText::formatNumber(rs.value(QStringLiteral("qtf")));
    c.manager = rs.text(QStringLiteral("QSLman"));
    return c;
}

void fail(QslRunRead& run, const Recordset& rs)
{
    run.failed = true;
    run.errorDetail = rs.errorText();
    qCWarning(lcQsl) << "print run" << run.letter << "stopped:" << run.errorDetail;
}

// Stores the letters changed so far; when that fails none of them is stored.
void commitMarks(QslRunRead& run, Recordset& rs)
{
    const QString earlier = run.errorDetail;
    if (rs.commitWrites())
        return;
    fail(run, rs);
    if (!earlier.isEmpty())
        run.errorDetail = earlier + QLatin1Char('\n') + run.errorDetail;
    run.marked.clear();
}

} // namespace

QslRunRead QslRunReader::read(const QString& connection, const QString& letter, Mode mode)
{
    QslRunRead run;
    run.letter = letter;
    Recordset rs(connection);
    if (!rs.open(SqlText::qslRun(letter))) {
        fail(run, rs);
        return run;
    }
    // Every letter of the run is stored in one transaction, committed as the reading ends.
    if (mode == Mode::Mark && rs.recordCount() > 0 && !rs.beginWrites()) {
        fail(run, rs);
        return run;
    }
    for (bool ok = rs.first(); ok; ok = rs.next()) {
        run.hasRows = true;
        if (run.contacts->isFull()) {
            run.leftOver = rs.recordCount() - rs.position();
            break;
        }
        const QslContact contact = contactOf(rs);
        const QString before = rs.text(QStringLiteral("qsl"));
        const QString after = QslText::nextStatus(before);
        if (mode == Mode::Mark && after != before) {
            // Stored before the card is printed; the caller reports these if printing fails.
            if (!rs.setValue(QStringLiteral("qsl"), after) || !rs.update()) {
                rs.cancelUpdate();
                fail(run, rs);
                commitMarks(run, rs);
                return run;
            }
            run.marked.append({ contact.callsign, contact.date, contact.time, before, after,
                rs.value(QStringLiteral("ID")).toLongLong() });
        }
        run.contacts->append(contact);
    }
    if (rs.hasError())
        fail(run, rs);
    commitMarks(run, rs);
    return run;
}
