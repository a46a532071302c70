#include "logbook/entry/PendingContacts.h"

#include "logbook/db/LogbookLogging.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QMutex>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUuid>

#include <unistd.h>

namespace {

const QString IntegerTag = QStringLiteral("int");

// One journal edit at a time: threads of this program through the mutex, another Kestrel of
// the same user through the lock file beside the journal.
class JournalLock {
public:
    explicit JournalLock(const QString& path)
        : guard_(&mutex())
        , file_(path + QStringLiteral(".lock"))
    {
        QDir().mkpath(QFileInfo(path).absolutePath());
        file_.lock();
    }

private:
    static QMutex& mutex()
    {
        static QMutex m;
        return m;
    }
    QMutexLocker<QMutex> guard_;
    QLockFile file_;
};

bool isInteger(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return !v.isNull();
    default:
        return false;
    }
}

// A number keeps its kind (an integer is marked, JSON having one kind of number) and NULL stays
// NULL; an empty text box gives a null QString, which the save stores as '', so it is "".
QJsonArray toJson(const SavedField& f)
{
    QJsonValue value;
    if (f.value.typeId() == QMetaType::QString)
        value = f.value.toString();
    else if (isInteger(f.value))
        return { f.column, f.value.toLongLong(), IntegerTag };
    else if (f.value.typeId() == QMetaType::Bool)
        value = f.value.toBool();
    else if (!f.value.isValid() || f.value.isNull())
        value = QJsonValue::Null;
    else if (f.value.typeId() == QMetaType::Double || f.value.typeId() == QMetaType::Float)
        value = f.value.toDouble();
    else
        value = f.value.toString();
    return { f.column, value };
}

QByteArray encode(const PendingContact& p)
{
    QJsonArray fields;
    for (const SavedField& f : p.fields)
        fields.append(toJson(f));
    const QJsonObject o { { QStringLiteral("id"), p.id },
        { QStringLiteral("kept"), p.kept.toUTC().toString(Qt::ISODate) },
        { QStringLiteral("connection"), p.connection }, { QStringLiteral("fields"), fields } };
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}

bool decode(const QByteArray& line, PendingContact* out, QString* why)
{
    QJsonParseError parse;
    const QJsonDocument doc = QJsonDocument::fromJson(line, &parse);
    if (parse.error != QJsonParseError::NoError) {
        *why = parse.errorString();
        return false;
    }
    const QJsonObject o = doc.object();
    out->id = o.value(QStringLiteral("id")).toString();
    out->connection = o.value(QStringLiteral("connection")).toString();
    out->kept = QDateTime::fromString(o.value(QStringLiteral("kept")).toString(), Qt::ISODate);
    const QJsonValue fields = o.value(QStringLiteral("fields"));
    if (out->id.isEmpty() || out->connection.isEmpty() || !fields.isArray()) {
        *why = QStringLiteral("no id, connection or fields");
        return false;
    }
    out->fields.clear();
    for (const QJsonValue& f : fields.toArray()) {
        const QJsonArray pair = f.toArray();
        if (pair.size() < 2 || !pair[0].isString() || pair[1].isArray() || pair[1].isObject()) {
            *why = QStringLiteral("a field is not a [column, value] pair");
            return false;
        }
        const QJsonValue v = pair[1];
        QVariant value;
        if (v.isString())
            value = v.toString();
        else if (v.isBool())
            value = v.toBool();
        else if (v.isDouble())
            value = pair.size() > 2 && pair[2].toString() == IntegerTag ? QVariant(qint64(v.toDouble()))
                                                                        : QVariant(v.toDouble());
        out->fields.append({ pair[0].toString(), value });
    }
    return true;
}

// Appends and syncs to disk before it returns.
bool appendSynced(const QString& path, const QByteArray& bytes, QString* error)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadWrite | QIODevice::Append)) {
        *error = f.errorString();
        return false;
    }
    QByteArray out;
    // A line cut short by a crash is ended first, so it stays one damaged line of its own.
    if (f.size() > 0 && f.seek(f.size() - 1) && f.read(1) != "\n")
        out += '\n';
    out += bytes;
    if (f.write(out) != out.size() || !f.flush() || ::fsync(f.handle()) != 0) {
        *error = f.errorString();
        return false;
    }
    return true;
}

QString fieldText(const QList<SavedField>& fields, const char* column)
{
    for (const SavedField& f : fields)
        if (f.column.compare(QLatin1String(column), Qt::CaseInsensitive) == 0)
            return f.value.toString();
    return {};
}

} // namespace

PendingContacts::PendingContacts(const QString& path)
    : path_(path)
{
}

QString PendingContacts::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
        + QStringLiteral("/pending-contacts.jsonl");
}

QList<PendingContact> PendingContacts::read(QList<QByteArray>* lines, QStringList* damaged)
{
    QList<PendingContact> out;
    QFile f(path_);
    if (!f.open(QIODevice::ReadOnly))
        return out; // no journal yet: nothing waits
    const QList<QByteArray> all = f.readAll().split('\n');
    f.close();
    QByteArray aside;
    for (int i = 0; i < all.size(); ++i) {
        if (all[i].trimmed().isEmpty())
            continue;
        PendingContact p;
        QString why;
        if (decode(all[i], &p, &why)) {
            out << p;
            lines->append(all[i]);
            continue;
        }
        aside += all[i] + '\n';
        const QString report
            = QStringLiteral("Line %1 of %2 could not be read (%3); it was moved to %4.")
                  .arg(i + 1)
                  .arg(QDir::toNativeSeparators(path_), why, QDir::toNativeSeparators(damagedPath()));
        qCWarning(lcLogbook) << report;
        if (damaged)
            damaged->append(report);
    }
    QString error;
    // The journal keeps a damaged line until it is safely in the other file.
    if (!aside.isEmpty() && (!appendSynced(damagedPath(), aside, &error) || !rewrite(*lines, &error))) {
        qCWarning(lcLogbook) << "damaged journal lines not set aside:" << error;
        if (damaged)
            damaged->append(QStringLiteral("They could not be set aside: %1").arg(error));
    }
    return out;
}

bool PendingContacts::rewrite(const QList<QByteArray>& lines, QString* error)
{
    QSaveFile f(path_);
    if (!f.open(QIODevice::WriteOnly)) {
        *error = f.errorString();
        return false;
    }
    for (const QByteArray& line : lines)
        f.write(line + '\n');
    if (!f.commit()) {
        *error = f.errorString();
        return false;
    }
    return true;
}

QString PendingContacts::append(const QString& connection, const QList<SavedField>& fields, QString* error)
{
    const PendingContact p { QUuid::createUuid().toString(QUuid::WithoutBraces), connection,
        QDateTime::currentDateTimeUtc(), fields };
    const JournalLock lock(path_);
    QString why;
    if (!appendSynced(path_, encode(p) + '\n', &why)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path_), why);
        return {};
    }
    return p.id;
}

bool PendingContacts::replace(const QString& id, const QList<SavedField>& fields, QString* error)
{
    const JournalLock lock(path_);
    QList<QByteArray> lines;
    QList<PendingContact> waiting = read(&lines, nullptr);
    for (int i = 0; i < waiting.size(); ++i) {
        if (waiting[i].id != id)
            continue;
        waiting[i].fields = fields;
        lines[i] = encode(waiting[i]);
        QString why;
        if (rewrite(lines, &why))
            return true;
        if (error)
            *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path_), why);
        return false;
    }
    return false;
}

bool PendingContacts::remove(const QStringList& ids, QString* error)
{
    const JournalLock lock(path_);
    QList<QByteArray> lines;
    const QList<PendingContact> waiting = read(&lines, nullptr);
    QList<QByteArray> kept;
    for (int i = 0; i < waiting.size(); ++i)
        if (!ids.contains(waiting[i].id))
            kept << lines[i];
    return kept.size() == lines.size() || rewrite(kept, error);
}

QList<PendingContact> PendingContacts::entries(QStringList* damaged)
{
    if (!QFileInfo::exists(path_))
        return {}; // nothing was ever kept: no folder or lock file made for it
    const JournalLock lock(path_);
    QList<QByteArray> lines;
    return read(&lines, damaged);
}

int PendingContacts::count(const QString& connection)
{
    int n = 0;
    for (const PendingContact& p : entries())
        n += p.connection == connection;
    return n;
}

bool PendingContacts::sameContact(const QList<SavedField>& a, const QList<SavedField>& b)
{
    if (fieldText(a, "Callsign").compare(fieldText(b, "Callsign"), Qt::CaseInsensitive) != 0
        || fieldText(a, "Band").compare(fieldText(b, "Band"), Qt::CaseInsensitive) != 0)
        return false;
    for (const char* column : { "Date", "GMT", "mode" })
        if (fieldText(a, column) != fieldText(b, column))
            return false;
    return true;
}

bool PendingContacts::inLog(const QString& connection, const QList<SavedField>& fields, DbError* error)
{
    const QString sql
        = QStringLiteral("SELECT ID FROM logtab WHERE Callsign = '%1' COLLATE NOCASE AND Date = '%2' "
                         "AND GMT = '%3' AND Band = '%4' COLLATE NOCASE AND mode = '%5'")
              .arg(SqlText::quoted(fieldText(fields, "Callsign")), SqlText::quoted(fieldText(fields, "Date")),
                  SqlText::quoted(fieldText(fields, "GMT")), SqlText::quoted(fieldText(fields, "Band")),
                  SqlText::quoted(fieldText(fields, "mode")));
    Recordset rs(connection);
    if (!rs.open(sql)) {
        *error = rs.error();
        return false;
    }
    return rs.recordCount() > 0;
}

PendingFlush PendingContacts::flush(const QString& connection)
{
    // One flush at a time, or two could both find a contact missing and both save it.
    static QMutex running;
    const QMutexLocker once(&running);
    PendingFlush out;
    for (const PendingContact& p : entries(&out.damaged)) {
        if (p.connection != connection)
            continue;
        DbError e;
        bool there = inLog(connection, p.fields, &e);
        if (!e && !there)
            e = ContactSave::save(connection, p.fields);
        if (e.number == DbErrorNumber::AlreadyLogged) { // saved at another position meanwhile
            e = DbError();
            there = true;
        }
        if (e) {
            out.error = e;
            if (e.number == DbErrorNumber::ServerGone)
                break;
            continue;
        }
        out.saved << p.id;
        out.alreadyInLog += there;
    }
    // The saved ones leave the journal together, in one rewrite rather than one each: should
    // this program end before, the next flush finds them in the log by their key.
    QString why;
    if (!out.saved.isEmpty() && !remove(out.saved, &why))
        out.error = { 1, QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path_), why) };
    out.left = count(connection);
    return out;
}
