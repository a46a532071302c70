#include "logbook/db/SqlText.h"

namespace SqlText {

QString quoted(const QString& value)
{
    QString out = value;
    out.replace(QLatin1Char('\''), QLatin1String("''"));
    return out;
}

QString dxccLookup(const QString& callsign)
{
    return DxccLookupHead + quoted(callsign) + DxccLookupTail;
}

QString searchByCallsign(const QString& text)
{
    return SearchCallsignHead + quoted(text) + QLatin1Char('%') + QLatin1Char('\'');
}

QString searchByGrid(const QString& text)
{
    return SearchGridHead + quoted(text) + QLatin1Char('%') + QLatin1Char('\'');
}

QString beaconSearch(const QString& text)
{
    return BeaconSearchHead + quoted(text) + QLatin1Char('%') + QLatin1Char('\'');
}

QString qslRun(const QString& letter)
{
    return QslRunHead + quoted(letter) + QslRunTail;
}

QString bandFilter(const QString& pattern)
{
    return BandFilterHead + quoted(pattern) + QLatin1Char('\'');
}

QString logListFilter(const QString& pattern)
{
    return pattern.isEmpty() ? QString() : bandFilter(pattern);
}

QString beaconNameFilter(const QString& nameFilter)
{
    return nameFilter.isEmpty() ? QString() : BeaconFilterHead + quoted(nameFilter) + QLatin1Char('\'');
}

} // namespace SqlText
