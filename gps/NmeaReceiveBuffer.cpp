#include "gps/NmeaReceiveBuffer.h"

#include "gps/GpsLog.h"

#include <cstring>

namespace {
constexpr const char* kTypes[] = { "RMC", "GGA", "GSA", "GSV" };
constexpr NmeaReceiveBuffer::Type kTypeOf[] = { NmeaReceiveBuffer::Type::RMC, NmeaReceiveBuffer::Type::GGA,
    NmeaReceiveBuffer::Type::GSA, NmeaReceiveBuffer::Type::GSV };
} // namespace

namespace {
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

qsizetype NmeaReceiveBuffer::find(const char* type) const
{
    const char* data = buffer_.constData();
    const qsizetype n = buffer_.size();
    qsizetype i = 0;
    while (i + 6 <= n) {
        const void* dollar = std::memchr(data + i, '$', static_cast<size_t>(n - 6 - i + 1));
        if (!dollar)
            return -1;
        i = static_cast<const char*>(dollar) - data;
        if (isTalker(data[i + 1], data[i + 2]) && std::memcmp(data + i + 3, type, 3) == 0)
            return i;
        ++i;
    }
    return -1;
}

QList<NmeaReceiveBuffer::Sentence> NmeaReceiveBuffer::feed(const QByteArray& bytes)
{
    buffer_.append(bytes);
    QList<Sentence> out;
    bool cut = true;
    while (cut) {
        cut = false;
        for (int t = 0; t < 4; ++t) {
            const qsizetype start = find(kTypes[t]);
            if (start < 0)
                continue;
            const qsizetype end = buffer_.indexOf("\r\n", start + 6);
            if (end < 0)
                continue;
            out.append({ kTypeOf[t], talkerText(buffer_[start + 1], buffer_[start + 2]),
                QString::fromLatin1(buffer_.constData() + start, end - start) });
            // Whatever stood before the sentence goes with it.
            buffer_.remove(0, end + 2);
            cut = true;
        }
    }
    dropDeadText();
    return out;
}

void NmeaReceiveBuffer::dropDeadText()
{
    // Every "$" + type still here has no line end after it, so the lines before the last line
    // end are of types nobody reads (VTG, GLL, TXT, ...) and could only ever be cut away.
    const qsizetype lastEnd = buffer_.lastIndexOf("\r\n");
    if (lastEnd >= 0)
        buffer_.remove(0, lastEnd + 2);
    if (buffer_.size() <= kMaxPending)
        return;
    const qsizetype dollar = buffer_.lastIndexOf('$');
    const qsizetype keep = dollar < 0 ? 0 : buffer_.size() - dollar;
    qCDebug(lcGps) << "dropping" << buffer_.size() - keep << "bytes without a line end";
    buffer_.remove(0, buffer_.size() - (keep <= kMaxPending ? keep : 0));
}
