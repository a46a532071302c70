#include "devices/lines/ModemControlLine.h"

#include "devices/lines/LinesLog.h"

ModemControlLine::ModemControlLine(std::shared_ptr<ModemControlPort> port, ModemControlPort::Signal signal)
    : port_(std::move(port))
    , signal_(signal)
{
}

bool ModemControlLine::setState(bool on)
{
    QString problem;
    if (port_->set(signal_, on, &problem))
        return true;
    // Once is enough: the keyer calls this for every element.
    if (!warned_.exchange(true))
        qCWarning(lcLines).noquote() << problem;
    return false;
}

QString ModemControlLine::description() const
{
    return (signal_ == ModemControlPort::Signal::Dtr ? QStringLiteral("dtr:") : QStringLiteral("rts:"))
        + port_->portText();
}
