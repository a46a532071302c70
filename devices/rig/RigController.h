#pragma once
// The main window's rig: frequency counter and text, VHF band, tuning step, preset flag and
// push-to-talk, and the CAT actions behind the rig controls. Works on Com1/Com2 of StationPorts
// and the Station's rig port name, frequency text and hold flag. Holding a tuning button is
// event-driven: each pass sends, then the next waits until the line has carried it.
// Every frequency goes to the rig through the transverter table of Kestrel.ini: the display
// shows the station (RF) frequency, the rig gets its IF, and a frequency neither the rig nor a
// transverter takes is refused with a message, nothing sent.
#include "devices/rig/CatPlan.h"
#include "devices/rig/TransverterTable.h"

#include <QObject>
#include <QTimer>

#include <functional>

class Station;
class StationPorts;
class SerialLink;

class RigController : public QObject {
    Q_OBJECT
public:
    // Takes the rig port name from Kestrel.ini (rig/port, default "Com1") when the station has
    // none yet; a value other than "Com1"/"Com2" is reported and "Com1" used.
    RigController(Station& station, StationPorts& ports, QObject* parent = nullptr);

    RigSetup setup() const;

    // Frequency counter in 10 Hz units; setting it also sets the frequency text (start-up).
    qint64 counter() const { return counter_; }
    void setCounter(qint64 counter);
    QString displayText() const; // formatFre, MHz

    int bandIndex() const { return band_; }
    void setBandIndex(int band) { band_ = band; } // restoring a selection, no click
    int stepOption() const { return stepOption_; }
    void setStepOption(int option) { stepOption_ = option; }
    int microwaveBand() const { return microwaveBand_; }
    bool presetFlag() const { return presetFlag_; }
    // The beacon list clears it when it takes over a beacon's frequency.
    void setPresetFlag(bool on) { presetFlag_ = on; }

    // Tunes to a station frequency in 10 Hz units: the display shows it and the rig gets it
    // (through a transverter where one covers it). False when refused: the operator is told
    // why, nothing is sent and the display stays. The entry point for every path that tunes
    // from outside the rig panel (cluster, beacons, network clients).
    bool tuneTo(qint64 counter);
    // What the rig would be sent for a station frequency; nullopt when it would be refused.
    std::optional<qint64> rigFrequency(qint64 counter) const { return transverters_.rigFrequency(counter); }
    // The operator's message for a refused frequency ("1296.2 MHz is beyond ...").
    static QString refusalText(qint64 counter);
    void setTransverters(TransverterTable table) { transverters_ = std::move(table); }
    const TransverterTable& transverters() const { return transverters_; }

    // The frequency sender and the text-dialect frequency sender, for a station frequency
    // text; false when refused as above.
    bool SendFreq(const QString& frequencyText);
    bool SendFreqText();

    // Channel and mode presets. False (and nothing sent) when Com1 is not open: the operator
    // is told "Com1(<port number>) not Open" and com1NotOpen is signalled.
    bool OptFT847_Click(int index);
    void OptBandV_Click(int index);
    void OptBandR_Click(int index);

    // Hold-to-tune: direction +1 (FreqUp) or -1 (FreqDwn) on mouse-down; mouse-up stops.
    void startTuning(int direction);
    void stopTuning();
    bool isTuning() const { return chainActive_; }
    qint64 passes() const { return passes_; }

    // Push-to-talk with the binary bytes on the rig's port.
    void setPtt(bool on);
    bool ptt() const { return ptt_; }

    // "TX1;"/"TX0;" on Com1 after the transmit-switch wait, then `then` runs (the window
    // never sleeps). The wait defaults to one second.
    void switchTransmitText(bool on, std::function<void()> then = {});
    // "TX1;"/"TX0;" on Com1 at once (closing down: no time to wait).
    void writeTransmitText(bool on);
    void setTransmitWaitMs(int ms) { transmitWaitMs_ = ms; }
    int transmitWaitMs() const { return transmitWaitMs_; }

signals:
    void frequencyDisplayChanged(const QString& megahertz);
    void com1NotOpen();
    void pttChanged(bool on);
    void frequencyRefused(const QString& text);
    // After each tuning pass: the bytes still queued on Com1 and Com2 right after it was sent.
    void passSent(qint64 queuedBytes);
    void tuningEnded();

private:
    SerialLink& link(int com) const;
    void ensureOpen(int com);
    void execute(const CatSteps& steps);
    // The frequency text for the rig: unchanged when the rig takes it as it stands, the IF
    // when a transverter covers it; nullopt (and the operator told) when refused.
    std::optional<QString> rigText(const QString& frequencyText);
    void refuse(qint64 counter);
    void runPass();
    void maybeNextPass();
    void endChain();
    qint64 queuedBytes() const;

    Station& station_;
    StationPorts& ports_;
    TransverterTable transverters_;
    qint64 counter_ = 0;
    int band_ = 2;
    int stepOption_ = 1;
    int microwaveBand_ = 0;
    bool presetFlag_ = false;
    bool ptt_ = false;
    int transmitWaitMs_ = 1000;

    // Tuning chain: one pass on the line at a time.
    int direction_ = 1;
    bool chainActive_ = false;
    bool lineBusy_ = false; // the last pass's bytes are still on the line
    qint64 passBytes_[2] = { 0, 0 };
    qint64 passes_ = 0;
    QTimer paceTimer_;
};
