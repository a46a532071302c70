#pragma once
// The hub's rig: the main window's RigController, driven as its own controls drive it. A
// frequency set moves the counter and display at once and goes out through SendFreq; sets
// that come faster than the line carries them are coalesced like hold-to-tune, so the line
// never holds more than one pending frequency command. Mode goes through the "FT847" CW/SSB
// presets, PTT through TxRx.
#include "hub/RigBackend.h"

#include <QObject>
#include <QTimer>

class RigController;
class Station;
class StationPorts;

class HubRig : public QObject, public RigBackend {
    Q_OBJECT
public:
    HubRig(Station& station, StationPorts& ports, RigController& rig, QObject* parent = nullptr);

    qint64 frequencyHz() const override;
    int setFrequencyHz(qint64 hz) override;
    QString mode() const override { return mode_; }
    int passband() const override { return passband_; }
    int setMode(const QString& mode, int passband) override;
    bool ptt() const override;
    int setPtt(bool on) override;

    // Frequency commands written so far, and sets taken over by a later one before going out.
    qint64 sent() const { return sent_; }
    qint64 coalesced() const { return coalesced_; }

private:
    void flush();
    qint64 queuedBytes() const;

    Station& station_;
    StationPorts& ports_;
    RigController& rig_;
    QString mode_ = QStringLiteral("USB");
    int passband_ = 2400;
    bool pending_ = false;
    qint64 sent_ = 0;
    qint64 coalesced_ = 0;
    QTimer pace_;
};
