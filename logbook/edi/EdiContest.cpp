#include "logbook/edi/EdiContest.h"

#include "core/ExtensionSettings.h"
#include "core/SettingsTable.h"

#include <QRegularExpression>
#include <QSettings>
#include <QStringList>

namespace {
// A value of the [contest] section; a value with commas comes back from QSettings as a list.
QString contestValue(const QSettings& ini, const char* key)
{
    const QVariant v = ini.value(QStringLiteral("contest/") + QLatin1String(key));
    return (v.typeId() == QMetaType::QStringList ? v.toStringList().join(QStringLiteral(", ")) : v.toString())
        .trimmed();
}

bool listNames(const QString& list, const char* name)
{
    static const QRegularExpression separators(QStringLiteral("[\\s,;+]+"));
    return list.toLower().split(separators, Qt::SkipEmptyParts).contains(QLatin1String(name));
}
} // namespace

EdiContest EdiContest::fromSettings(const SettingsTable& settings)
{
    EdiContest c;
    c.call = settings.textAt(Setting::MyCall).trimmed().toUpper();
    c.locator = settings.textAt(Setting::MyLocator).trimmed().toUpper();
    c.takeQslLines(settings.textAt(Setting::QslAddress), settings.textAt(Setting::QslFoot));

    const QSettings ini(ExtensionSettings::path(), QSettings::IniFormat);
    c.name = contestValue(ini, "name");
    c.dates = contestValue(ini, "dates");
    c.section = contestValue(ini, "section");
    c.exchange = contestValue(ini, "exchange");
    c.club = contestValue(ini, "club");
    c.operators = contestValue(ini, "operators");
    c.operators2 = contestValue(ini, "operators2");
    c.transmitter = contestValue(ini, "equipment");
    c.receiver = contestValue(ini, "receiver");
    if (c.receiver.isEmpty())
        c.receiver = c.transmitter;
    c.power = contestValue(ini, "power");
    c.antenna = contestValue(ini, "antenna");
    c.antennaHeight = contestValue(ini, "antennaHeight");
    c.country = contestValue(ini, "country");
    c.phone = contestValue(ini, "phone");
    c.remarks = contestValue(ini, "remarks");
    c.squareBonus = contestValue(ini, "squareBonus").toInt();
    c.dxccBonus = contestValue(ini, "dxccBonus").toInt();
    const QString multipliers = contestValue(ini, "multipliers");
    c.squaresMultiply = listNames(multipliers, "squares");
    c.dxccMultiplies = listNames(multipliers, "dxcc");
    return c;
}

void EdiContest::takeQslLines(const QString& addressLine, const QString& footLine)
{
    static const QRegularExpression label(QStringLiteral("^\\s*\\w{1,8}:\\s*"));
    static const QRegularExpression postCodeCity(QStringLiteral("^([0-9][0-9A-Za-z-]*)\\s+(.+)$"));
    QString address = addressLine;
    address.remove(label);
    QStringList parts = address.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (QString& p : parts)
        p = p.trimmed();
    if (!parts.isEmpty())
        operatorName = parts.takeFirst();
    if (!parts.isEmpty()) {
        const QRegularExpressionMatch m = postCodeCity.match(parts.last());
        if (m.hasMatch()) {
            postCode = m.captured(1);
            city = m.captured(2);
        } else {
            city = parts.last();
        }
        parts.removeLast();
    }
    if (!parts.isEmpty())
        address1 = parts.takeFirst();
    if (!parts.isEmpty())
        address2 = parts.join(QStringLiteral(", "));
    for (const QString& word :
        footLine.split(QRegularExpression(QStringLiteral("[\\s,;]+")), Qt::SkipEmptyParts)) {
        if (word.contains(QLatin1Char('@'))) {
            email = word;
            break;
        }
    }
}
