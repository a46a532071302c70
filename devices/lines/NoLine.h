#pragma once
// A line with nothing behind it: every call succeeds and changes nothing, as with a missing
// I/O module.
#include "devices/lines/DigitalLine.h"

class NoLine : public DigitalLine {
public:
    bool setOutput() override { return true; }
    bool setState(bool) override { return true; }
    QString description() const override { return QStringLiteral("none"); }
};
