#pragma once
// The GPS window's receive buffer: collects what the port delivers and cuts whole sentences
// out of it. For each type in the order RMC, GGA, GSA, GSV the first "$" + talker + type is
// taken up to the next "\r\n", and everything up to that line end leaves the buffer.
#include <QByteArray>
#include <QList>
#include <QString>

class NmeaReceiveBuffer {
public:
    enum class Type { RMC, GGA, GSA, GSV };
    struct Sentence {
        Type type;
        QString talker; // "GP", "GN", ...
        QString text; // from "$" to the checksum, without "\r\n"
    };

    // Text after the last line end that has grown this long without one is garbage: a
    // sentence is at most 82 characters.
    static constexpr qsizetype kMaxPending = 1024;

    // Appends the bytes and returns the sentences cut, in the order they were cut. Passes over
    // the four types repeat while one of them finds a whole sentence, so a burst holding
    // several sentences of one type yields them all.
    QList<Sentence> feed(const QByteArray& bytes);

    const QByteArray& pending() const { return buffer_; }
    void clear() { buffer_.clear(); }

    // The talkers taken like "GP": GPS, any combination, GLONASS, Galileo, BeiDou (old and new).
    static bool isTalker(char a, char b);

private:
    qsizetype find(const char* type) const;
    void dropDeadText();

    QByteArray buffer_;
};
