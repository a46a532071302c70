#pragma once
// The GPS window's receive buffer: collects what the port (or any other source of NMEA bytes)
// delivers and cuts whole sentences out of it in the order they arrived. A line ends at LF
// (CR LF or LF alone); a line whose last "$" is followed by a known talker and RMC, GGA,
// GSA or GSV holds a sentence from there. Lines of other types (VTG, GLL, TXT, ...) are passed over.
#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

class NmeaReceiveBuffer {
public:
    enum class Type { RMC, GGA, GSA, GSV };
    struct Sentence {
        Type type;
        QString talker; // "GP", "GN", ...
        QString text; // from "$" to the checksum, without the line end
    };

    // Text that has grown this long without a line end is garbage: a sentence is at most 82
    // characters.
    static constexpr qsizetype kMaxPending = 1024;

    // Bytes arrived: appends them and returns every sentence they completed, in arrival order.
    QList<Sentence> feed(QByteArrayView bytes);

    const QByteArray& pending() const { return buffer_; }
    void clear() { buffer_.clear(); }

    // The talkers taken like "GP": GPS, any combination, GLONASS, Galileo, BeiDou (old and new).
    static bool isTalker(char a, char b);

private:
    static void cutLine(QByteArrayView line, QList<Sentence>& out);

    QByteArray buffer_;
};
