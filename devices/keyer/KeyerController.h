#pragma once
// The main window's CW keyer: speed, the text to send, the loop switch and its stop, and the
// transmit switching around the keying (the text dialect's "TX1;"/"TX0;" or the rig's
// push-to-talk, as the rig is wired). The keying itself runs on MorseKeyer's thread; this
// object lives on the window's thread and only starts, steers and observes it.
#include "devices/keyer/MorseKeyer.h"

#include <QObject>

class Station;
class RigController;
class OutputLines;

class KeyerController : public QObject {
    Q_OBJECT
public:
    KeyerController(Station& station, RigController& rig, OutputLines& lines, QObject* parent = nullptr);
    ~KeyerController() override;

    // OptSpeed_Click: 1 "50 lpm", 2 "60 lpm", 3 "70 lpm"; takes effect at the next start.
    void setSpeedIndex(int index) { speedIndex_ = index; }
    int speedIndex() const { return speedIndex_; }

    // cmdSend_Click with the selected text: transmit on, key the text (repeated while the loop
    // switch is on), transmit off. Ignored while sending.
    void cmdSend_Click(const QString& text);
    // The selected text changed while sending: the next character comes from the new text.
    void setText(const QString& text) { keyer_.setText(text); }
    void setLoop(bool on)
    {
        loop_ = on;
        keyer_.setLoop(on);
    }
    void LoopStop_Click() { keyer_.requestLoopStop(); }
    // "RX ": the keyer's transmit state becomes false.
    void cmdRX_Click();
    // Closing down: keying ends at once with the key up, and a transmitter switched on for it
    // is switched off without the wait.
    void stopNow();

    bool isSending() const { return sending_; }
    bool transmitState() const { return transmitState_; }
    int unitMs() const { return unitMs_; }
    MorseKeyer& keyer() { return keyer_; }

signals:
    void sendingChanged(bool sending);

private:
    void startKeying(const QString& text);
    void keyingFinished();
    void setTransmitState(bool on);
    void setSending(bool on);

    Station& station_;
    RigController& rig_;
    MorseKeyer keyer_;
    int speedIndex_ = 2;
    int unitMs_ = 75;
    bool loop_ = false;
    bool sending_ = false;
    bool transmitState_ = false;
    bool textDialect_ = false; // how transmit was switched on, so it is switched off alike
    bool transmitOn_ = false; // the rig was switched to transmit for this sending
};
