#pragma once
// The line settings text of a serial port ("9600,n,8,1": baud rate, parity letter, data bits,
// stop bits) as values, read without touching any port so a bad text is caught before opening.
#include <QString>

#include <optional>

struct SerialSettings {
    enum class Parity { None, Even, Odd, Mark, Space };
    enum class StopBits { One, OneAndHalf, Two };

    qint32 baudRate = 9600;
    Parity parity = Parity::None;
    int dataBits = 8;
    StopBits stopBits = StopBits::One;

    // Reads "9600,n,8,1" (parity n/e/o/m/s in either case, data bits 5 to 8, stop bits 1, 1.5
    // or 2; blanks around the parts are ignored). On a bad text: nullopt, and *problem says
    // what is wrong in one sentence that quotes the text.
    static std::optional<SerialSettings> parse(const QString& text, QString* problem = nullptr);

    // Back to the text form, e.g. "4800,e,7,2".
    QString toText() const;

    bool operator==(const SerialSettings&) const = default;
};
