#include "sim/SimOptions.h"

#include "sim/devices/SimGps.h"

namespace {

std::optional<SimOptions> refuse(QString* problem, const QString& text)
{
    *problem = text;
    return std::nullopt;
}

} // namespace

std::optional<SimOptions> SimOptions::parse(const QStringList& arguments, QString* problem)
{
    SimOptions o;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        if (a == QLatin1String("-h") || a == QLatin1String("--help")) {
            o.help = true;
            continue;
        }
        if (!a.startsWith(QLatin1String("--")))
            return refuse(problem, QStringLiteral("unexpected argument \"%1\"").arg(a));
        if (i + 1 >= arguments.size())
            return refuse(problem, QStringLiteral("%1 needs a value").arg(a));
        const QString v = arguments[++i];
        bool ok = true;
        if (a == QLatin1String("--write-config")) {
            o.configDir = v;
        } else if (a == QLatin1String("--gps-position")) {
            const QStringList parts = v.split(QLatin1Char(','));
            bool okLon = false;
            if (parts.size() == 2) {
                o.latitude = parts[0].trimmed().toDouble(&ok);
                o.longitude = parts[1].trimmed().toDouble(&okLon);
            }
            if (parts.size() != 2 || !ok || !okLon || qAbs(o.latitude) > 90.0 || qAbs(o.longitude) > 180.0)
                return refuse(problem,
                    QStringLiteral("--gps-position \"%1\": expected LAT,LON in degrees, "
                                   "such as 48.3125,9.625 (south and west negative)")
                        .arg(v));
        } else if (a == QLatin1String("--gps-talker")) {
            if (v.size() != 2 || !v.at(0).isUpper() || !v.at(1).isUpper())
                return refuse(problem,
                    QStringLiteral("--gps-talker \"%1\": expected two capital letters such as GP or GN")
                        .arg(v));
            o.gpsTalker = v.toLatin1();
        } else if (a == QLatin1String("--gps-profile")) {
            if (!SimGps::profileNamed(v))
                return refuse(problem,
                    QStringLiteral("--gps-profile \"%1\": expected plain, mtk, sirf or ublox").arg(v));
            o.gpsProfile = v;
        } else if (a == QLatin1String("--rotator-rate")) {
            o.rotatorRate = v.toDouble(&ok);
            if (!ok || o.rotatorRate <= 0.0 || o.rotatorRate > 360.0)
                return refuse(problem,
                    QStringLiteral("--rotator-rate \"%1\": expected degrees per second above 0").arg(v));
        } else if (a == QLatin1String("--spot-interval")) {
            const double s = v.toDouble(&ok);
            if (!ok || s < 0.1 || s > 86400.0)
                return refuse(
                    problem, QStringLiteral("--spot-interval \"%1\": expected seconds, at least 0.1").arg(v));
            o.spotIntervalMs = int(s * 1000.0);
        } else if (a == QLatin1String("--cluster-style")) {
            if (v != u"plain" && v != u"telnet")
                return refuse(
                    problem, QStringLiteral("--cluster-style \"%1\": expected plain or telnet").arg(v));
            o.clusterStyle = v;
        } else if (a == QLatin1String("--cluster-port")) {
            const uint port = v.toUInt(&ok);
            if (!ok || port > 65535)
                return refuse(
                    problem, QStringLiteral("--cluster-port \"%1\": expected a TCP port number").arg(v));
            o.clusterPort = quint16(port);
        } else {
            return refuse(problem, QStringLiteral("unknown option \"%1\"").arg(a));
        }
    }
    return o;
}

QString SimOptions::usage()
{
    return QStringLiteral(
        "Usage: kestrel-sim [options]\n"
        "The simulated station: a rig (two CAT ports), a rotator, a sensor box and a GPS receiver on\n"
        "pseudo-terminals, and a DX cluster node on 127.0.0.1. Prints one name=place line per\n"
        "device, then \"ready\". SIGUSR1 or the line \"status\" on standard input prints one state\n"
        "line per device and then \"end\"; SIGINT, SIGTERM or \"quit\" stops it.\n"
        "\n"
        "  --write-config DIR       write DIR/Kestrel.txt and DIR/Kestrel.ini pointing at the devices\n"
        "  --gps-position LAT,LON   the receiver's position in degrees (default 48.3125,9.625)\n"
        "  --gps-talker XX          talker of the NMEA sentences (default GP)\n"
        "  --gps-profile NAME       the receiver's order and line speed: plain (default: RMC first,\n"
        "                           all at once), mtk (GGA first, 9600 baud), sirf (GGA first,\n"
        "                           4800 baud), ublox (NMEA 4.11, four systems, 38400 baud)\n"
        "  --rotator-rate DEG       rotator speed in degrees per second (default 4)\n"
        "  --spot-interval SECONDS  time between cluster spots (default 15)\n"
        "  --cluster-port PORT      TCP port of the cluster node (default: any free port)\n"
        "  --cluster-style STYLE    plain (default) or telnet: negotiation, UTF-8, ANSI colours,\n"
        "                           bells and LF CR line ends like many real nodes\n");
}
