#include "hub/RigctlProtocol.h"

#include "hub/RigBackend.h"

#include <cmath>

namespace {
using Result = HamlibCommands::Result;

Result value(const QString& label, const QString& text)
{
    return { Hamlib::Ok, { { label, text } }, {}, false };
}

Result code(int c)
{
    return { c, {}, {}, false };
}

// The one VFO's names; the other VFO is refused.
bool mainVfo(const QString& name)
{
    static const QStringList names { QStringLiteral("VFOA"), QStringLiteral("Main"),
        QStringLiteral("currVFO"), QStringLiteral("VFO") };
    return names.contains(name);
}

std::optional<int> integer(const QString& text)
{
    bool ok = false;
    const int v = text.toInt(&ok);
    return ok ? std::optional<int>(v) : std::nullopt;
}
} // namespace

RigctlProtocol::RigctlProtocol(RigBackend& rig)
    : rig_(rig)
{
    auto add = [this](char s, const char* name, int args, bool get, HamlibCommands::Handler h) {
        commands_.add({ s, QString::fromLatin1(name), args, get, std::move(h) });
    };

    add('F', "set_freq", 1, false, [this](const QStringList& a, bool) {
        bool ok = false;
        const double hz = a[0].toDouble(&ok); // the NET client sends "144300000.000000"
        if (!ok || !std::isfinite(hz) || hz <= 0 || hz > 1e12)
            return code(Hamlib::InvalidArgument);
        return code(rig_.setFrequencyHz(std::llround(hz)));
    });
    add('f', "get_freq", 0, true, [this](const QStringList&, bool) {
        return value(QStringLiteral("Frequency"), QString::number(rig_.frequencyHz()));
    });
    add('M', "set_mode", 2, false, [this](const QStringList& a, bool) {
        const auto passband = integer(a[1]);
        if (!passband)
            return code(Hamlib::InvalidArgument);
        return code(rig_.setMode(a[0], *passband));
    });
    add('m', "get_mode", 0, true, [this](const QStringList&, bool) {
        return Result { Hamlib::Ok,
            { { QStringLiteral("Mode"), rig_.mode() },
                { QStringLiteral("Passband"), QString::number(rig_.passband()) } },
            {}, false };
    });
    add('T', "set_ptt", 1, false, [this](const QStringList& a, bool) {
        const auto on = integer(a[0]); // 1 on, 2 on (mic), 3 on (data)
        if (!on || *on < 0 || *on > 3)
            return code(Hamlib::InvalidArgument);
        return code(rig_.setPtt(*on != 0));
    });
    add('t', "get_ptt", 0, true,
        [this](const QStringList&, bool) { return value(QStringLiteral("PTT"), rig_.ptt() ? "1" : "0"); });
    add('V', "set_vfo", 1, false, [](const QStringList& a, bool) {
        return code(mainVfo(a[0]) ? Hamlib::Ok : Hamlib::InvalidArgument);
    });
    add('v', "get_vfo", 0, true,
        [](const QStringList&, bool) { return value(QStringLiteral("VFO"), "VFOA"); });
    add('S', "set_split_vfo", 2, false, [this](const QStringList& a, bool) {
        const auto on = integer(a[0]);
        static const QStringList vfos { QStringLiteral("VFOA"), QStringLiteral("VFOB"),
            QStringLiteral("Main"), QStringLiteral("Sub"), QStringLiteral("currVFO") };
        if (!on || *on < 0 || *on > 1 || !vfos.contains(a[1]))
            return code(Hamlib::InvalidArgument);
        split_ = *on == 1;
        txVfo_ = a[1];
        return code(Hamlib::Ok);
    });
    add('s', "get_split_vfo", 0, true, [this](const QStringList&, bool) {
        return Result { Hamlib::Ok,
            { { QStringLiteral("Split"), split_ ? "1" : "0" }, { QStringLiteral("TX VFO"), txVfo_ } }, {},
            false };
    });
    add(0, "get_vfo_info", 1, true, [this](const QStringList& a, bool) {
        if (!mainVfo(a[0]))
            return code(Hamlib::InvalidArgument);
        return Result { Hamlib::Ok,
            { { QStringLiteral("Freq"), QString::number(rig_.frequencyHz()) },
                { QStringLiteral("Mode"), rig_.mode() },
                { QStringLiteral("Width"), QString::number(rig_.passband()) },
                { QStringLiteral("Split"), split_ ? "1" : "0" }, { QStringLiteral("SatMode"), "0" } },
            {}, false };
    });
    // Asked first by every NET client: 0 says no VFO argument goes with the commands.
    add(0, "chk_vfo", 0, true, [](const QStringList&, bool extended) {
        return Result { Hamlib::Ok, {}, extended ? "ChkVFO: 0\n" : "0\n", false };
    });
    add(0, "dump_state", 0, true, [](const QStringList&, bool) {
        return Result { Hamlib::Ok, {}, dumpState(), false };
    });
    add(0, "get_powerstat", 0, true,
        [](const QStringList&, bool) { return value(QStringLiteral("Power Status"), "1"); });
    add(0, "set_powerstat", 1, false, [](const QStringList& a, bool) {
        return code(a[0] == u"1" ? Hamlib::Ok : Hamlib::InvalidArgument); // the rig stays on
    });
    add(0, "get_lock_mode", 0, true,
        [](const QStringList&, bool) { return value(QStringLiteral("Locked"), "0"); });
    add('_', "get_info", 0, true,
        [](const QStringList&, bool) { return value(QStringLiteral("Info"), "Kestrel"); });
    add('q', "quit", 0, false, [](const QStringList&, bool) { return Result { Hamlib::Ok, {}, {}, true }; });
    add('Q', "quit", 0, false, [](const QStringList&, bool) { return Result { Hamlib::Ok, {}, {}, true }; });
}

QByteArray RigctlProtocol::dumpState()
{
    // Modes: CW 0x2, USB 0x4. One VFO (A, 0x1), one antenna.
    return QByteArrayLiteral("1\n" // protocol version
                             "1\n" // model
                             "0\n" // ITU region
                             "100000.000000 250000000000.000000 0x6 -1 -1 0x1 0x1\n"
                             "0 0 0 0 0 0 0\n"
                             "100000.000000 250000000000.000000 0x6 5000 100000 0x1 0x1\n"
                             "0 0 0 0 0 0 0\n"
                             "0x6 10\n"
                             "0 0\n"
                             "0x4 2400\n"
                             "0x2 500\n"
                             "0 0\n"
                             "0\n" // max RIT
                             "0\n" // max XIT
                             "0\n" // max IF shift
                             "0\n" // announces
                             "\n" // preamps
                             "\n" // attenuators
                             "0x0\n0x0\n0x0\n0x0\n0x0\n0x0\n" // get/set func, level, parm
                             "vfo_ops=0x0\n"
                             "ptt_type=0x1\n"
                             "targetable_vfo=0x0\n"
                             "has_set_vfo=1\n"
                             "has_get_vfo=1\n"
                             "has_set_freq=1\n"
                             "has_get_freq=1\n"
                             "has_set_conf=0\n"
                             "has_get_conf=0\n"
                             "has_power2mW=0\n"
                             "has_mW2power=0\n"
                             "timeout=0\n"
                             "rigctld_version=Kestrel\n"
                             "done\n");
}
