#include "devices/lines/LineChoice.h"

namespace {
QString badText(const QString& text)
{
    return QStringLiteral("\"%1\" is not an output line; use none, dtr:<port>, rts:<port> or "
                          "gpio:<chip>:<line>.")
        .arg(text);
}
} // namespace

LineChoice LineChoice::parse(const QString& text, QString* problem)
{
    const QString t = text.trimmed();
    if (problem)
        problem->clear();
    if (t.isEmpty() || t.compare(QLatin1String("none"), Qt::CaseInsensitive) == 0)
        return {};

    const qsizetype colon = t.indexOf(QLatin1Char(':'));
    const QString kind = t.left(colon).trimmed().toLower();
    const QString rest = colon < 0 ? QString() : t.mid(colon + 1).trimmed();
    LineChoice choice;
    if ((kind == QLatin1String("dtr") || kind == QLatin1String("rts")) && !rest.isEmpty()) {
        choice.kind = kind == QLatin1String("dtr") ? Kind::Dtr : Kind::Rts;
        choice.port = rest;
        return choice;
    }
    if (kind == QLatin1String("gpio")) {
        const qsizetype last = rest.lastIndexOf(QLatin1Char(':'));
        bool ok = false;
        const uint line = last < 0 ? 0 : rest.mid(last + 1).trimmed().toUInt(&ok);
        const QString chip = last < 0 ? QString() : rest.left(last).trimmed();
        if (ok && !chip.isEmpty()) {
            choice.kind = Kind::Gpio;
            choice.chip = chip;
            choice.line = line;
            return choice;
        }
    }
    if (problem)
        *problem = badText(t);
    return {};
}

QString LineChoice::toText() const
{
    switch (kind) {
    case Kind::Dtr:
        return QStringLiteral("dtr:") + port;
    case Kind::Rts:
        return QStringLiteral("rts:") + port;
    case Kind::Gpio:
        return QStringLiteral("gpio:%1:%2").arg(chip).arg(line);
    case Kind::None:
        break;
    }
    return QStringLiteral("none");
}
