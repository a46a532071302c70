#include "core/Weather.h"

#include <QUrlQuery>

namespace Weather {

QUrl summaryUrl(const QString& address)
{
    const QString trimmed = address.trimmed();
    if (trimmed.isEmpty())
        return {};
    QUrl url = QUrl::fromUserInput(trimmed);
    if (!url.isValid() || url.host().isEmpty())
        return {};
    QString query = url.query();
    if (!query.isEmpty())
        query += u'&';
    url.setQuery(query + QStringLiteral("view=summary&headers=0"));
    return url;
}

QString valueAfter(const QString& page, const QString& caption)
{
    qsizetype i = page.indexOf(caption, 0, Qt::CaseInsensitive);
    if (i < 0)
        return {};
    i += caption.size();
    const qsizetype n = page.size();
    while (i < n) {
        const QChar c = page[i];
        if (c == u'<') {
            const qsizetype close = page.indexOf(u'>', i);
            if (close < 0)
                return {};
            i = close + 1;
        } else if (c.isSpace() || c == u':' || c == u'=' || c == u'&') {
            // "&nbsp;" between caption and value is a separator too
            if (c == u'&' && page.mid(i, 6).compare(QLatin1String("&nbsp;"), Qt::CaseInsensitive) == 0)
                i += 6;
            else if (c == u'&')
                break;
            else
                ++i;
        } else {
            break;
        }
    }
    qsizetype end = i;
    while (end < n && page[end] != u'<' && page[end] != u'\n' && page[end] != u'\r')
        ++end;
    QString value = page.mid(i, end - i);
    value.replace(QLatin1String("&nbsp;"), QLatin1String(" "), Qt::CaseInsensitive);
    value.replace(QLatin1String("&deg;"), QString(QChar(0x00B0)), Qt::CaseInsensitive);
    return value.simplified();
}

QString summaryLine(const QString& page)
{
    static const QString captions[] = { QStringLiteral("Outside Humidity"), QStringLiteral("Dew Point"),
        QStringLiteral("Barometer"), QStringLiteral("Average Wind Speed") };
    QString line;
    bool any = false;
    for (int k = 0; k < 4; ++k) {
        const QString v = valueAfter(page, captions[k]);
        any = any || !v.isEmpty();
        line += (k == 0 ? QString() : QStringLiteral(" : ")) + v;
    }
    return any ? line : QString();
}

QString failedText(const QString& reason)
{
    return QStringLiteral("Weather: not available (%1)").arg(reason);
}

} // namespace Weather
