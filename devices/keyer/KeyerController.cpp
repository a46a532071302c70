#include "devices/keyer/KeyerController.h"

#include "core/Station.h"
#include "devices/keyer/KeyerLog.h"
#include "devices/rig/CatCodec.h"
#include "devices/rig/LinePace.h"
#include "devices/rig/RigController.h"

#include <QMetaObject>
#include <QPointer>
#include <QTimer>

KeyerController::KeyerController(Station& station, RigController& rig, OutputLines& lines, QObject* parent)
    : QObject(parent)
    , station_(station)
    , rig_(rig)
    , keyer_(lines)
{
}

KeyerController::~KeyerController()
{
    keyer_.abort();
    keyer_.wait();
}

void KeyerController::cmdSend_Click(const QString& text)
{
    if (sending_)
        return;
    unitMs_ = Morse::unitMs(speedIndex_);
    setSending(true);
    setTransmitState(true);
    textDialect_ = CatPlan::textDialect(rig_.setup());
    // The first element waits until the line has carried the transmit command.
    auto keyAfter = [self = QPointer(this), text](const QByteArray& command, int com) {
        if (!self)
            return;
        const QString settings
            = self->station_.settings.textAt(com == 1 ? Setting::Com1Settings : Setting::Com2Settings);
        const auto leadMs = static_cast<int>((LinePace::microseconds(settings, command.size()) + 999) / 1000);
        QTimer::singleShot(leadMs, Qt::PreciseTimer, self.data(), [self, text] { self->startKeying(text); });
    };
    if (textDialect_) {
        rig_.switchTransmitText(true, [self = QPointer(this), keyAfter] {
            if (self)
                self->transmitOn_ = true;
            keyAfter(Cat::TextTransmit, 1);
        });
    } else {
        rig_.setPtt(true);
        transmitOn_ = true;
        keyAfter(Cat::PttOn, rig_.setup().rigPort == QLatin1String("Com2") ? 2 : 1);
    }
}

void KeyerController::startKeying(const QString& text)
{
    if (!sending_)
        return; // stopped while the transmit command was on its way
    qCDebug(lcKeyer) << "keying" << text.size() << "characters, unit" << unitMs_ << "ms, loop" << loop_;
    // The callback runs on the keying thread; the destructor joins that thread first.
    keyer_.start(unitMs_, text, loop_,
        [this] { QMetaObject::invokeMethod(this, &KeyerController::keyingFinished, Qt::QueuedConnection); });
}

void KeyerController::keyingFinished()
{
    keyer_.wait();
    if (!sending_)
        return; // stopped already
    transmitOn_ = false;
    if (textDialect_) {
        rig_.switchTransmitText(false, [self = QPointer(this)] {
            if (!self)
                return;
            self->setTransmitState(false);
            self->setSending(false);
        });
    } else {
        rig_.setPtt(false);
        setTransmitState(false);
        setSending(false);
    }
}

void KeyerController::stopNow()
{
    qCDebug(lcKeyer) << "stopped";
    keyer_.abort();
    keyer_.wait();
    if (transmitOn_) {
        if (textDialect_)
            rig_.writeTransmitText(false);
        else
            rig_.setPtt(false);
        transmitOn_ = false;
    }
    setTransmitState(false);
    setSending(false);
}

void KeyerController::cmdRX_Click()
{
    setTransmitState(false);
}

void KeyerController::setTransmitState(bool on)
{
    if (transmitState_ == on)
        return;
    transmitState_ = on;
}

void KeyerController::setSending(bool on)
{
    if (sending_ == on)
        return;
    sending_ = on;
    emit sendingChanged(on);
}
