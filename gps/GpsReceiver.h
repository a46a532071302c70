#pragma once
// What the GPS window knows without the window: the receive buffer, the last values decoded
// from each sentence type, the fix kind reported by GSA and the last position reported by RMC
// or GGA. The window feeds it the port's bytes and shows what comes back.
#include "gps/GpsPosition.h"
#include "gps/NmeaData.h"
#include "gps/NmeaReceiveBuffer.h"

#include <QHash>

enum class FixKind { None, TwoD, ThreeD };

class GpsReceiver {
public:
    struct Decoded {
        NmeaReceiveBuffer::Type type;
        QString talker;
        QString sentence;
        GsvData gsv; // for GSV: the satellite tables right after this sentence
    };

    // Cuts and parses; returns the accepted sentences in order. Rejected ones are dropped from
    // the buffer and change nothing.
    QList<Decoded> feed(const QByteArray& bytes);

    const RmcData& rmc() const { return rmc_; }
    const GgaData& gga() const { return gga_; }
    const GsaData& gsa() const { return gsa_; }
    // GSV cycles of different talkers (GPS, GLONASS, ...) are kept apart.
    GsvData gsv(const QString& talker) const { return gsv_.value(talker); }

    // From the GSA fix text: "3D-Fix" and "2D-Fix"; anything else is no fix.
    FixKind fix() const;
    // The last position with proper hemisphere letters, from RMC or GGA, whichever came last.
    std::optional<GpsPosition> position() const { return position_; }

    const NmeaReceiveBuffer& buffer() const { return buffer_; }

private:
    NmeaReceiveBuffer buffer_;
    RmcData rmc_;
    GgaData gga_;
    GsaData gsa_;
    QHash<QString, GsvData> gsv_;
    std::optional<GpsPosition> position_;
};
