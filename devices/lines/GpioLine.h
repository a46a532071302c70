#pragma once
// An output line on a GPIO chip through libgpiod (v1 API). The line is claimed as an output,
// low, when it is opened, so nothing moves or keys before the program asks for it.
#include "devices/lines/DigitalLine.h"

#include <atomic>
#include <memory>
#include <mutex>

struct gpiod_chip;
struct gpiod_line;

class GpioLine : public DigitalLine {
public:
    // chip: name ("gpiochip0"), path, label or number. nullptr when the chip or line cannot be
    // had; *problem says which and why.
    static std::unique_ptr<GpioLine> open(const QString& chip, unsigned offset, QString* problem);
    ~GpioLine() override;

    bool setOutput() override { return true; } // claimed as an output when opened
    bool setState(bool on) override;
    QString description() const override;

private:
    GpioLine(gpiod_chip* chip, gpiod_line* line, const QString& chipText, unsigned offset);

    std::mutex mutex_;
    gpiod_chip* chip_;
    gpiod_line* line_;
    QString chipText_;
    unsigned offset_;
    std::atomic<bool> warned_ = false;
};
