#pragma once
// A DX spot of the simulated cluster node, its line in the usual form
// "DX de SPOTTER:  FREQ  CALL  comment  HHMMZ", and the node's own stream of spots.
#include <QList>
#include <QString>
#include <QTime>

struct SimSpot {
    QString spotter;
    double frequencyKhz = 0.0;
    QString call;
    QString comment;

    // Without line end; the frequency in kHz with one decimal, fields in fixed columns.
    QString line(const QTime& utc) const;
};

// Hands out a fixed list of plausible VHF to microwave spots in turn, round and round.
class SimSpotSource {
public:
    SimSpotSource();
    SimSpot next();
    int handedOut() const { return count_; }

private:
    QList<SimSpot> spots_;
    int count_ = 0;
};
