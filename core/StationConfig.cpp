#include "core/StationConfig.h"

#include "core/FilePlace.h"
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

// The element tables read best with several cases to a line.
// clang-format off
Kind kindOf(int index)
{
    using namespace Setting;
    switch (index) {
    case CwSpeed: case Com1Used: case Com2Used: case Com3Used: case Com4Used: case ClusterChoice:
    case ClusterOption1: case ClusterOption2: case Kept27: case Kept28: case Kept30: case LogbookNumber:
    case MainState:
        return Kind::Int16;
    case TxtSel: case CwLoop: case BeaconCount: case LineBeacons: case LineStations: case Check2: case Check3:
        return Kind::Int16OrBool;
    case RigFrequency:
        return Kind::Int32;
    case ColourByProp:
        return Kind::Boolean;
    default:
        return Kind::Text;
    }
}

// clang-format on

SettingValue t(const char* s) { return SettingValue::text(QString::fromUtf8(s)); }
SettingValue i16(qint16 v) { return SettingValue::int16(v); }

// Neutral station details where the file has no value yet.
const char* const kCluster1 = "dxc.example.net";
const char* const kCluster2 = "dxspider.example.org";

// clang-format off
SettingValue commonDefault(int index)
{
    using namespace Setting;
    switch (index) {
    case CwSpeed: return i16(2);
    case TxtSel: return i16(-1);
    case CwLoop: return i16(0);
    case CwText1: return t("text1");
    case MyCall: case MyLocator: case LogbookText: return t("");
    case Com1Used: case Com2Used: case Com4Used: return i16(1);
    case Com1Port: return t("10");
    case Com1Settings: case Com2Settings: return t("9600,n,8,1");
    case Com2Port: return t("11");
    case Com3Port: return t("13");
    case Com3Settings: case Com4Settings: return t("4800,n,8,1");
    case Com4Port: return t("12");
    case Cluster1Host: return t(kCluster1);
    case Cluster1Port: return t("8000");
    case Cluster2Host: return t(kCluster2);
    case Cluster2Port: return t("7373");
    case ClusterChoice: case ClusterOption1: case ClusterOption2: case Kept27: case Kept28: case BeaconCount:
    case MainState:
        return i16(1);
    case Kept30: return i16(5);
    case LogbookNumber: return i16(10);
    case RigFrequency: return SettingValue::int32(144000);
    case ColourByProp: return SettingValue::boolean(false);
    case LineBeacons: case LineStations: return i16(1);
    case Check2: case Check3: return i16(0);
    default: return {};
    }
}

// clang-format on

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

// clang-format off
SettingValue newFileValue(int index)
{
    using namespace Setting;
    switch (index) {
    case CwText2: return t("text2");
    case Com3Used: return i16(1);
    case Label29Caption: return t("3640");
    case QslInfo: case QslLine2: case QslLine3: case QslLine4: case QslAddress: case QslFoot: return t("");
    case Transparency: return t("");
    default: return commonDefault(index);
    }
}

SettingValue fillValue(int index)
{
    using namespace Setting;
    switch (index) {
    case CwText2: return t("t");
    case Com3Used: return i16(0);
    case Label29Caption: return t("3195");
    case QslInfo: return t("DOK: X00  WAZ: 14  ITU: 28");
    case QslLine2: case QslLine3: case QslLine4: return t("Rig:");
    case QslAddress: return t("OP: Name, Street 1, 12345 Town");
    case QslFoot: return t("email: op@example.org  www.example.org");
    case Transparency: return t("128");
    default: return commonDefault(index);
    }
}

// clang-format on

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

    // Every window reloads the file; a fault in it is reported once, however often it is read.
    QFile file(path);
    if (file.exists() && !file.open(QIODevice::ReadOnly)) {
        station.prompts.reportOnce(QStringLiteral("%1 could not be read (%2). The default settings are used.")
                                       .arg(FilePlace(path), file.errorString()),
            PromptGate::Fault::Standalone);
    } else if (file.isOpen()) {
        const StationConfig::Parsed parsed = StationConfig::parse(file.readAll());
        QStringList problems = parsed.problems;
        for (int i = 0; i < parsed.values.size(); ++i)
            table[i] = coerce(i, parsed.values[i], problems);
        if (!problems.isEmpty()) {
            qCWarning(lcCore) << "Kestrel.txt:" << problems;
            station.prompts.reportOnce(
                QStringLiteral("%1: some settings could not be read and their defaults are used.\n")
                        .arg(FilePlace(path))
                    + problems.join(u'\n'),
                PromptGate::Fault::Standalone);
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

    const QString path = StationConfigPath();
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    const QString why = file.errorString();
    file.cancelWriting();
    qCWarning(lcCore) << "Kestrel.txt not saved:" << why;
    station.prompts.information(
        QStringLiteral("The settings could not be saved to %1 (%2). The previous file is unchanged.")
            .arg(FilePlace(path), why));
    return false;
}
