#pragma once
// The rig as the hub's clients see it: what a get answers and where a set goes. Codes are
// Hamlib's (Hamlib::Ok or a negative error).
#include <QString>
#include <QtGlobal>

class RigBackend {
public:
    virtual ~RigBackend() = default;
    virtual qint64 frequencyHz() const = 0;
    virtual int setFrequencyHz(qint64 hz) = 0;
    virtual QString mode() const = 0; // Hamlib's mode name: "USB", "CW"
    virtual int passband() const = 0; // Hz
    // passband 0: the mode's normal width; -1: keep the current one.
    virtual int setMode(const QString& mode, int passband) = 0;
    virtual bool ptt() const = 0;
    virtual int setPtt(bool on) = 0;
};
