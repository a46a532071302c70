#include "devices/rig/RigController.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/StationPorts.h"
#include "devices/rig/CatCodec.h"
#include "devices/rig/LinePace.h"
#include "devices/rig/RigLog.h"

#include <limits>

namespace {
// Pause between passes when nothing could be written (ports closed), so a held button does
// not spin.
constexpr int IdlePassMs = 50;
// How often a pass waiting for its queue to drain looks again, in case no signal comes.
constexpr int DrainCheckMs = 50;
} // namespace

RigController::RigController(Station& station, StationPorts& ports, QObject* parent)
    : QObject(parent)
    , station_(station)
    , ports_(ports)
{
    if (station_.rigPortName.isEmpty())
        station_.rigPortName = ExtensionSettings::value(ExtensionKey::RigPort, QStringLiteral("Com1"));
    if (station_.rigPortName != QLatin1String("Com1") && station_.rigPortName != QLatin1String("Com2")) {
        station_.prompts.information(
            QStringLiteral("Kestrel.ini rig/port is \"%1\"; it must be Com1 or Com2. "
                           "The rig is taken to be on Com1.")
                .arg(station_.rigPortName));
        station_.rigPortName = QStringLiteral("Com1");
    }

    QStringList problems;
    transverters_ = TransverterTable::fromSettings(&problems);
    if (!problems.isEmpty())
        station_.prompts.information(problems.join(QLatin1Char('\n')));

    paceTimer_.setSingleShot(true);
    paceTimer_.setTimerType(Qt::PreciseTimer);
    connect(&paceTimer_, &QTimer::timeout, this, [this] {
        lineBusy_ = false;
        maybeNextPass();
    });
    for (int com : { 1, 2 })
        connect(&link(com), &SerialLink::bytesWritten, this, [this] {
            if (!lineBusy_)
                maybeNextPass();
        });
}

RigSetup RigController::setup() const
{
    RigSetup s;
    s.rigPort = station_.rigPortName;
    s.com1Text = station_.settings.boolAt(Setting::Check2);
    s.com2Text = station_.settings.boolAt(Setting::Check3);
    s.band = band_;
    return s;
}

void RigController::setCounter(qint64 counter)
{
    counter_ = counter;
    station_.frequencyText = QString::number(counter_);
    emit frequencyDisplayChanged(displayText());
}

QString RigController::displayText() const
{
    return Cat::megahertzText(counter_);
}

SerialLink& RigController::link(int com) const
{
    return ports_.com(com);
}

void RigController::ensureOpen(int com)
{
    SerialLink& l = link(com);
    if (l.isOpen())
        return;
    const int portIndex = com == 1 ? Setting::Com1Port : Setting::Com2Port;
    const int settingsIndex = com == 1 ? Setting::Com1Settings : Setting::Com2Settings;
    l.open(station_.settings.textAt(portIndex), station_.settings.textAt(settingsIndex));
}

void RigController::execute(const CatSteps& steps)
{
    for (const CatStep& step : steps) {
        if (step.action == CatStep::Action::OpenIfClosed) {
            ensureOpen(step.com);
        } else if (link(step.com).write(step.bytes) > 0) {
            passBytes_[step.com - 1] += step.bytes.size();
        }
    }
}

QString RigController::refusalText(qint64 counter)
{
    return QStringLiteral("%1 MHz is beyond the rig and no transverter in Kestrel.ini [transverters] "
                          "covers it; nothing was sent.")
        .arg(Cat::megahertzText(counter));
}

void RigController::refuse(qint64 counter)
{
    const QString text = refusalText(counter);
    qCWarning(lcRig).noquote() << text;
    emit frequencyRefused(text);
    station_.prompts.information(text);
}

std::optional<QString> RigController::rigText(const QString& frequencyText)
{
    // the number the CAT encoders read: the leading digits of the trimmed text
    QString digits;
    for (const QChar c : frequencyText.trimmed()) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            break;
        digits += c;
    }
    if (digits.isEmpty())
        return frequencyText;
    bool ok = false;
    const qint64 counter = digits.toLongLong(&ok);
    const std::optional<qint64> rig = ok ? transverters_.rigFrequency(counter) : std::nullopt;
    if (!rig) {
        refuse(ok ? counter : std::numeric_limits<qint64>::max());
        return std::nullopt;
    }
    if (*rig == counter)
        return frequencyText; // as it stands: the encoders keep their own reading of it
    qCDebug(lcRig) << "transverter:" << counter << "on the rig at" << *rig;
    return QString::number(*rig);
}

bool RigController::tuneTo(qint64 counter)
{
    if (!transverters_.rigFrequency(counter)) {
        refuse(counter);
        return false;
    }
    setCounter(counter);
    return SendFreq(station_.frequencyText);
}

bool RigController::SendFreq(const QString& frequencyText)
{
    const std::optional<QString> text = rigText(frequencyText);
    if (!text)
        return false;
    execute(CatPlan::sendFreq(*text, setup()));
    return true;
}

bool RigController::SendFreqText()
{
    const std::optional<QString> text = rigText(station_.frequencyText);
    if (!text)
        return false;
    execute(CatPlan::sendFreqText(*text));
    return true;
}

bool RigController::OptFT847_Click(int index)
{
    if (!link(1).isOpen()) {
        emit com1NotOpen();
        station_.prompts.information(QStringLiteral("Com1(") + station_.settings.textAt(Setting::Com1Port)
            + QStringLiteral(") not Open"));
        return false;
    }
    const CatPlan::Preset p = CatPlan::preset(index, setup());
    if (p.frequencyText)
        station_.frequencyText = *p.frequencyText;
    execute(p.steps);
    return true;
}

void RigController::OptBandV_Click(int index)
{
    // deliberate: the first click after start-up or after a beacon keeps the frequency
    if (presetFlag_)
        counter_ = Cat::bandPreset(index);
    band_ = index;
    station_.frequencyText = QString::number(counter_);
    emit frequencyDisplayChanged(displayText());
    SendFreq(station_.frequencyText);
    presetFlag_ = true;
}

void RigController::OptBandR_Click(int index)
{
    microwaveBand_ = index;
    presetFlag_ = true;
}

void RigController::startTuning(int direction)
{
    direction_ = direction < 0 ? -1 : 1;
    station_.hold = true;
    if (chainActive_)
        return; // the running chain takes the new direction at its next pass
    chainActive_ = true;
    lineBusy_ = false;
    if (queuedBytes() > 0)
        paceTimer_.start(DrainCheckMs); // earlier bytes first: never two passes queued
    else
        runPass();
}

void RigController::stopTuning()
{
    station_.hold = false;
    // A pass still on the line finishes; one waiting for a stuck queue ends here.
    if (chainActive_ && !lineBusy_)
        endChain();
}

void RigController::runPass()
{
    const qint64 next = counter_ + direction_ * Cat::tuningStep(stepOption_);
    if (!transverters_.rigFrequency(next)) { // the edge of what the rig reaches: told once
        refuse(next);
        endChain();
        return;
    }
    counter_ = next;
    emit frequencyDisplayChanged(displayText());
    passBytes_[0] = passBytes_[1] = 0;
    // deliberate: the rig gets the text as it stood before this step, one step behind
    SendFreq(station_.frequencyText);
    station_.frequencyText = QString::number(counter_);
    ++passes_;
    emit passSent(queuedBytes());

    const qint64 us
        = qMax(LinePace::microseconds(station_.settings.textAt(Setting::Com1Settings), passBytes_[0]),
            LinePace::microseconds(station_.settings.textAt(Setting::Com2Settings), passBytes_[1]));
    lineBusy_ = true;
    paceTimer_.start(passBytes_[0] + passBytes_[1] == 0 ? IdlePassMs : static_cast<int>((us + 999) / 1000));
}

void RigController::maybeNextPass()
{
    if (!chainActive_ || lineBusy_)
        return;
    if (!station_.hold) {
        endChain();
        return;
    }
    if (queuedBytes() > 0) {
        paceTimer_.start(DrainCheckMs); // bytesWritten usually comes first
        return;
    }
    runPass();
}

void RigController::endChain()
{
    paceTimer_.stop();
    chainActive_ = false;
    lineBusy_ = false;
    emit tuningEnded();
}

qint64 RigController::queuedBytes() const
{
    qint64 n = 0;
    for (int com : { 1, 2 })
        if (link(com).isOpen())
            n += qMax<qint64>(link(com).bytesToWrite(), 0);
    return n;
}

void RigController::setPtt(bool on)
{
    ptt_ = on;
    execute(CatPlan::ptt(on, setup()));
    emit pttChanged(on);
}

void RigController::switchTransmitText(bool on, std::function<void()> then)
{
    QTimer::singleShot(transmitWaitMs_, this, [this, on, then = std::move(then)] {
        writeTransmitText(on);
        if (then)
            then();
    });
}

void RigController::writeTransmitText(bool on)
{
    link(1).write(on ? Cat::TextTransmit : Cat::TextReceive);
}
