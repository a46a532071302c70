#include "gps/NmeaReceiveBuffer.h"

#include "gps/GpsLog.h"

#include <cstring>

namespace {
constexpr const char* kTypes[] = { "RMC", "GGA", "GSA", "GSV" };
constexpr NmeaReceiveBuffer::Type kTypeOf[] = { NmeaReceiveBuffer::Type::RMC, NmeaReceiveBuffer::Type::GGA,
    NmeaReceiveBuffer::Type::GSA, NmeaReceiveBuffer::Type::GSV };

// The talker as a shared literal (no allocation per sentence); a null text for any other.
QString talkerText(char a, char b)
{
    switch (a) {
    case 'G':
        switch (b) {
        case 'P':
            return QStringLiteral("GP");
        case 'N':
            return QStringLiteral("GN");
        case 'L':
            return QStringLiteral("GL");
        case 'A':
            return QStringLiteral("GA");
        case 'B':
            return QStringLiteral("GB");
        }
        break;
    case 'B':
        if (b == 'D')
            return QStringLiteral("BD");
        break;
    }
    return QString();
}
} // namespace

bool NmeaReceiveBuffer::isTalker(char a, char b)
{
    return !talkerText(a, b).isNull();
}

void NmeaReceiveBuffer::cutLine(QByteArrayView line, QList<Sentence>& out)
{
    // No sentence holds a "$": a sentence cut short and run into the next leaves the last one.
    const qsizetype i = line.lastIndexOf('$');
    if (i < 0 || i + 6 > line.size())
        return;
    const char* data = line.data();
    const QString talker = talkerText(data[i + 1], data[i + 2]);
    if (talker.isNull())
        return;
    for (int t = 0; t < 4; ++t) {
        if (std::memcmp(data + i + 3, kTypes[t], 3) == 0) {
            out.append({ kTypeOf[t], talker, QString::fromLatin1(data + i, line.size() - i) });
            return;
        }
    }
}

QList<NmeaReceiveBuffer::Sentence> NmeaReceiveBuffer::feed(QByteArrayView bytes)
{
    QList<Sentence> out;
    // Lines wholly inside this read are cut straight from it; only the unfinished tail waits.
    qsizetype from = 0;
    while (from < bytes.size()) {
        const qsizetype lf = bytes.indexOf('\n', from);
        if (lf < 0)
            break;
        QByteArrayView line = bytes.sliced(from, lf - from);
        if (!buffer_.isEmpty()) {
            buffer_.append(line);
            line = buffer_;
        }
        if (line.endsWith('\r'))
            line.chop(1);
        cutLine(line, out);
        buffer_.clear();
        from = lf + 1;
    }
    buffer_.append(bytes.sliced(from));
    if (buffer_.size() > kMaxPending) {
        // Keep a sentence that may still end; drop the garbage before it.
        const qsizetype dollar = buffer_.lastIndexOf('$');
        const qsizetype keep = dollar < 0 ? 0 : buffer_.size() - dollar;
        qCDebug(lcGps) << "dropping" << buffer_.size() - keep << "bytes without a line end";
        buffer_.remove(0, buffer_.size() - (keep <= kMaxPending ? keep : 0));
    }
    return out;
}
