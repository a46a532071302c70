#include "hub/RotctlProtocol.h"

#include "hub/RotatorBackend.h"

#include <cmath>

namespace {
using Result = HamlibCommands::Result;

Result code(int c)
{
    return { c, {}, {}, false };
}

QString degrees(double v)
{
    return QString::number(v, 'f', 2);
}
} // namespace

RotctlProtocol::RotctlProtocol(RotatorBackend& rotator)
    : rotator_(rotator)
{
    auto add = [this](char s, const char* name, int args, bool get, HamlibCommands::Handler h) {
        commands_.add({ s, QString::fromLatin1(name), args, get, std::move(h) });
    };
    add('P', "set_pos", 2, false, [this](const QStringList& a, bool) {
        bool okAz = false;
        bool okEl = false;
        const double az = a[0].toDouble(&okAz);
        const double el = a[1].toDouble(&okEl);
        if (!okAz || !okEl || !std::isfinite(az) || !std::isfinite(el) || az < -180 || az > 450 || el < 0
            || el > 90)
            return code(Hamlib::InvalidArgument);
        return code(rotator_.setPosition(az, el));
    });
    add('p', "get_pos", 0, true, [this](const QStringList&, bool) {
        return Result { Hamlib::Ok,
            { { QStringLiteral("Azimuth"), degrees(rotator_.azimuth()) },
                { QStringLiteral("Elevation"), degrees(rotator_.elevation()) } },
            {}, false };
    });
    add('S', "stop", 0, false, [this](const QStringList&, bool) { return code(rotator_.stop()); });
    add('K', "park", 0, false, [this](const QStringList&, bool) { return code(rotator_.park()); });
    add(0, "dump_state", 0, true, [](const QStringList&, bool) {
        return Result { Hamlib::Ok, {}, dumpState(), false };
    });
    add('_', "get_info", 0, true, [](const QStringList&, bool) {
        return Result { Hamlib::Ok, { { QStringLiteral("Info"), QStringLiteral("Kestrel") } }, {}, false };
    });
    add('q', "quit", 0, false, [](const QStringList&, bool) { return Result { Hamlib::Ok, {}, {}, true }; });
    add('Q', "quit", 0, false, [](const QStringList&, bool) { return Result { Hamlib::Ok, {}, {}, true }; });
}

QByteArray RotctlProtocol::dumpState()
{
    return QByteArrayLiteral("1\n" // protocol version
                             "1\n" // model
                             "min_az=-180.000000\n"
                             "max_az=450.000000\n"
                             "min_el=0.000000\n"
                             "max_el=90.000000\n"
                             "south_zero=0\n"
                             "rot_type=AzEl\n"
                             "done\n");
}
