#include "sim/devices/SimRig.h"

#include <array>
#include <optional>
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
    const quint8 opcode = p(4);
    if (!catOn_ && opcode != 0x00)
        return {}; // CAT off: the rig listens for CAT ON only
    switch (opcode) {
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
    case 0x00:
        catOn_ = true;
        break;
    case 0x80:
        catOn_ = false;
        break;
    case 0x03: // read frequency and mode: main, satellite receive, satellite transmit
    case 0x13:
    case 0x23: {
        quint8 modeCode = 0x01;
        for (const auto& [code, mode] : kBinaryModes)
            if (mode == mode_)
                modeCode = code;
        ++commands_;
        return frequencyBcd() + char(modeCode);
    }
    case 0xe7: // receive status: bit 7 set while the squelch is closed, S-meter dots below
        ++commands_;
        return QByteArray(1, char(0x80));
    case 0xf7: // transmit status: bit 7 set while receiving, power-meter dots below
        ++commands_;
        return QByteArray(1, char(transmitting_ ? 0x10 : 0x80));
    case 0x4e: // satellite mode on / off, the satellite VFOs, tones, repeater shift and offset:
    case 0x8e: // taken without an answer, as the rig does; the simulator does not model them
    case 0x11:
    case 0x21:
    case 0x17:
    case 0x27:
    case 0x0a:
    case 0x1a:
    case 0x2a:
    case 0x0b:
    case 0x1b:
    case 0x2b:
    case 0x0c:
    case 0x1c:
    case 0x2c:
    case 0x09:
    case 0x49:
    case 0x89:
    case 0xf9:
        break;
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

char SimRig::textModeDigit() const
{
    for (const auto& [digit, mode] : kTextModes)
        if (mode == mode_)
            return digit;
    return '2';
}

// "IF": memory channel (3), VFO-A in Hz (9), clarifier (5), RX and TX clarifier (1 each),
// mode (1), VFO/memory (1), tone (1), two fixed zeros, repeater shift (1).
QByteArray SimRig::informationAnswer() const
{
    return "IF001" + QByteArray::number(frequencyHz_).rightJustified(9, '0') + "+000000" + textModeDigit()
        + "00000;";
}

QByteArray SimRig::textCommand(const QByteArray& command)
{
    const QByteArray name = command.left(2);
    const QByteArray arg = command.mid(2);
    bool ok = false;
    // A one-character switch ("AI1;"): answered with its setting when asked, set when given.
    const auto flag = [&](char& value, const QByteArray& allowed) -> std::optional<QByteArray> {
        if (arg.isEmpty())
            return name + value + ';';
        if (arg.size() == 1 && allowed.contains(arg[0])) {
            value = arg[0];
            return QByteArray();
        }
        return std::nullopt;
    };
    std::optional<QByteArray> answer;
    if (name == "FA" || name == "FB") {
        qint64& hz = name == "FA" ? frequencyHz_ : vfoBHz_;
        if (arg.isEmpty()) {
            answer = name + QByteArray::number(hz).rightJustified(9, '0') + ';';
        } else {
            const qint64 value = arg.toLongLong(&ok);
            if (ok && value >= 0 && leadingDigits(arg) == arg.size()) {
                hz = value;
                answer = QByteArray();
            }
        }
    } else if (name == "MD") {
        if (arg.isEmpty() || arg == "0") {
            answer = QByteArray("MD0") + textModeDigit() + ';';
        } else {
            const QByteArray digit = arg.size() == 2 && arg[0] == '0' ? arg.mid(1) : arg;
            for (const auto& [d, mode] : kTextModes)
                if (digit.size() == 1 && digit[0] == d) {
                    mode_ = mode;
                    answer = QByteArray();
                }
        }
    } else if (name == "TX") {
        char tx = transmitting_ ? '1' : '0';
        answer = flag(tx, "01");
        transmitting_ = tx == '1';
    } else if (name == "ID" && arg.isEmpty()) {
        answer = "ID0570;"; // the FT-991's number
    } else if (name == "IF" && arg.isEmpty()) {
        answer = informationAnswer();
    } else if (name == "AI") {
        answer = flag(autoInformation_, "01");
    } else if (name == "PS") {
        answer = flag(power_, "01");
    } else if (name == "VS") {
        answer = flag(vfoSelect_, "01");
    } else if (name == "FT") {
        answer = flag(transmitVfo_, "0123");
        transmitVfo_ = char('0' + (transmitVfo_ - '0') % 2); // 2 and 3 select VFO-A and B
    } else if (name == "ST") {
        answer = flag(split_, "012");
    } else if (name == "SM" && (arg.isEmpty() || arg == "0")) {
        answer = "SM0000;";
    }
    if (!answer) {
        ++refused_;
        return "?;";
    }
    ++commands_;
    return *answer;
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
