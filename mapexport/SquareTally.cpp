#include "mapexport/SquareTally.h"

#include "logbook/adif/AdifBands.h"

#include <QRegularExpression>

#include <algorithm>

namespace {
// The value of one field in ADIF text, "" when absent.
QString adifField(const QString& text, const QString& name)
{
    static const QRegularExpression tag(QStringLiteral("<([A-Za-z0-9_]+):(\\d+)(?::[A-Za-z])?>"));
    for (auto it = tag.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (m.captured(1).compare(name, Qt::CaseInsensitive) == 0)
            return text.mid(m.capturedEnd(), m.captured(2).toInt());
    }
    return QString();
}
} // namespace

bool SquareTally::isSquare(const QString& s)
{
    if (s.size() != 4)
        return false;
    const QChar a = s[0].toUpper(), b = s[1].toUpper();
    return a >= QLatin1Char('A') && a <= QLatin1Char('R') && b >= QLatin1Char('A') && b <= QLatin1Char('R')
        && s[2].isDigit() && s[2].unicode() < 128 && s[3].isDigit() && s[3].unicode() < 128;
}

QStringList SquareTally::squaresOf(const QString& grid, const QString& adifExtra)
{
    QStringList out;
    const QString vucc = adifField(adifExtra, QStringLiteral("VUCC_GRIDS"));
    const QStringList given = vucc.isEmpty() ? QStringList { grid } : vucc.split(QLatin1Char(','));
    for (const QString& g : given) {
        const QString square = g.trimmed().left(4).toUpper();
        if (isSquare(square) && !out.contains(square))
            out << square;
    }
    return out;
}

void SquareTally::add(const QString& band, const QString& grid, const QString& qsl, const QString& adifExtra)
{
    const QStringList squares = squaresOf(grid, adifExtra);
    if (squares.isEmpty())
        return;
    QString name = AdifBands::fromBandText(band.trimmed()).band;
    if (name.isEmpty())
        name = band.trimmed();
    QMap<QString, Status>& band_ = bands_[name];
    const bool confirmed = qsl.trimmed().compare(QLatin1String("Q"), Qt::CaseInsensitive) == 0;
    for (const QString& s : squares) {
        auto it = band_.find(s);
        if (it == band_.end())
            band_.insert(s, confirmed ? Status::Confirmed : Status::Worked);
        else if (confirmed)
            *it = Status::Confirmed;
    }
}

int SquareTally::worked(const QString& band) const
{
    return int(bands_.value(band).size());
}

int SquareTally::confirmed(const QString& band) const
{
    const QMap<QString, Status> squares = bands_.value(band);
    return int(std::count(squares.begin(), squares.end(), Status::Confirmed));
}
