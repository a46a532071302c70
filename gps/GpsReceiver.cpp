#include "gps/GpsReceiver.h"

#include "gps/Nmea.h"

#include <QElapsedTimer>

namespace {
qint64 monotonicMs()
{
    static QElapsedTimer since = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return since.elapsed();
}
} // namespace

GpsReceiver::GpsReceiver()
    : clock_(&monotonicMs)
{
}

QList<GpsReceiver::Decoded> GpsReceiver::feed(QByteArrayView bytes)
{
    QList<Decoded> out;
    const qint64 now = clock_();
    for (const NmeaReceiveBuffer::Sentence& s : buffer_.feed(bytes)) {
        Decoded d { s.type, s.talker, s.text, {} };
        bool accepted = false;
        switch (s.type) {
        case NmeaReceiveBuffer::Type::RMC:
            accepted = ParseRMC(s.text, rmc_);
            if (accepted) {
                if (auto p
                    = PositionFrom(rmc_.latitude, rmc_.latHemisphere, rmc_.longitude, rmc_.lonHemisphere))
                    position_ = p;
            }
            break;
        case NmeaReceiveBuffer::Type::GGA:
            accepted = ParseGGA(s.text, gga_);
            if (accepted) {
                if (auto p
                    = PositionFrom(gga_.latitude, gga_.latHemisphere, gga_.longitude, gga_.lonHemisphere))
                    position_ = p;
            }
            break;
        case NmeaReceiveBuffer::Type::GSA:
            accepted = ParseGSA(s.text, gsa_);
            if (accepted)
                takeGsa(d, now);
            break;
        case NmeaReceiveBuffer::Type::GSV: {
            GsvData& gsv = gsv_[s.talker];
            accepted = ParseGSV(s.text, gsv);
            d.gsv = gsv;
            break;
        }
        }
        if (!accepted)
            continue;
        if (s.type != NmeaReceiveBuffer::Type::GSA)
            continues_ = GnssSystem::Unknown;
        seenAt_[int(s.type)] = now;
        out.append(std::move(d));
    }
    return out;
}

void GpsReceiver::takeGsa(Decoded& d, qint64 now)
{
    d.system = systemOf(gsa_, d.talker);
    Used& used = used_[d.system];
    if (continues_ != d.system)
        used.satellites.clear();
    int count = 0;
    for (int i = 1; i <= 12; ++i) {
        if (const auto& prn = gsa_.satellites[i]) {
            ++count;
            if (!used.satellites.contains(*prn))
                used.satellites.append(*prn);
        }
    }
    used.atMs = now;
    continues_ = count == 12 ? d.system : GnssSystem::Unknown;
}

bool GpsReceiver::isStale(NmeaReceiveBuffer::Type type) const
{
    const qint64 at = seenAt_[int(type)];
    return at < 0 || clock_() - at > kStaleMs;
}

bool GpsReceiver::isStale(const Used& used) const
{
    return clock_() - used.atMs > kStaleMs;
}

FixKind GpsReceiver::fix() const
{
    if (!isStale(NmeaReceiveBuffer::Type::GSA)) {
        if (gsa_.fix == u"3D-Fix")
            return FixKind::ThreeD;
        if (gsa_.fix == u"2D-Fix")
            return FixKind::TwoD;
        return FixKind::None;
    }
    if (!isStale(NmeaReceiveBuffer::Type::GGA) && (gga_.quality == u"GPS fix" || gga_.quality == u"DGPS fix"))
        return gga_.satellites >= 4 ? FixKind::ThreeD : FixKind::TwoD;
    if (!isStale(NmeaReceiveBuffer::Type::RMC) && rmc_.valid)
        return FixKind::TwoD;
    return FixKind::None;
}

GnssSystem GpsReceiver::systemOf(const GsaData& gsa, const QString& talker)
{
    if (gsa.systemId >= 1 && gsa.systemId <= 6)
        return GnssSystem(gsa.systemId);
    if (talker == u"GP")
        return GnssSystem::GPS;
    if (talker == u"GL")
        return GnssSystem::GLONASS;
    if (talker == u"GA")
        return GnssSystem::Galileo;
    if (talker == u"BD" || talker == u"GB")
        return GnssSystem::BeiDou;
    for (int i = 1; i <= 12; ++i) {
        if (const auto& prn = gsa.satellites[i]) {
            if (*prn >= 65 && *prn <= 96)
                return GnssSystem::GLONASS;
            if (*prn >= 201 && *prn <= 237)
                return GnssSystem::BeiDou;
            if (*prn >= 301 && *prn <= 336)
                return GnssSystem::Galileo;
            return GnssSystem::GPS;
        }
    }
    return GnssSystem::Unknown;
}

QString GpsReceiver::systemName(GnssSystem system)
{
    switch (system) {
    case GnssSystem::GPS:
        return QStringLiteral("GPS");
    case GnssSystem::GLONASS:
        return QStringLiteral("GLONASS");
    case GnssSystem::Galileo:
        return QStringLiteral("Galileo");
    case GnssSystem::BeiDou:
        return QStringLiteral("BeiDou");
    case GnssSystem::QZSS:
        return QStringLiteral("QZSS");
    case GnssSystem::NavIC:
        return QStringLiteral("NavIC");
    case GnssSystem::Unknown:
        break;
    }
    return QStringLiteral("other");
}
