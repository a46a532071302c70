#include "sim/devices/SimGps.h"

#include <cmath>

namespace {

struct Satellite {
    int prn;
    int elevation;
    int azimuth;
    int snr;
};

// A plausible sky; the first eight are used for the fix.
constexpr Satellite kSky[] = {
    { 2, 67, 45, 44 },
    { 5, 52, 280, 41 },
    { 7, 38, 130, 39 },
    { 9, 24, 310, 35 },
    { 13, 71, 190, 45 },
    { 15, 18, 75, 31 },
    { 20, 44, 225, 40 },
    { 30, 29, 350, 36 },
    { 18, 8, 160, 0 },
    { 25, 4, 20, 0 },
};
constexpr int kInView = int(std::size(kSky));
constexpr int kUsed = 8;

QByteArray two(int v)
{
    return QByteArray::number(v).rightJustified(2, '0');
}

// Degrees as whole degrees and minutes with four decimals, carried correctly at 59.99995'.
QByteArray angleField(double degrees, int degreeDigits)
{
    const qint64 tenThousandths = std::llround(std::abs(degrees) * 60.0 * 10000.0);
    const qint64 whole = tenThousandths / 600000;
    const qint64 rest = tenThousandths % 600000;
    return QByteArray::number(whole).rightJustified(degreeDigits, '0') + two(int(rest / 10000)) + '.'
        + QByteArray::number(rest % 10000).rightJustified(4, '0');
}

} // namespace

SimGps::SimGps(double latitude, double longitude, const QDateTime& startUtc, const QByteArray& talker)
    : latitude_(latitude)
    , longitude_(longitude)
    , startUtc_(startUtc.toUTC())
    , talker_(talker)
{
}

QByteArray SimGps::receive(const QByteArray& bytes)
{
    Q_UNUSED(bytes);
    return {};
}

QByteArray SimGps::tick(int ms)
{
    const qint64 before = startUtc_.addMSecs(elapsedMs_).toMSecsSinceEpoch() / 1000;
    elapsedMs_ += ms;
    const qint64 after = startUtc_.addMSecs(elapsedMs_).toMSecsSinceEpoch() / 1000;
    if (after == before)
        return {};
    // After a long pause only the newest second is worth sending.
    ++bursts_;
    return burst(QDateTime::fromSecsSinceEpoch(after, Qt::UTC));
}

quint8 SimGps::checksum(const QByteArray& body)
{
    quint8 sum = 0;
    for (char c : body)
        sum ^= quint8(c);
    return sum;
}

QByteArray SimGps::sentence(const QByteArray& body)
{
    return '$' + body + '*' + QByteArray::number(checksum(body), 16).toUpper().rightJustified(2, '0')
        + "\r\n";
}

QByteArray SimGps::latitudeFields(double latitude)
{
    return angleField(latitude, 2) + (latitude < 0 ? ",S" : ",N");
}

QByteArray SimGps::longitudeFields(double longitude)
{
    return angleField(longitude, 3) + (longitude < 0 ? ",W" : ",E");
}

QByteArray SimGps::burst(const QDateTime& utc) const
{
    const QDateTime t = utc.toUTC();
    const QByteArray time = t.time().toString(QStringLiteral("HHmmss")).toLatin1() + ".00";
    const QByteArray date = t.date().toString(QStringLiteral("ddMMyy")).toLatin1();
    const QByteArray position = latitudeFields(latitude_) + ',' + longitudeFields(longitude_);

    QByteArray out;
    out += sentence(talker_ + "RMC," + time + ",A," + position + ",0.0,0.0," + date + ",,,A");
    out += sentence(talker_ + "GGA," + time + ',' + position + ",1," + two(kUsed) + ",0.9,"
        + QByteArray::number(altitude(), 'f', 1) + ",M,47.9,M,,");

    QByteArray used;
    for (int i = 0; i < 12; ++i)
        used += (i < kUsed ? two(kSky[i].prn) : QByteArray()) + ',';
    out += sentence(talker_ + "GSA,A,3," + used + "1.6,0.9,1.3");

    const int count = (kInView + 3) / 4;
    for (int n = 0; n < count; ++n) {
        QByteArray body = talker_ + "GSV," + QByteArray::number(count) + ',' + QByteArray::number(n + 1) + ','
            + two(kInView);
        for (int i = n * 4; i < std::min(kInView, n * 4 + 4); ++i) {
            const Satellite& s = kSky[i];
            body += ',' + two(s.prn) + ',' + two(s.elevation) + ','
                + QByteArray::number(s.azimuth).rightJustified(3, '0') + ','
                + (s.snr > 0 ? two(s.snr) : QByteArray());
        }
        out += sentence(body);
    }
    return out;
}

QString SimGps::stateLine() const
{
    return QStringLiteral("latitude=%1 longitude=%2 fix=3D satellites=%3 bursts=%4 clock=%5")
        .arg(latitude_, 0, 'f', 6)
        .arg(longitude_, 0, 'f', 6)
        .arg(kUsed)
        .arg(bursts_)
        .arg(clock().toString(QStringLiteral("HH:mm:ss")));
}
