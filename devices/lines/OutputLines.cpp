#include "devices/lines/OutputLines.h"

#include "core/ExtensionSettings.h"
#include "devices/lines/GpioLine.h"
#include "devices/lines/LineChoice.h"
#include "devices/lines/LinesLog.h"
#include "devices/lines/ModemControlLine.h"
#include "devices/lines/NoLine.h"

#include <QHash>

OutputLines::OutputLines()
    : key_(std::make_shared<NoLine>())
    , down_(std::make_shared<NoLine>())
    , up_(std::make_shared<NoLine>())
{
}

std::unique_ptr<OutputLines> OutputLines::fromSettings()
{
    auto lines = std::make_unique<OutputLines>();
    // Lines on the same serial port share one open port.
    QHash<QString, std::shared_ptr<ModemControlPort>> ports;
    const struct {
        Role role;
        QString key;
    } wanted[] = { { Role::Key, ExtensionKey::KeyLine }, { Role::Down, ExtensionKey::DownLine },
        { Role::Up, ExtensionKey::UpLine } };
    for (const auto& w : wanted) {
        QString problem;
        const LineChoice choice = LineChoice::parse(ExtensionSettings::value(w.key), &problem);
        std::shared_ptr<DigitalLine> line;
        if (choice.kind == LineChoice::Kind::Dtr || choice.kind == LineChoice::Kind::Rts) {
            auto& port = ports[choice.port];
            if (!port)
                port = ModemControlPort::open(choice.port, &problem);
            if (port)
                line = std::make_shared<ModemControlLine>(port,
                    choice.kind == LineChoice::Kind::Dtr ? ModemControlPort::Signal::Dtr
                                                         : ModemControlPort::Signal::Rts);
            else
                ports.remove(choice.port);
        } else if (choice.kind == LineChoice::Kind::Gpio) {
            line = GpioLine::open(choice.chip, choice.line, &problem);
        }
        if (!problem.isEmpty()) {
            const QString text = QStringLiteral("Kestrel.ini %1: %2").arg(w.key, problem);
            qCWarning(lcLines).noquote() << text;
            lines->problems_ << text;
        }
        if (line)
            lines->setLine(w.role, std::move(line));
    }
    return lines;
}

void OutputLines::setLine(Role role, std::shared_ptr<DigitalLine> line)
{
    if (!line)
        line = std::make_shared<NoLine>();
    switch (role) {
    case Role::Key:
        key_ = std::move(line);
        break;
    case Role::Down:
        down_ = std::move(line);
        break;
    case Role::Up:
        up_ = std::move(line);
        break;
    }
}

const DigitalLine& OutputLines::line(Role role) const
{
    switch (role) {
    case Role::Key:
        return *key_;
    case Role::Down:
        return *down_;
    case Role::Up:
        break;
    }
    return *up_;
}

DigitalLine* OutputLines::lineAt(quint8 port, quint8 line) const
{
    if (port != ModulePort)
        return nullptr;
    switch (line) {
    case KeyLine:
        return key_.get();
    case DownLine:
        return down_.get();
    case UpLine:
        return up_.get();
    default:
        return nullptr;
    }
}

void OutputLines::UsbSetIODir(quint8 port, quint8 line, quint8 direction)
{
    if (DigitalLine* l = lineAt(port, line); l && direction == 1)
        l->setOutput();
}

bool OutputLines::UsbSetIOState(quint8 port, quint8 line, quint8 state)
{
    DigitalLine* l = lineAt(port, line);
    if (!l)
        return true;
    const bool on = state != 0;
    if (line == KeyLine)
        return l->setState(on); // the keyer's thread: no lock on its timing path
    const std::lock_guard lock(motorMutex_);
    const bool up = line == UpLine;
    if (on && (up ? downOn_ : upOn_)) {
        qCWarning(lcLines) << "elevation" << (up ? "up" : "down")
                           << "refused: the other direction is running";
        return false;
    }
    const bool done = l->setState(on);
    // A line the hardware would not switch off may still run: it keeps the other one locked.
    (up ? upOn_ : downOn_) = on ? done : !done;
    return done;
}
