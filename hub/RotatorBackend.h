#pragma once
// The rotator as the hub's clients see it. Codes are Hamlib's (Hamlib::Ok or a negative error).
class RotatorBackend {
public:
    virtual ~RotatorBackend() = default;
    virtual double azimuth() const = 0;
    virtual double elevation() const = 0;
    virtual int setPosition(double azimuth, double elevation) = 0;
    virtual int stop() = 0;
    virtual int park() = 0;
};
