#include "sim/devices/SimGps.h"

#include <QList>

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

// One satellite system of the u-blox sky: its GSV talker, NMEA 4.11 system id, first number,
// satellites in view and used.
struct System {
    const char* talker;
    int id;
    int firstPrn;
    int inView;
    int used;
};
constexpr System kSystems[] = {
    { "GP", 1, 1, 15, 13 },
    { "GL", 2, 65, 14, 12 },
    { "GA", 3, 1, 14, 12 },
    { "GB", 4, 1, 14, 11 },
};

// A made-up but steady sky position for satellite i of a system.
Satellite skyOf(const System& s, int i)
{
    return { s.firstPrn + 2 * i, 5 + (i * 37 + s.id * 11) % 80, (i * 47 + s.id * 29) % 360,
        i < s.used ? 25 + (i * 7 + s.id) % 25 : 0 };
}

QByteArray gsvSentences(const QByteArray& talker, const QList<Satellite>& sky, const QByteArray& tail)
{
    QByteArray out;
    const int inView = int(sky.size());
    const int count = (inView + 3) / 4;
    for (int n = 0; n < count; ++n) {
        QByteArray body = talker + "GSV," + QByteArray::number(count) + ',' + QByteArray::number(n + 1) + ','
            + two(inView);
        for (int i = n * 4; i < std::min(inView, n * 4 + 4); ++i) {
            const Satellite& s = sky[i];
            body += ',' + two(s.prn) + ',' + two(s.elevation) + ','
                + QByteArray::number(s.azimuth).rightJustified(3, '0') + ','
                + (s.snr > 0 ? two(s.snr) : QByteArray());
        }
        out += SimGps::sentence(body + tail);
    }
    return out;
}

} // namespace

std::optional<SimGps::Profile> SimGps::profileNamed(const QString& name)
{
    for (Profile p : { Profile::Plain, Profile::Mtk, Profile::Sirf, Profile::Ublox })
        if (profileName(p) == name)
            return p;
    return std::nullopt;
}

QString SimGps::profileName(Profile profile)
{
    switch (profile) {
    case Profile::Mtk:
        return QStringLiteral("mtk");
    case Profile::Sirf:
        return QStringLiteral("sirf");
    case Profile::Ublox:
        return QStringLiteral("ublox");
    case Profile::Plain:
        break;
    }
    return QStringLiteral("plain");
}

int SimGps::baudOf(Profile profile)
{
    switch (profile) {
    case Profile::Mtk:
        return 9600;
    case Profile::Sirf:
        return 4800;
    case Profile::Ublox:
        return 38400;
    case Profile::Plain:
        break;
    }
    return 0;
}

SimGps::SimGps(
    double latitude, double longitude, const QDateTime& startUtc, const QByteArray& talker, Profile profile)
    : latitude_(latitude)
    , longitude_(longitude)
    , startUtc_(startUtc.toUTC())
    , talker_(talker)
    , profile_(profile)
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
    if (after != before) {
        // After a long pause only the newest second is worth sending.
        ++bursts_;
        unsent_ += burst(QDateTime::fromSecsSinceEpoch(after, Qt::UTC));
    }
    const int baud = baudOf(profile_);
    if (baud == 0)
        return std::exchange(unsent_, {});
    lineBudget_ += baud / 10.0 * ms / 1000.0;
    const qsizetype n = std::min<qsizetype>(unsent_.size(), qsizetype(lineBudget_));
    lineBudget_ = unsent_.size() > n ? lineBudget_ - double(n) : 0.0; // an idle line saves nothing up
    const QByteArray out = unsent_.left(n);
    unsent_.remove(0, n);
    return out;
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
    switch (profile_) {
    case Profile::Plain:
        break;
    case Profile::Mtk:
    case Profile::Sirf:
        return familyBurst(time, date, position);
    case Profile::Ublox:
        return ubloxBurst(time, date, position);
    }
    return plainBurst(time, date, position);
}

QByteArray SimGps::plainBurst(
    const QByteArray& time, const QByteArray& date, const QByteArray& position) const
{
    QByteArray out;
    out += sentence(talker_ + "RMC," + time + ",A," + position + ",0.0,0.0," + date + ",,,A");
    out += sentence(talker_ + "GGA," + time + ',' + position + ",1," + two(kUsed) + ",0.9,"
        + QByteArray::number(altitude(), 'f', 1) + ",M,47.9,M,,");

    QByteArray used;
    for (int i = 0; i < 12; ++i)
        used += (i < kUsed ? two(kSky[i].prn) : QByteArray()) + ',';
    out += sentence(talker_ + "GSA,A,3," + used + "1.6,0.9,1.3");

    out += gsvSentences(talker_, QList<Satellite>(std::begin(kSky), std::end(kSky)), {});
    return out;
}

QByteArray SimGps::familyBurst(
    const QByteArray& time, const QByteArray& date, const QByteArray& position) const
{
    // The fix comes first and the RMC last: the order MediaTek and SiRF chips write a second in.
    QByteArray used;
    for (int i = 0; i < 12; ++i)
        used += (i < kUsed ? two(kSky[i].prn) : QByteArray()) + ',';
    QByteArray out = sentence(talker_ + "GGA," + time + ',' + position + ",1," + two(kUsed) + ",0.9,"
        + QByteArray::number(altitude(), 'f', 1) + ",M,47.9,M,,");
    out += sentence(talker_ + "GSA,A,3," + used + "1.6,0.9,1.3");
    out += gsvSentences(talker_, QList<Satellite>(std::begin(kSky), std::end(kSky)), {});
    out += sentence(talker_ + "RMC," + time + ",A," + position + ",0.0,0.0," + date + ",,,A");
    if (profile_ == Profile::Mtk)
        out += sentence(talker_ + "VTG,0.0,T,,M,0.0,N,0.0,K,A");
    return out;
}

QByteArray SimGps::ubloxBurst(
    const QByteArray& time, const QByteArray& date, const QByteArray& position) const
{
    int usedTotal = 0;
    for (const System& s : kSystems)
        usedTotal += s.used;
    QByteArray out = sentence("GNRMC," + time + ",A," + position + ",0.010,," + date + ",,,A,V");
    out += sentence("GNVTG,,T,,M,0.010,N,0.019,K,A");
    out += sentence("GNGGA," + time + ',' + position + ",1," + two(usedTotal) + ",0.55,"
        + QByteArray::number(altitude(), 'f', 1) + ",M,47.9,M,,");
    // One GSA per system and twelve satellites at most in each: a longer list goes on in the next.
    for (const System& s : kSystems) {
        for (int from = 0; from < s.used; from += 12) {
            QByteArray used;
            for (int i = from; i < from + 12; ++i)
                used += (i < s.used ? two(skyOf(s, i).prn) : QByteArray()) + ',';
            out += sentence("GNGSA,A,3," + used + "0.98,0.55,0.81," + QByteArray::number(s.id));
        }
    }
    for (const System& s : kSystems) {
        QList<Satellite> sky;
        for (int i = 0; i < s.inView; ++i)
            sky << skyOf(s, i);
        out += gsvSentences(s.talker, sky, ",1");
    }
    out += sentence("GNGLL," + position + ',' + time + ",A,A");
    return out;
}

QString SimGps::stateLine() const
{
    return QStringLiteral("profile=%6 latitude=%1 longitude=%2 fix=3D satellites=%3 bursts=%4 clock=%5")
        .arg(latitude_, 0, 'f', 6)
        .arg(longitude_, 0, 'f', 6)
        .arg(kUsed)
        .arg(bursts_)
        .arg(clock().toString(QStringLiteral("HH:mm:ss")), profileName(profile_));
}
