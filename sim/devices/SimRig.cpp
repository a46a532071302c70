#include "sim/devices/SimRig.h"

#include <array>
#include <utility>

namespace {

constexpr int kFrameSize = 5;
constexpr int kLongestText = 32;
constexpr int kStaleMs = 200;

bool isUpper(char c)
{
    return c >= 'A' && c <= 'Z';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isPrintable(char c)
{
    return c >= 0x20 && c <= 0x7e;
}

int leadingDigits(const QByteArray& b)
{
    int n = 0;
    while (n < b.size() && isDigit(b[n]))
        ++n;
    return n;
}

// FT-847 mode bytes.
constexpr std::array<std::pair<quint8, SimRig::Mode>, 10> kBinaryModes { {
    { 0x00, SimRig::Mode::LSB },
    { 0x01, SimRig::Mode::USB },
    { 0x02, SimRig::Mode::CW },
    { 0x03, SimRig::Mode::CWR },
    { 0x04, SimRig::Mode::AM },
    { 0x08, SimRig::Mode::FM },
    { 0x82, SimRig::Mode::CWN },
    { 0x83, SimRig::Mode::CWRN },
    { 0x84, SimRig::Mode::AMN },
    { 0x88, SimRig::Mode::FMN },
} };

// Text-dialect mode digits ("MD0" + digit).
constexpr std::array<std::pair<char, SimRig::Mode>, 6> kTextModes { {
    { '1', SimRig::Mode::LSB },
    { '2', SimRig::Mode::USB },
    { '3', SimRig::Mode::CW },
    { '4', SimRig::Mode::FM },
    { '5', SimRig::Mode::AM },
    { '7', SimRig::Mode::CWR },
} };

} // namespace

QString SimRig::modeName(Mode mode)
{
    static const char* const names[]
        = { "LSB", "USB", "CW", "CWR", "AM", "FM", "CW-N", "CWR-N", "AM-N", "FM-N" };
    return QString::fromLatin1(names[static_cast<int>(mode)]);
}

QByteArray SimRig::receive(const QByteArray& bytes)
{
    buffer_ += bytes;
    if (!bytes.isEmpty())
        quietMs_ = 0;
    QByteArray out;
    while (!buffer_.isEmpty()) {
        const char first = buffer_[0];
        if (isUpper(first)) {
            // A text command is printable up to its ";". A binary frame always carries a byte
            // that is not (its opcode at the latest), so the first such byte tells them apart.
            int i = 1;
            while (i < buffer_.size() && isPrintable(buffer_[i]) && buffer_[i] != ';')
                ++i;
            if (i < buffer_.size() && buffer_[i] == ';') {
                out += textCommand(buffer_.left(i));
                buffer_.remove(0, i + 1);
                continue;
            }
            if (i == buffer_.size()) {
                if (buffer_.size() < kLongestText)
                    break; // the rest is still on its way
                ++refused_;
                buffer_.remove(0, 1);
                continue;
            }
        } else if (isDigit(first)) {
            // deliberate: Kestrel writes the plain frequency text ("14410000") to this port before
            // each command; at most four BCD bytes can be digits before an opcode, so five or more
            // are that text, which the rig notes and otherwise ignores.
            const int run = leadingDigits(buffer_);
            if (run >= kFrameSize) {
                if (run == buffer_.size())
                    break; // wait for its end; tick() takes it when nothing follows
                plainText_ = buffer_.left(run);
                buffer_.remove(0, run);
                continue;
            }
            if (run == buffer_.size())
                break;
        } else if (first == ';' || first == '\r' || first == '\n') {
            buffer_.remove(0, 1); // stray terminators; no binary frame starts with them
            continue;
        }
        if (buffer_.size() < kFrameSize)
            break;
        out += binaryCommand(buffer_.left(kFrameSize));
        buffer_.remove(0, kFrameSize);
    }
    return out;
}

QByteArray SimRig::tick(int ms)
{
    if (buffer_.isEmpty())
        return {};
    quietMs_ += ms;
    if (quietMs_ < kStaleMs)
        return {};
    // A command left unfinished this long never will be; a real rig drops it too.
    if (leadingDigits(buffer_) == buffer_.size() && buffer_.size() >= kFrameSize)
        plainText_ = buffer_;
    else
        ++refused_;
    buffer_.clear();
    return {};
}

QByteArray SimRig::binaryCommand(const QByteArray& frame)
{
    const auto p = [&frame](int i) { return static_cast<quint8>(frame[i]); };
    switch (p(4)) {
    case 0x01: { // set frequency: eight BCD digits, 10 Hz steps, most significant first
        qint64 tens = 0;
        for (int i = 0; i < 4; ++i) {
            const int hi = p(i) >> 4;
            const int lo = p(i) & 0x0f;
            if (hi > 9 || lo > 9) {
                ++refused_;
                return {};
            }
            tens = tens * 100 + hi * 10 + lo;
        }
        frequencyHz_ = tens * 10;
        break;
    }
    case 0x07: { // set mode
        for (const auto& [code, mode] : kBinaryModes) {
            if (code == p(0)) {
                mode_ = mode;
                ++commands_;
                return {};
            }
        }
        ++refused_;
        return {};
    }
    case 0x08:
        transmitting_ = true;
        break;
    case 0x88:
        transmitting_ = false;
        break;
    case 0x00: // CAT on / off: accepted, the simulator listens either way
    case 0x80:
        break;
    case 0x03: { // read frequency and mode
        quint8 modeCode = 0x01;
        for (const auto& [code, mode] : kBinaryModes)
            if (mode == mode_)
                modeCode = code;
        ++commands_;
        return frequencyBcd() + char(modeCode);
    }
    default:
        ++refused_;
        return {};
    }
    ++commands_;
    return {};
}

QByteArray SimRig::frequencyBcd() const
{
    QByteArray bcd(4, '\0');
    qint64 tens = (frequencyHz_ / 10) % 100000000;
    for (int i = 3; i >= 0; --i) {
        const int v = int(tens % 100);
        bcd[i] = char((v / 10) << 4 | (v % 10));
        tens /= 100;
    }
    return bcd;
}

QByteArray SimRig::textCommand(const QByteArray& command)
{
    const QByteArray name = command.left(2);
    const QByteArray arg = command.mid(2);
    bool ok = false;
    if (name == "FA") {
        if (arg.isEmpty()) {
            ++commands_;
            return "FA" + QByteArray::number(frequencyHz_).rightJustified(9, '0') + ';';
        }
        const qint64 hz = arg.toLongLong(&ok);
        if (ok && hz >= 0 && leadingDigits(arg) == arg.size()) {
            frequencyHz_ = hz;
            ++commands_;
            return {};
        }
    } else if (name == "MD") {
        if (arg.isEmpty() || arg == "0") {
            for (const auto& [digit, mode] : kTextModes)
                if (mode == mode_) {
                    ++commands_;
                    return QByteArray("MD0") + digit + ';';
                }
            ++commands_;
            return "MD02;";
        }
        const QByteArray digit = arg.size() == 2 && arg[0] == '0' ? arg.mid(1) : arg;
        for (const auto& [d, mode] : kTextModes)
            if (digit.size() == 1 && digit[0] == d) {
                mode_ = mode;
                ++commands_;
                return {};
            }
    } else if (name == "TX") {
        if (arg.isEmpty()) {
            ++commands_;
            return transmitting_ ? "TX1;" : "TX0;";
        }
        if (arg == "0" || arg == "1") {
            transmitting_ = arg == "1";
            ++commands_;
            return {};
        }
    }
    ++refused_;
    return "?;";
}

QString SimRig::stateLine() const
{
    return QStringLiteral("frequency=%1 mode=%2 tx=%3 commands=%4 refused=%5 plain=%6")
        .arg(frequencyHz_)
        .arg(modeName(mode_))
        .arg(transmitting_ ? 1 : 0)
        .arg(commands_)
        .arg(refused_)
        .arg(plainText_.isEmpty() ? QStringLiteral("-") : QString::fromLatin1(plainText_));
}
