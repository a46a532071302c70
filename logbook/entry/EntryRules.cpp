#include "logbook/entry/EntryRules.h"

#include "geo/Locator.h"
#include "logbook/entry/BandTable.h"

namespace EntryRules {

bool NewContact(EntryLine& line, const QString& bandPattern, const QDateTime& now)
{
    if (bandPattern.isEmpty()) {
        for (QString* f : { &line.GM, &line.DA, &line.Rss, &line.Rr, &line.mo, &line.Qs, &line.Pr })
            f->clear();
        return false;
    }
    line.DA = now.date().toString(DateFormat);
    line.GM = now.time().toString(TimeFormat);
    line.Rss = QStringLiteral("59");
    line.Rr = QStringLiteral("59");
    line.mo = QStringLiteral("SSB");
    line.Qs = QStringLiteral("Y");
    line.Pr = QStringLiteral("Tr");
    line.Ba = BandTable::bandText(bandPattern);
    return true;
}

QString ModePreset(const QString& rrText)
{
    return rrText.size() == 3 ? QStringLiteral("CW") : QStringLiteral("SSB");
}

bool CheckEntryLocator(QString& text)
{
    if (text.isEmpty())
        return true;
    text = text.toUpper();
    return Locator::isValid(text);
}

} // namespace EntryRules
