#pragma once
// A simulated GPS receiver: once a second of its clock it writes the sentences of one moment
// for a fixed position with a 3D fix, each with its checksum and CR LF. The plain profile
// writes RMC, GGA, GSA and three GSV at once; the others copy the order of real receiver
// families and trickle out at their line's speed.
#include "sim/devices/SimSerialDevice.h"

#include <QDateTime>

#include <optional>

class SimGps : public SimSerialDevice {
public:
    enum class Profile {
        Plain, // RMC, GGA, GSA, GSV; ten satellites; all at once
        Mtk, // MediaTek: GGA, GSA, GSV, RMC, VTG at 9600 baud
        Sirf, // SiRF: GGA, GSA, GSV, RMC at 4800 baud
        Ublox, // u-blox NMEA 4.11: GN RMC, VTG, GGA, one GSA per system (split past twelve),
               // GSV of GPS, GLONASS, Galileo and BeiDou with 14 or more satellites each, GLL;
               // 38400 baud
    };
    // "plain", "mtk", "sirf", "ublox"; nothing for any other name.
    static std::optional<Profile> profileNamed(const QString& name);
    static QString profileName(Profile profile);
    // Bits per second of the profile's line; 0 for the plain profile (no pacing).
    static int baudOf(Profile profile);

    // Latitude and longitude in degrees (south and west negative); the clock starts at startUtc.
    SimGps(double latitude, double longitude, const QDateTime& startUtc, const QByteArray& talker = "GP",
        Profile profile = Profile::Plain);

    // A receiver takes no commands here; whatever arrives is ignored.
    QByteArray receive(const QByteArray& bytes) override;
    // Starts one burst for every whole second the clock passes and returns what the line
    // carries in `ms` (ten bits a character).
    QByteArray tick(int ms) override;
    QString stateLine() const override;

    // The sentences for one moment.
    QByteArray burst(const QDateTime& utc) const;
    QDateTime clock() const { return startUtc_.addMSecs(elapsedMs_); }
    double latitude() const { return latitude_; }
    double longitude() const { return longitude_; }
    int bursts() const { return bursts_; }
    double altitude() const { return 512.0; }

    // "$" + body + "*" + two hexadecimal digits + CR LF.
    static QByteArray sentence(const QByteArray& body);
    // XOR of every character of the body (between "$" and "*").
    static quint8 checksum(const QByteArray& body);
    // "ddmm.mmmm,N" and "dddmm.mmmm,E".
    static QByteArray latitudeFields(double latitude);
    static QByteArray longitudeFields(double longitude);

private:
    QByteArray plainBurst(const QByteArray& time, const QByteArray& date, const QByteArray& position) const;
    QByteArray familyBurst(const QByteArray& time, const QByteArray& date, const QByteArray& position) const;
    QByteArray ubloxBurst(const QByteArray& time, const QByteArray& date, const QByteArray& position) const;

    double latitude_;
    double longitude_;
    QDateTime startUtc_;
    QByteArray talker_;
    Profile profile_;
    qint64 elapsedMs_ = 0;
    int bursts_ = 0;
    QByteArray unsent_;
    double lineBudget_ = 0.0; // characters the line may still carry in this tick
};
