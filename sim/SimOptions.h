#pragma once
// kestrel-sim's command line.
#include <QString>
#include <QStringList>

#include <optional>

struct SimOptions {
    QString configDir; // --write-config DIR
    double latitude = 48.3125; // --gps-position LAT,LON: the middle of JN48TH
    double longitude = 9.625;
    QByteArray gpsTalker = "GP"; // --gps-talker GN
    QString gpsProfile = QStringLiteral("plain"); // --gps-profile mtk|sirf|ublox
    double rotatorRate = 4.0; // --rotator-rate DEG_PER_S
    int spotIntervalMs = 15000; // --spot-interval SECONDS
    quint16 clusterPort = 0; // --cluster-port PORT (0: any free port)
    QString clusterStyle = QStringLiteral("plain"); // --cluster-style telnet
    bool help = false;

    // nullopt with *problem set when the arguments (without the program name) are wrong.
    static std::optional<SimOptions> parse(const QStringList& arguments, QString* problem);
    static QString usage();
};
