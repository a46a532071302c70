#include "cluster/TerminalText.h"

#include <algorithm>

TerminalText::TerminalText(int maxLines, int maxLineLength)
    : maxLines_(std::max(2, maxLines))
    , maxLineLength_(std::max(1, maxLineLength))
{
}

namespace {

// Length of the valid UTF-8 sequence at `p` (2 to 4), 0 when it is none, -1 when the bytes
// up to `end` are a valid but unfinished start.
int utf8Length(const unsigned char* p, const unsigned char* end)
{
    const unsigned char c = p[0];
    int n = 0;
    unsigned char low = 0x80, high = 0xBF; // the second byte's range (no overlongs, no surrogates)
    if (c >= 0xC2 && c <= 0xDF) {
        n = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        n = 3;
        if (c == 0xE0)
            low = 0xA0;
        else if (c == 0xED)
            high = 0x9F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        n = 4;
        if (c == 0xF0)
            low = 0x90;
        else if (c == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    for (int i = 1; i < n; ++i) {
        if (p + i == end)
            return -1;
        const unsigned char b = p[i];
        if (i == 1 ? (b < low || b > high) : (b < 0x80 || b > 0xBF))
            return 0;
    }
    return n;
}

} // namespace

void TerminalText::feed(QByteArrayView bytes)
{
    QByteArray joined;
    if (!unfinished_.isEmpty()) {
        joined = std::exchange(unfinished_, {});
        joined.append(bytes);
        bytes = joined;
    }
    const char* p = bytes.data();
    const char* end = p + bytes.size();
    const char* run = p;
    for (; p != end; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        if (escape_ != Escape::None) {
            if (c >= 0x20 || c == 0x07 || c == 0x1b) {
                skipEscape(c);
                run = p + 1;
                continue;
            }
            escape_ = Escape::None; // a line end or other control cuts the sequence short and acts
        }
        if ((c >= 0x20 && c != 0x7f) || c == '\t') {
            pairsWith_ = 0;
            continue;
        }
        appendRun(run, p, false);
        run = p + 1;
        if (c == '\r' || c == '\n') {
            if (pairsWith_ == char(c)) {
                pairsWith_ = 0;
            } else {
                endLine(true);
                pairsWith_ = c == '\r' ? '\n' : '\r';
            }
        } else if (c == '\b') {
            // deliberate: a backspace never reaches back over a line start
            if (!open_.isEmpty()) {
                open_.chop(open_.size() >= 2 && open_.back().isLowSurrogate() ? 2 : 1);
                changed_ = true;
            }
            pairsWith_ = 0;
        } else if (c == 0x1b) {
            escape_ = Escape::Start;
        }
        // other control characters (bell, NUL, ...) are not shown
    }
    appendRun(run, end, true);
}

void TerminalText::skipEscape(unsigned char c)
{
    switch (escape_) {
    case Escape::Start:
        escape_ = c == '[' ? Escape::Csi : c == ']' ? Escape::Osc : Escape::None;
        break;
    case Escape::Csi:
        // Parameters and intermediates (0x20 to 0x3F) until the final byte.
        if (c > 0x3f || c == 0x07 || c == 0x1b)
            escape_ = c == 0x1b ? Escape::Start : Escape::None;
        break;
    case Escape::Osc: // a window title: ends at BEL or ESC backslash
        if (c == 0x07)
            escape_ = Escape::None;
        else if (c == 0x1b)
            escape_ = Escape::OscEsc;
        break;
    case Escape::OscEsc:
        escape_ = c == '\\' ? Escape::None : Escape::Osc;
        break;
    case Escape::None:
        break;
    }
}

void TerminalText::appendRun(const char* begin, const char* end, bool atEnd)
{
    const auto* p = reinterpret_cast<const unsigned char*>(begin);
    const auto* e = reinterpret_cast<const unsigned char*>(end);
    QString text;
    text.reserve(e - p);
    while (p != e) {
        if (*p < 0x80) {
            text.append(QLatin1Char(char(*p++)));
            continue;
        }
        const int n = utf8Length(p, e);
        if (n < 0 && atEnd) {
            unfinished_ = QByteArray(reinterpret_cast<const char*>(p), e - p);
            break;
        }
        if (n <= 0) {
            // Not UTF-8: the byte is a Latin-1 character (its C1 controls are not shown).
            if (*p >= 0xa0)
                text.append(QLatin1Char(char(*p)));
            ++p;
            continue;
        }
        char32_t u = *p & (0x7f >> n);
        for (int i = 1; i < n; ++i)
            u = (u << 6) | (p[i] & 0x3f);
        text.append(QStringView(QChar::fromUcs4(u)));
        p += n;
    }
    appendText(text);
}

void TerminalText::appendText(QStringView text)
{
    while (!text.isEmpty()) {
        const qsizetype room = maxLineLength_ - open_.size();
        const qsizetype n = std::min<qsizetype>(room, text.size());
        open_.append(text.left(n));
        text = text.mid(n);
        changed_ = true;
        if (open_.size() >= maxLineLength_ && !text.isEmpty()) {
            endLine(false);
        }
    }
}

void TerminalText::endLine(bool whole)
{
    if (whole && !openBroken_) {
        ended_.append(open_);
        if (ended_.size() > maxLines_)
            ended_.removeFirst();
    }
    openBroken_ = !whole;
    finished_.push_back(open_);
    pending_.append(open_);
    open_.clear();
    changed_ = true;
    while (static_cast<int>(finished_.size()) > maxLines_ - 1)
        finished_.pop_front();
    if (pending_.size() > maxLines_ - 1) {
        pending_.removeFirst();
        reset_ = true;
    }
}

void TerminalText::appendNotice(const QString& text)
{
    if (!open_.isEmpty())
        endLine(false);
    open_ = text.left(maxLineLength_);
    endLine(false);
    openBroken_ = false;
    pairsWith_ = 0;
}

void TerminalText::clear()
{
    finished_.clear();
    open_.clear();
    ended_.clear();
    pending_.clear();
    pairsWith_ = 0;
    escape_ = Escape::None;
    unfinished_.clear();
    openBroken_ = false;
    changed_ = true;
    reset_ = true;
}

QStringList TerminalText::lines() const
{
    QStringList all;
    all.reserve(lineCount());
    for (const QString& l : finished_)
        all.append(l);
    all.append(open_);
    return all;
}

QStringList TerminalText::takeEndedLines()
{
    return std::exchange(ended_, {});
}

TerminalText::Update TerminalText::takeUpdate()
{
    Update u;
    u.changed = changed_;
    u.reset = reset_;
    u.finished = std::exchange(pending_, {});
    u.open = open_;
    changed_ = false;
    reset_ = false;
    return u;
}
