#include "logbook/browse/CheckPartial.h"

#include "core/ExtensionSettings.h"

#include <QFile>

QString CheckPartial::defaultPath()
{
    return ExtensionSettings::value(
        ExtensionKey::ScpFile, QStringLiteral("/usr/share/hamradio-files/MASTER.SCP"));
}

bool CheckPartial::load(const QString& path)
{
    calls_.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (!line.isEmpty() && !line.startsWith('#'))
            calls_ << QString::fromLatin1(line).toUpper();
    }
    return true;
}

QStringList CheckPartial::matches(const QString& typed, int max) const
{
    QStringList out;
    const QString text = typed.trimmed().toUpper();
    if (text.size() < 2)
        return out;
    for (const QString& call : calls_) {
        if (call.contains(text)) {
            out << call;
            if (out.size() == max)
                break;
        }
    }
    return out;
}
