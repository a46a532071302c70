#pragma once
// The Kestrel.ini text that says what serves an output line: "none", "dtr:<port>",
// "rts:<port>" or "gpio:<chip>:<line>" (port text as for the serial ports: a number or a path).
#include <QString>

struct LineChoice {
    enum class Kind { None, Dtr, Rts, Gpio };

    Kind kind = Kind::None;
    QString port; // Dtr, Rts
    QString chip; // Gpio: name, path, label or number of the chip
    unsigned line = 0; // Gpio: offset on the chip

    // Empty or "none" gives Kind::None. A text it cannot read also gives Kind::None, with
    // *problem set to one sentence quoting the text.
    static LineChoice parse(const QString& text, QString* problem = nullptr);
    QString toText() const;

    bool operator==(const LineChoice&) const = default;
};
