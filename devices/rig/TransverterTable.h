#pragma once
// Where a station frequency is tuned on the rig: through a transverter when one covers it
// (1296 MHz reached on a 144 MHz IF), straight when the rig's CAT frequency field holds it,
// refused otherwise. Frequencies are in the counter's 10 Hz units. The table lives in
// Kestrel.ini, group [transverters], one line per band: "<RF start MHz>=<IF start MHz>[,<width
// MHz>]" (width 2 MHz when left out).
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <optional>

struct Transverter {
    qint64 rfStart = 0; // 10 Hz units
    qint64 ifStart = 0;
    qint64 width = 0;
    bool operator==(const Transverter&) const = default;
};

class TransverterTable {
public:
    // The widest frequency the FT-847 five-byte command carries: eight BCD digits of 10 Hz.
    static constexpr qint64 RigLimit = 99999999;
    static constexpr qint64 DefaultWidth = 200000; // 2 MHz

    TransverterTable() = default;
    explicit TransverterTable(QList<Transverter> bands)
        : bands_(std::move(bands))
    {
    }

    // The table in Kestrel.ini; lines it cannot read are left out and named in problems.
    static TransverterTable fromSettings(QStringList* problems = nullptr);
    // One line: key "1296", value "144" or "144,4". nullopt and a reason when unreadable.
    static std::optional<Transverter> parse(const QString& key, const QString& value, QString* problem);

    // The frequency to send to the rig for a station frequency; nullopt when the rig cannot
    // take it and no transverter covers it.
    std::optional<qint64> rigFrequency(qint64 counter) const;
    const QList<Transverter>& bands() const { return bands_; }

private:
    QList<Transverter> bands_;
};
