#include "core/ExtensionSettings.h"

#include <QSettings>

QString ExtensionSettings::path()
{
    return QStringLiteral("Kestrel.ini");
}

QString ExtensionSettings::value(const QString& key, const QString& fallback)
{
    const QSettings ini(path(), QSettings::IniFormat);
    const QString v = ini.value(key).toString().trimmed();
    return v.isEmpty() ? fallback : v;
}

void ExtensionSettings::setValue(const QString& key, const QString& value)
{
    QSettings ini(path(), QSettings::IniFormat);
    ini.setValue(key, value);
    ini.sync();
}
