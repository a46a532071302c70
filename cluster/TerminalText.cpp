#include "cluster/TerminalText.h"

#include <algorithm>

TerminalText::TerminalText(int maxLines, int maxLineLength)
    : maxLines_(std::max(2, maxLines))
    , maxLineLength_(std::max(1, maxLineLength))
{
}

void TerminalText::feed(QByteArrayView bytes)
{
    const char* p = bytes.data();
    const char* end = p + bytes.size();
    const char* run = p;
    for (; p != end; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        if (c >= 0x20 && c != 0x7f) {
            afterCr_ = false;
            continue;
        }
        if (c == '\t') {
            afterCr_ = false;
            continue;
        }
        appendRun(run, p);
        run = p + 1;
        if (c == '\r') {
            endLine(true);
            afterCr_ = true;
        } else if (c == '\n') {
            if (!afterCr_)
                endLine(true);
            afterCr_ = false;
        } else if (c == '\b') {
            // deliberate: a backspace never reaches back over a line start
            if (!open_.isEmpty()) {
                open_.chop(1);
                changed_ = true;
            }
            afterCr_ = false;
        } else {
            // other control characters (bell, escape, NUL, ...) are not shown
            afterCr_ = false;
        }
    }
    appendRun(run, end);
}

void TerminalText::appendRun(const char* begin, const char* end)
{
    while (begin != end) {
        const qsizetype room = maxLineLength_ - open_.size();
        const qsizetype n = std::min<qsizetype>(room, end - begin);
        open_.append(QLatin1StringView(begin, n));
        begin += n;
        changed_ = true;
        if (open_.size() >= maxLineLength_ && begin != end) {
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
    afterCr_ = false;
}

void TerminalText::clear()
{
    finished_.clear();
    open_.clear();
    ended_.clear();
    pending_.clear();
    afterCr_ = false;
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
