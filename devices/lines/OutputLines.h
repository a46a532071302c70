#pragma once
// The station's digital outputs, addressed as on the USB I/O module the window was built for:
// port 0, line 16 the CW key, line 18 elevation down, line 19 elevation up. Each is served by
// the backend Kestrel.ini names (none, a serial port's DTR/RTS, a GPIO line); any other port or
// line, like a line with no backend, takes every call silently. The two elevation lines are
// interlocked here, below every caller: one of them is never switched on while the other is on.
#include "devices/lines/DigitalLine.h"

#include <QStringList>
#include <QtGlobal>

#include <memory>
#include <mutex>

class OutputLines {
public:
    enum class Role { Key, Down, Up };
    static constexpr quint8 ModulePort = 0;
    static constexpr quint8 KeyLine = 16;
    static constexpr quint8 DownLine = 18;
    static constexpr quint8 UpLine = 19;

    // Every line served by nothing.
    OutputLines();

    // Backends from Kestrel.ini (lines/key, lines/down, lines/up). A backend that cannot be
    // opened leaves its line served by nothing; problems() says what and why.
    static std::unique_ptr<OutputLines> fromSettings();

    // Set up before use: the keyer reads its line from its own thread without a lock.
    void setLine(Role role, std::shared_ptr<DigitalLine> line);
    // For naming the backend; switching goes through UsbSetIOState, which holds the interlock.
    const DigitalLine& line(Role role) const;
    QStringList problems() const { return problems_; }

    // direction 1 = output. Other values leave the line as it is.
    void UsbSetIODir(quint8 port, quint8 line, quint8 direction);
    // state 1 = on, 0 = off. False when refused: an elevation line asked on while the other
    // one is on, or the hardware said no. Any thread may call it.
    bool UsbSetIOState(quint8 port, quint8 line, quint8 state);

private:
    DigitalLine* lineAt(quint8 port, quint8 line) const;

    std::shared_ptr<DigitalLine> key_;
    std::shared_ptr<DigitalLine> down_;
    std::shared_ptr<DigitalLine> up_;
    QStringList problems_;

    std::mutex motorMutex_; // the check and the switch of an elevation line are one step
    bool upOn_ = false;
    bool downOn_ = false;
};
