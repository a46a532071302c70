#include "gps/GpsReceiver.h"

#include "gps/Nmea.h"

QList<GpsReceiver::Decoded> GpsReceiver::feed(const QByteArray& bytes)
{
    QList<Decoded> out;
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
            break;
        case NmeaReceiveBuffer::Type::GSV: {
            GsvData& gsv = gsv_[s.talker];
            accepted = ParseGSV(s.text, gsv);
            d.gsv = gsv;
            break;
        }
        }
        if (accepted)
            out.append(std::move(d));
    }
    return out;
}

FixKind GpsReceiver::fix() const
{
    if (gsa_.fix == u"3D-Fix")
        return FixKind::ThreeD;
    if (gsa_.fix == u"2D-Fix")
        return FixKind::TwoD;
    return FixKind::None;
}
