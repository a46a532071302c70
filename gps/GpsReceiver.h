#pragma once
// What the GPS window knows without the window: the receive buffer, the last values decoded
// from each sentence type, the used satellites of each satellite system, the fix and the last
// position reported by RMC or GGA. Whoever has NMEA bytes (a serial port, gpsd) hands them
// to feed(); the window shows what comes back.
#include "gps/GpsPosition.h"
#include "gps/NmeaData.h"
#include "gps/NmeaReceiveBuffer.h"

#include <QHash>
#include <QList>
#include <QMap>

#include <functional>

enum class FixKind { None, TwoD, ThreeD };

// Satellite systems by their NMEA 4.10 system id.
enum class GnssSystem { Unknown = 0, GPS = 1, GLONASS = 2, Galileo = 3, BeiDou = 4, QZSS = 5, NavIC = 6 };

class GpsReceiver {
public:
    struct Decoded {
        NmeaReceiveBuffer::Type type;
        QString talker;
        QString sentence;
        GsvData gsv; // for GSV: the satellite tables right after this sentence
        GnssSystem system = GnssSystem::Unknown; // for GSA: whose satellites it lists
    };

    // The used satellites of one system, from its latest GSA (or GSAs, when it has more than
    // twelve and the receiver splits them).
    struct Used {
        QList<int> satellites;
        qint64 atMs = 0;
    };

    // Data older than this is stale: it no longer decides the fix.
    static constexpr qint64 kStaleMs = 3000;

    GpsReceiver();

    // Bytes arrived: cuts and parses; returns the accepted sentences in arrival order.
    // Rejected ones are dropped from the buffer and change nothing.
    QList<Decoded> feed(QByteArrayView bytes);

    // Milliseconds of a monotonic clock; tests set their own.
    void setClock(std::function<qint64()> clock) { clock_ = std::move(clock); }

    const RmcData& rmc() const { return rmc_; }
    const GgaData& gga() const { return gga_; }
    // The last GSA read, of whichever system.
    const GsaData& gsa() const { return gsa_; }
    // GSV cycles of different talkers (GPS, GLONASS, ...) are kept apart.
    GsvData gsv(const QString& talker) const { return gsv_.value(talker); }
    const QMap<GnssSystem, Used>& used() const { return used_; }

    // True when the type never arrived or its last sentence is older than kStaleMs.
    bool isStale(NmeaReceiveBuffer::Type type) const;
    bool isStale(const Used& used) const;

    // From a fresh GSA: "3D-Fix" and "2D-Fix", anything else no fix. Without one (a receiver
    // that sends no GSA): a fresh GGA with GPS or DGPS quality is a 3D fix from four satellites
    // on and a 2D fix below; else a fresh valid RMC is a 2D fix.
    FixKind fix() const;
    // The last position with proper hemisphere letters, from RMC or GGA, whichever came last.
    std::optional<GpsPosition> position() const { return position_; }

    const NmeaReceiveBuffer& buffer() const { return buffer_; }

    // The system of a GSA: its system id; else its talker; else ("GN" of NMEA 3) the number
    // range of its first satellite.
    static GnssSystem systemOf(const GsaData& gsa, const QString& talker);
    static QString systemName(GnssSystem system);

private:
    void takeGsa(Decoded& d, qint64 now);

    NmeaReceiveBuffer buffer_;
    std::function<qint64()> clock_;
    RmcData rmc_;
    GgaData gga_;
    GsaData gsa_;
    QHash<QString, GsvData> gsv_;
    QMap<GnssSystem, Used> used_;
    std::optional<GpsPosition> position_;
    qint64 seenAt_[4] = { -1, -1, -1, -1 }; // by Type
    // The previous accepted sentence was a full GSA (twelve satellites) of this system: the
    // next GSA of the same system continues its list.
    GnssSystem continues_ = GnssSystem::Unknown;
};
