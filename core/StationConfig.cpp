#include "core/StationConfig.h"

#include "core/Station.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QStringDecoder>

Q_LOGGING_CATEGORY(lcCore, "kestrel.core")

namespace {

const QString kFileName = QStringLiteral("Kestrel.txt");

// How each saved element is typed; a value read from the file is brought to this type.
enum class Kind { Int16, Int32, Int16OrBool, Boolean, Text };

Kind kindOf(int index)
{
    switch (index) {
    case 0: case 7: case 10: case 13: case 16: case 24: case 25: case 26: case 27: case 28:
    case 30: case 31: case 33:
        return Kind::Int16;
    case 1: case 2: case 29: case 43: case 44: case 45: case 46:
        return Kind::Int16OrBool;
    case 34:
        return Kind::Int32;
    case 41:
        return Kind::Boolean;
    default:
        return Kind::Text;
    }
}

SettingValue t(const char* s) { return SettingValue::text(QString::fromUtf8(s)); }
SettingValue i16(qint16 v) { return SettingValue::int16(v); }

// Neutral station details where the file has no value yet.
const char* const kCluster1 = "dxc.example.net";
const char* const kCluster2 = "dxspider.example.org";

SettingValue commonDefault(int index)
{
    switch (index) {
    case 0: return i16(2);
    case 1: return i16(-1);
    case 2: return i16(0);
    case 3: return t("text1");
    case 5: case 6: case 32: return t("");
    case 7: case 10: case 16: return i16(1);
    case 8: return t("10");
    case 9: case 12: return t("9600,n,8,1");
    case 11: return t("11");
    case 14: return t("13");
    case 15: case 18: return t("4800,n,8,1");
    case 17: return t("12");
    case 20: return t(kCluster1);
    case 21: return t("8000");
    case 22: return t(kCluster2);
    case 23: return t("7373");
    case 24: case 25: case 26: case 27: case 28: case 29: case 33: return i16(1);
    case 30: return i16(5);
    case 31: return i16(10);
    case 34: return SettingValue::int32(144000);
    case 41: return SettingValue::boolean(false);
    case 43: case 44: return i16(1);
    case 45: case 46: return i16(0);
    default: return {};
    }
}

QString describe(const SettingValue& v)
{
    return QStringLiteral("\"%1\"").arg(v.toText());
}

// Brings a value read for `index` to the element's type; explains when it cannot.
SettingValue coerce(int index, const SettingValue& v, QStringList& problems)
{
    if (index >= Setting::SavedCount)
        return v;
    const int line = index + 1;
    auto refuse = [&](const QString& what) {
        const SettingValue fill = StationConfig::fillValue(index);
        problems << QStringLiteral("line %1: %2 is not %3; %4 is used instead.")
                        .arg(line)
                        .arg(describe(v), what,
                             fill.type() == SettingValue::Type::Text ? describe(fill) : fill.toText());
        return fill;
    };
    switch (kindOf(index)) {
    case Kind::Text:
        return v.type() == SettingValue::Type::Text ? v : SettingValue::text(v.toText());
    case Kind::Boolean:
        if (v.type() == SettingValue::Type::Boolean)
            return v;
        if (v.isNumber())
            return SettingValue::boolean(v.toInt() != 0);
        return refuse(QStringLiteral("#TRUE# or #FALSE#"));
    case Kind::Int16OrBool:
        if (v.type() == SettingValue::Type::Boolean)
            return v;
        [[fallthrough]];
    case Kind::Int16: {
        bool ok = false;
        const qint32 n = v.toInt(&ok);
        if (!ok || n < -32768 || n > 32767)
            return refuse(QStringLiteral("a whole number from -32768 to 32767"));
        return SettingValue::int16(static_cast<qint16>(n));
    }
    case Kind::Int32: {
        bool ok = false;
        const qint32 n = v.toInt(&ok);
        if (!ok)
            return refuse(QStringLiteral("a whole number"));
        return SettingValue::int32(n);
    }
    }
    return v;
}

QString decode(const QByteArray& bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(bytes);
    if (!utf8.hasError())
        return text;
    // Files written by older Windows programs are single-byte text.
    return QString::fromLatin1(bytes);
}

SettingValue bareValue(const QString& token)
{
    if (token.isEmpty())
        return {};
    if (token.compare(QLatin1String("#TRUE#"), Qt::CaseInsensitive) == 0)
        return SettingValue::boolean(true);
    if (token.compare(QLatin1String("#FALSE#"), Qt::CaseInsensitive) == 0)
        return SettingValue::boolean(false);
    bool ok = false;
    const qlonglong n = token.toLongLong(&ok);
    if (ok && n >= -32768 && n <= 32767)
        return SettingValue::int16(static_cast<qint16>(n));
    if (ok && n >= INT32_MIN && n <= INT32_MAX)
        return SettingValue::int32(static_cast<qint32>(n));
    return SettingValue::text(token);
}

bool isLineEnd(QChar c) { return c == u'\r' || c == u'\n'; }

} // namespace

namespace StationConfig {

SettingValue newFileValue(int index)
{
    switch (index) {
    case 4: return t("text2");
    case 13: return i16(1);
    case 19: return t("3640");
    case 35: case 36: case 37: case 38: case 39: case 40: return t("");
    case 42: return t("");
    default: return commonDefault(index);
    }
}

SettingValue fillValue(int index)
{
    switch (index) {
    case 4: return t("t");
    case 13: return i16(0);
    case 19: return t("3195");
    case 35: return t("DOK: X00  WAZ: 14  ITU: 28");
    case 36: case 37: case 38: return t("Rig:");
    case 39: return t("OP: Name, Street 1, 12345 Town");
    case 40: return t("email: op@example.org  www.example.org");
    case 42: return t("128");
    default: return commonDefault(index);
    }
}

Parsed parse(const QByteArray& bytes)
{
    Parsed out;
    const QString s = decode(bytes);
    const qsizetype n = s.size();
    qsizetype pos = 0;
    int line = 1;
    auto skipDelimiter = [&] {
        while (pos < n && (s[pos] == u' ' || s[pos] == u'\t'))
            ++pos;
        if (pos < n && s[pos] == u',') {
            ++pos;
        } else if (pos < n && s[pos] == u'\r') {
            ++pos;
            if (pos < n && s[pos] == u'\n')
                ++pos;
            ++line;
        } else if (pos < n && s[pos] == u'\n') {
            ++pos;
            ++line;
        }
    };
    while (pos < n) {
        while (pos < n && (s[pos] == u' ' || s[pos] == u'\t'))
            ++pos;
        if (pos >= n)
            break;
        SettingValue value;
        if (s[pos] == u'"') {
            QString text;
            bool closed = false;
            ++pos;
            while (pos < n && !isLineEnd(s[pos])) {
                if (s[pos] == u'"') {
                    if (pos + 1 < n && s[pos + 1] == u'"') { // a doubled quote is one quote
                        text += u'"';
                        pos += 2;
                        continue;
                    }
                    ++pos;
                    closed = true;
                    break;
                }
                text += s[pos++];
            }
            if (!closed)
                out.problems << QStringLiteral("line %1: a quoted text is not closed; it is read to the line's end.")
                                    .arg(line);
            // Anything between the closing quote and the delimiter is ignored.
            while (pos < n && s[pos] != u',' && !isLineEnd(s[pos]))
                ++pos;
            value = SettingValue::text(text);
        } else {
            const qsizetype start = pos;
            while (pos < n && s[pos] != u',' && !isLineEnd(s[pos]))
                ++pos;
            value = bareValue(s.mid(start, pos - start).trimmed());
        }
        skipDelimiter();
        if (value.isEmpty())
            break; // deliberate: an empty element ends reading; later elements keep their values
        if (out.values.size() >= Setting::TableSize) {
            out.problems << QStringLiteral("the file holds more than %1 values; the rest is ignored.")
                                .arg(Setting::TableSize);
            break;
        }
        out.values << value;
    }
    return out;
}

QByteArray format(const SettingValue& value)
{
    switch (value.type()) {
    case SettingValue::Type::Empty:
        return {};
    case SettingValue::Type::Int16:
    case SettingValue::Type::Int32:
        return QByteArray::number(value.toInt());
    case SettingValue::Type::Boolean:
        return value.toBool() ? QByteArrayLiteral("#TRUE#") : QByteArrayLiteral("#FALSE#");
    case SettingValue::Type::Text: {
        QString text = value.toText();
        text.replace(u'"', QStringLiteral("\"\""));
        return '"' + text.toUtf8() + '"';
    }
    }
    return {};
}

} // namespace StationConfig

QString StationConfigPath()
{
    return DirectoryOf(kFileName) + kFileName;
}

QString DirectoryOf(const QString& path)
{
    qsizetype last = -1;
    for (qsizetype i = 0; i < path.size(); ++i)
        if (path[i] == u'\\')
            last = i;
    return last < 0 ? QString() : path.left(last + 1);
}

bool FileExistsNonEmpty(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && info.isFile() && info.size() > 0;
}

void LoadStationConfig(Station& station)
{
    const QString path = StationConfigPath();
    SettingsTable& table = station.settings;
    if (!FileExistsNonEmpty(path)) {
        for (int i = 0; i < Setting::SavedCount; ++i)
            table[i] = StationConfig::newFileValue(i);
        SaveStationConfig(station);
    }

    QFile file(path);
    if (file.exists() && !file.open(QIODevice::ReadOnly)) {
        station.prompts.information(
            QStringLiteral("Kestrel.txt could not be read (%1). The default settings are used.")
                .arg(file.errorString()));
    } else if (file.isOpen()) {
        const StationConfig::Parsed parsed = StationConfig::parse(file.readAll());
        QStringList problems = parsed.problems;
        for (int i = 0; i < parsed.values.size(); ++i)
            table[i] = coerce(i, parsed.values[i], problems);
        if (!problems.isEmpty()) {
            qCWarning(lcCore) << "Kestrel.txt:" << problems;
            station.prompts.information(QStringLiteral("Kestrel.txt: some settings could not be read and "
                                                       "their defaults are used.\n")
                                        + problems.join(u'\n'));
        }
    }

    for (int i = 0; i < Setting::SavedCount; ++i)
        if (table[i].isEmpty())
            table[i] = StationConfig::fillValue(i);
}

bool SaveStationConfig(Station& station)
{
    QByteArray bytes;
    for (int i = 0; i < Setting::SavedCount; ++i)
        bytes += StationConfig::format(station.settings[i]) + "\r\n";

    QSaveFile file(StationConfigPath());
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    const QString why = file.errorString();
    file.cancelWriting();
    qCWarning(lcCore) << "Kestrel.txt not saved:" << why;
    station.prompts.information(
        QStringLiteral("The settings could not be saved to Kestrel.txt (%1). The previous file is unchanged.")
            .arg(why));
    return false;
}
