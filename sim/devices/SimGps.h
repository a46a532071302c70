#pragma once
// A simulated GPS receiver: once a second of its clock it writes RMC, GGA, GSA and three GSV
// sentences for a fixed position with a 3D fix and ten satellites in view, each with its
// checksum and CR LF.
#include "sim/devices/SimSerialDevice.h"

#include <QDateTime>

class SimGps : public SimSerialDevice {
public:
    // Latitude and longitude in degrees (south and west negative); the clock starts at startUtc.
    SimGps(double latitude, double longitude, const QDateTime& startUtc, const QByteArray& talker = "GP");

    // A receiver takes no commands here; whatever arrives is ignored.
    QByteArray receive(const QByteArray& bytes) override;
    // Writes one burst for every whole second the clock passes.
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
    double latitude_;
    double longitude_;
    QDateTime startUtc_;
    QByteArray talker_;
    qint64 elapsedMs_ = 0;
    int bursts_ = 0;
};
