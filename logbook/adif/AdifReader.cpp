#include "logbook/adif/AdifReader.h"

#include <QStringDecoder>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

QString decode(QByteArrayView bytes)
{
    // ASCII reads the same either way; only other bytes need the decoder.
    if (!bytes.isEmpty() && std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; }))
        return QString::fromLatin1(bytes);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString s = utf8.decode(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : s;
}

// A tag's length: plain digits, as nearly every tag has them, read here; anything else as
// toLongLong reads it (the locale machinery costs more than the rest of the tag).
qint64 lengthOf(QByteArrayView text, bool* ok)
{
    if (text.isEmpty() || text.size() > 18
        || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return text.toLongLong(ok);
    qint64 n = 0;
    for (const char c : text)
        n = n * 10 + (c - '0');
    *ok = true;
    return n;
}

} // namespace

std::uint64_t AdifFields::mark(const QString& name)
{
    const unsigned first = name.isEmpty() ? 0 : name.front().unicode();
    return std::uint64_t(1) << ((unsigned(name.size()) * 7 + first) & 63);
}

void AdifFields::insert(const QString& name, const QString& value)
{
    const qsizetype at = indexOf(name);
    if (at < 0) {
        fields_.push_back({ name, value });
        marks_ |= mark(name);
    } else
        fields_[std::size_t(at)].value = value;
}

QString AdifFields::value(const QString& name) const
{
    const qsizetype at = indexOf(name);
    return at < 0 ? QString() : fields_[std::size_t(at)].value;
}

qsizetype AdifFields::indexOf(const QString& name) const
{
    // Most names looked up are not in the record: their mark says so at once. Compared here,
    // length and first letter before the rest: several names share a length.
    if (!(marks_ & mark(name)))
        return -1;
    const qsizetype size = name.size();
    const QChar* const data = name.constData();
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        const QString& n = fields_[i].name;
        if (n.size() == size && (size == 0 || n.front() == data[0])
            && std::memcmp(n.constData(), data, std::size_t(size) * sizeof(QChar)) == 0)
            return qsizetype(i);
    }
    return -1;
}

AdifReader::AdifReader(QByteArray data)
    : data_(std::move(data))
{
    skipHeader();
}

void AdifReader::advanceTo(qint64 pos)
{
    pos = std::min<qint64>(pos, data_.size());
    line_ += int(std::count(data_.constBegin() + pos_, data_.constBegin() + pos, '\n'));
    pos_ = pos;
}

bool AdifReader::hasHeaderEnd() const
{
    for (qint64 at = data_.indexOf('<'); at >= 0 && at + 5 <= data_.size(); at = data_.indexOf('<', at + 1)) {
        if (data_.mid(at, 5).toLower() == "<eoh>")
            return true;
    }
    return false;
}

void AdifReader::skipHeader()
{
    // A file that begins with "<" has no header.
    if (data_.isEmpty() || data_.front() == '<')
        return;
    if (!hasHeaderEnd())
        return; // no header end: read records from the start
    while (pos_ < data_.size()) {
        const Parsed p = parseTag();
        if (p.tag == Tag::EndOfHeader || p.tag == Tag::None)
            return;
        if (p.tag == Tag::Field)
            header_.insert(p.name, p.value);
    }
}

AdifReader::Parsed AdifReader::parseTag()
{
    Parsed p;
    const qint64 open = data_.indexOf('<', pos_);
    if (open < 0) {
        advanceTo(data_.size());
        return p;
    }
    for (qint64 i = pos_; i < open && !p.junk; ++i)
        p.junk = !std::isspace(static_cast<unsigned char>(data_[i]));
    advanceTo(open);
    p.line = line_;
    const qint64 close = data_.indexOf('>', open);
    // A tag runs to its ">"; a "<" before it means the ">" was lost.
    const qint64 nextOpen = data_.indexOf('<', open + 1);
    if (close < 0 || (nextOpen >= 0 && nextOpen < close)) {
        p.tag = Tag::Damaged;
        p.error = QStringLiteral("a field tag is not closed by \">\"");
        advanceTo(open + 1);
        return p;
    }
    // Views into the data: a tag is read without copying its parts.
    const QByteArrayView inside = QByteArrayView(data_).sliced(open + 1, close - open - 1).trimmed();
    const qsizetype colon = inside.indexOf(':');
    const qsizetype colons = colon < 0 ? 0 : inside.count(':');
    const QString name = fieldName((colon < 0 ? inside : inside.first(colon)).trimmed());
    advanceTo(close + 1);
    if (colons == 0) {
        if (name == QLatin1String("EOR"))
            p.tag = Tag::EndOfRecord;
        else if (name == QLatin1String("EOH"))
            p.tag = Tag::EndOfHeader;
        else {
            p.tag = Tag::Damaged;
            p.error = QStringLiteral("the tag <%1> has no length").arg(QString::fromLatin1(inside));
        }
        return p;
    }
    bool ok = false;
    const QByteArrayView afterName = inside.sliced(colon + 1);
    const qsizetype lengthEnd = afterName.indexOf(':');
    const qint64 length = lengthOf((lengthEnd < 0 ? afterName : afterName.first(lengthEnd)).trimmed(), &ok);
    if (name.isEmpty() || !ok || length < 0 || colons > 2) {
        p.tag = Tag::Damaged;
        p.error = QStringLiteral("the tag <%1> is not of the form <NAME:length>")
                      .arg(QString::fromLatin1(inside));
        return p;
    }
    if (close + 1 + length > data_.size()) {
        p.tag = Tag::Damaged;
        p.error = QStringLiteral("the value of %1 runs past the end of the file").arg(name);
        advanceTo(data_.size());
        return p;
    }
    p.tag = Tag::Field;
    p.name = name;
    qint64 end = close + 1 + length;
    if (!endsCleanly(end)) {
        const qint64 byChars = characterEnd(close + 1, length);
        if (byChars > end && endsCleanly(byChars)) {
            end = byChars;
            p.note = QStringLiteral("the length of %1 counts characters, not bytes").arg(name);
        }
    }
    p.value = decode(QByteArrayView(data_).sliced(close + 1, end - close - 1));
    advanceTo(end);
    return p;
}

QString AdifReader::fieldName(QByteArrayView spelled)
{
    for (const auto& [bytes, name] : names_) {
        if (bytes.size() == spelled.size()
            && std::memcmp(bytes.constData(), spelled.data(), spelled.size()) == 0)
            return name;
    }
    QString name = QString::fromLatin1(spelled).toUpper();
    if (names_.size() < kMaxNames)
        names_.push_back({ spelled.toByteArray(), name });
    return name;
}

bool AdifReader::endsCleanly(qint64 end) const
{
    if (end < data_.size() && (static_cast<unsigned char>(data_[end]) & 0xC0) == 0x80)
        return false; // inside a UTF-8 character
    for (qint64 i = end; i < data_.size(); ++i) {
        if (data_[i] == '<')
            return true;
        if (!std::isspace(static_cast<unsigned char>(data_[i])))
            return false;
    }
    return true;
}

qint64 AdifReader::characterEnd(qint64 from, qint64 characters) const
{
    qint64 at = from;
    for (qint64 n = 0; n < characters && at < data_.size(); ++n) {
        ++at;
        while (at < data_.size() && (static_cast<unsigned char>(data_[at]) & 0xC0) == 0x80)
            ++at;
    }
    return at;
}

bool AdifReader::next(AdifRecord& record)
{
    record = AdifRecord();
    QString lastField;
    while (true) {
        const Parsed p = parseTag();
        if (record.line == 0 && p.tag != Tag::None)
            record.line = p.line;
        // Only blanks stand between fields: other text means a length did not fit its value.
        if (p.junk && !lastField.isEmpty() && record.error.isEmpty())
            record.error
                = QStringLiteral("text follows the value of %1 (is its length right?)").arg(lastField);
        lastField = p.tag == Tag::Field ? p.name : QString();
        switch (p.tag) {
        case Tag::None:
            if (record.fields.isEmpty() && record.error.isEmpty())
                return false;
            if (record.error.isEmpty())
                record.error = QStringLiteral("the record is not ended by <EOR>");
            return true;
        case Tag::EndOfRecord:
            if (record.fields.isEmpty() && record.error.isEmpty()) {
                record.line = 0; // an empty record: nothing to report
                continue;
            }
            return true;
        case Tag::EndOfHeader:
            continue; // a second header end is harmless
        case Tag::Damaged:
            if (record.error.isEmpty())
                record.error = p.error;
            continue; // read on to this record's <EOR>
        case Tag::Field:
            if (record.error.isEmpty())
                record.fields.insert(p.name, p.value);
            if (!p.note.isEmpty())
                record.notes << p.note;
            continue;
        }
    }
}
