#include "devices/lines/GpioLine.h"

#include "devices/lines/LinesLog.h"

#include <cerrno>
#include <cstring>
#include <gpiod.h>

namespace {
QString reason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}
} // namespace

std::unique_ptr<GpioLine> GpioLine::open(const QString& chipText, unsigned offset, QString* problem)
{
    gpiod_chip* chip = gpiod_chip_open_lookup(chipText.toLocal8Bit().constData());
    if (!chip) {
        if (problem)
            *problem = QStringLiteral("GPIO chip %1: %2").arg(chipText, reason(errno));
        return nullptr;
    }
    gpiod_line* line = gpiod_chip_get_line(chip, offset);
    if (!line || gpiod_line_request_output(line, "kestrel", 0) != 0) {
        const int error = errno;
        gpiod_chip_close(chip);
        if (problem)
            *problem
                = QStringLiteral("GPIO chip %1 line %2: %3").arg(chipText).arg(offset).arg(reason(error));
        return nullptr;
    }
    return std::unique_ptr<GpioLine>(new GpioLine(chip, line, chipText, offset));
}

GpioLine::GpioLine(gpiod_chip* chip, gpiod_line* line, const QString& chipText, unsigned offset)
    : chip_(chip)
    , line_(line)
    , chipText_(chipText)
    , offset_(offset)
{
}

GpioLine::~GpioLine()
{
    gpiod_line_set_value(line_, 0);
    gpiod_line_release(line_);
    gpiod_chip_close(chip_);
}

bool GpioLine::setState(bool on)
{
    const std::lock_guard lock(mutex_);
    if (gpiod_line_set_value(line_, on ? 1 : 0) == 0)
        return true;
    if (!warned_.exchange(true))
        qCWarning(lcLines).noquote()
            << QStringLiteral("GPIO chip %1 line %2: %3").arg(chipText_).arg(offset_).arg(reason(errno));
    return false;
}

QString GpioLine::description() const
{
    return QStringLiteral("gpio:%1:%2").arg(chipText_).arg(offset_);
}
