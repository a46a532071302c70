#pragma once
// An output line served by the DTR or RTS line of a serial port. Several lines may share one
// port (key on DTR, motor on RTS).
#include "devices/lines/DigitalLine.h"
#include "devices/lines/ModemControlPort.h"

#include <atomic>
#include <memory>

class ModemControlLine : public DigitalLine {
public:
    ModemControlLine(std::shared_ptr<ModemControlPort> port, ModemControlPort::Signal signal);

    bool setOutput() override { return true; } // always an output
    bool setState(bool on) override;
    QString description() const override;

private:
    std::shared_ptr<ModemControlPort> port_;
    ModemControlPort::Signal signal_;
    std::atomic<bool> warned_ = false;
};
