#include "qsl/QslCards.h"

#include "qsl/CardNames.h"
#include "qsl/QslText.h"

#include <QStringList>

namespace {

bool sameStation(const QslContact& a, const QslContact& b)
{
    return a.callsign.trimmed().compare(b.callsign.trimmed(), Qt::CaseInsensitive) == 0
        && a.manager.trimmed().compare(b.manager.trimmed(), Qt::CaseInsensitive) == 0;
}

CardTexts cardOf(const QList<QslContact>& lines)
{
    QStringList date, time, band, mode, rsts, qrb, qtf;
    for (const QslContact& c : lines) {
        date << c.date;
        time << c.time;
        band << c.band;
        mode << c.mode;
        rsts << c.rsts;
        qrb << c.qrb;
        qtf << c.qtf;
    }
    const QString nl = QStringLiteral("\n");
    return {
        { CardName::Callsign, lines.first().callsign },
        { CardName::Date, date.join(nl) },
        { CardName::Time, time.join(nl) },
        { CardName::Band, band.join(nl) },
        { CardName::Mode, mode.join(nl) },
        { CardName::Report, rsts.join(nl) },
        { CardName::Distance, qrb.join(nl) },
        { CardName::Bearing, qtf.join(nl) },
        { CardName::Manager, QslText::managerLine(lines.first().manager) },
    };
}

} // namespace

namespace QslCards {

QList<CardTexts> make(const QslRunBuffer& run, int contactsPerCard)
{
    QList<CardTexts> cards;
    QList<QslContact> lines;
    for (int i = 0; i < run.count(); ++i) {
        const QslContact c = run.at(i);
        if (!lines.isEmpty() && (lines.size() >= contactsPerCard || !sameStation(lines.first(), c))) {
            cards << cardOf(lines);
            lines.clear();
        }
        lines << c;
    }
    if (!lines.isEmpty())
        cards << cardOf(lines);
    return cards;
}

CardTexts cleared()
{
    CardTexts t;
    for (const QString& name : { CardName::Callsign, CardName::Date, CardName::Time, CardName::Band,
             CardName::Mode, CardName::Report, CardName::Distance, CardName::Bearing, CardName::Manager })
        t.insert(name, QString());
    return t;
}

} // namespace QslCards
