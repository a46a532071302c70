#include "audio/SpectrumTexts.h"

#include <cmath>

namespace SpectrumTexts {

QString refCaption(float level)
{
    return QStringLiteral("Ref: ") + QString::number(static_cast<double>(level)) + QStringLiteral(" dB");
}

QString maxCaption(float strongest)
{
    return QString::number(static_cast<qint64>(std::trunc(strongest))) + QStringLiteral(" dB anl");
}

QString heldCaption(const QString& held, const QString& max)
{
    return leadingNumber(max) > leadingNumber(held) ? max : held;
}

QString freqCaption(qint16 frequency)
{
    return QString::number(frequency) + QStringLiteral(" Hz");
}

QString sideCaption(double value)
{
    return QString::number(static_cast<qint64>(std::trunc(value)));
}

double leadingNumber(const QString& text)
{
    QString digits;
    int i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    if (i < text.size() && (text.at(i) == u'-' || text.at(i) == u'+'))
        digits += text.at(i++);
    bool point = false;
    for (; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isDigit())
            digits += c;
        else if (c == u'.' && !point) {
            point = true;
            digits += c;
        } else if (!c.isSpace())
            break;
    }
    bool ok = false;
    const double v = digits.toDouble(&ok);
    return ok ? v : 0.0;
}

} // namespace SpectrumTexts
