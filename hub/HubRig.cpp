#include "hub/HubRig.h"

#include "core/Station.h"
#include "devices/link/StationPorts.h"
#include "devices/rig/CatPlan.h"
#include "devices/rig/LinePace.h"
#include "devices/rig/RigController.h"
#include "hub/HamlibCommands.h"

namespace {
// How often a set waiting behind the window's own bytes looks again.
constexpr int DrainCheckMs = 2;

int normalPassband(const QString& mode)
{
    return mode == u"CW" ? 500 : 2400;
}
} // namespace

HubRig::HubRig(Station& station, StationPorts& ports, RigController& rig, QObject* parent)
    : QObject(parent)
    , station_(station)
    , ports_(ports)
    , rig_(rig)
{
    pace_.setSingleShot(true);
    pace_.setTimerType(Qt::PreciseTimer);
    connect(&pace_, &QTimer::timeout, this, &HubRig::flush);
}

qint64 HubRig::frequencyHz() const
{
    return rig_.counter() * 10;
}

int HubRig::setFrequencyHz(qint64 hz)
{
    const qint64 counter = (hz + 5) / 10; // the counter counts 10 Hz
    // A frequency neither the rig nor a transverter takes is the client's error, answered on
    // the socket rather than with a box on the operator's screen.
    if (!rig_.rigFrequency(counter))
        return Hamlib::InvalidArgument;
    rig_.setCounter(counter);
    if (pending_)
        ++coalesced_;
    pending_ = true;
    flush();
    return Hamlib::Ok;
}

void HubRig::flush()
{
    if (!pending_ || pace_.isActive())
        return;
    if (queuedBytes() > 0) {
        pace_.start(DrainCheckMs); // the window's own bytes go first
        return;
    }
    pending_ = false;
    ++sent_;
    const QString text = station_.frequencyText;
    rig_.SendFreq(text);
    // The next set waits as long as the line takes to carry this one.
    qint64 bytes[2] = { 0, 0 };
    for (const CatStep& step : CatPlan::sendFreq(text, rig_.setup()))
        bytes[step.com - 1] += step.bytes.size();
    const qint64 us = qMax(LinePace::microseconds(station_.settings.textAt(Setting::Com1Settings), bytes[0]),
        LinePace::microseconds(station_.settings.textAt(Setting::Com2Settings), bytes[1]));
    pace_.start(static_cast<int>((us + 999) / 1000));
}

qint64 HubRig::queuedBytes() const
{
    qint64 n = 0;
    for (int com : { 1, 2 })
        if (ports_.com(com).isOpen())
            n += qMax<qint64>(ports_.com(com).bytesToWrite(), 0);
    return n;
}

int HubRig::setMode(const QString& mode, int passband)
{
    // The rig knows CW and USB; data over USB is USB to it.
    QString m;
    if (mode == u"USB" || mode == u"PKTUSB")
        m = QStringLiteral("USB");
    else if (mode == u"CW")
        m = QStringLiteral("CW");
    if (m.isEmpty() || passband < -1)
        return Hamlib::InvalidArgument;
    // Checked here: the preset would put up the window's "not Open" message for a remote client.
    if (!ports_.com(1).isOpen() || !rig_.OptFT847_Click(m == u"CW" ? 4 : 5))
        return Hamlib::IoError;
    if (passband == 0 || (passband == -1 && m != mode_))
        passband_ = normalPassband(m);
    else if (passband > 0)
        passband_ = passband;
    mode_ = m;
    return Hamlib::Ok;
}

bool HubRig::ptt() const
{
    return rig_.ptt();
}

int HubRig::setPtt(bool on)
{
    rig_.setPtt(on);
    return Hamlib::Ok;
}
