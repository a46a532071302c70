#include "app/kestrel-log/LogTool.h"

#include "core/SettingsTable.h"
#include "core/StationConfig.h"
#include "logbook/adif/AdifExport.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogCopy.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/edi/EdiExport.h"
#include "logbook/entry/BandTable.h"
#include "logbook/entry/LogClock.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>

#include <limits>

namespace {
constexpr qint64 WholeJob = std::numeric_limits<qint64>::max();
constexpr int ReadOnlyNumber = 8; // SQLITE_READONLY, as DatabaseFile::check gives it
} // namespace

LogTool::LogTool(QTextStream& out, QTextStream& err)
    : out_(out)
    , err_(err)
{
}

QString LogTool::usage()
{
    return QStringLiteral(
        "usage: kestrel-log [--db FILE] import FILE.adi\n"
        "       kestrel-log [--db FILE] export FILE.adi [--band PATTERN]\n"
        "       kestrel-log [--db FILE] dxcc CALL...\n"
        "       kestrel-log [--db FILE] check\n"
        "       kestrel-log [--db FILE] edi --band PATTERN FILE.edi\n"
        "       kestrel-log copy --from LOG --to LOG\n"
        "FILE is the logbook database; without --db, the one Kestrel uses.\n"
        "LOG is a database file or a club server's postgresql://USER@HOST:PORT/DATABASE.\n");
}

int LogTool::fail(const QString& message)
{
    err_ << "kestrel-log: " << message << Qt::endl;
    return Failed;
}

int LogTool::badUsage(const QString& message)
{
    err_ << "kestrel-log: " << message << '\n' << usage() << Qt::flush;
    return BadUsage;
}

int LogTool::run(const QStringList& arguments)
{
    QStringList args = arguments;
    if (args.value(0) == QLatin1String("--help") || args.value(0) == QLatin1String("-h")) {
        out_ << usage() << Qt::flush;
        return Ok;
    }
    if (args.value(0) == QLatin1String("--db")) {
        if (args.size() < 2 || args[1].isEmpty())
            return badUsage(QStringLiteral("--db needs a file"));
        db_ = DbConnection::isServer(args[1]) ? args[1] : QFileInfo(args[1]).absoluteFilePath();
        args = args.mid(2);
    } else {
        db_ = DatabaseFile::resolve(DatabaseFile::systemPlaces());
    }
    if (args.isEmpty())
        return badUsage(QStringLiteral("no command given"));
    const QString command = args.takeFirst();
    if (command == QLatin1String("import")) {
        if (args.size() != 1)
            return badUsage(QStringLiteral("import takes one ADIF file"));
        return importAdif(args[0]);
    }
    if (command == QLatin1String("export")) {
        QString band;
        if (args.size() == 3 && args[1] == QLatin1String("--band"))
            band = args[2];
        else if (args.size() != 1)
            return badUsage(QStringLiteral("export takes one ADIF file and an optional --band PATTERN"));
        return exportAdif(args[0], band);
    }
    if (command == QLatin1String("dxcc")) {
        if (args.isEmpty())
            return badUsage(QStringLiteral("dxcc takes one or more callsigns"));
        return dxcc(args);
    }
    if (command == QLatin1String("edi")) {
        if (args.size() != 3 || !args.contains(QLatin1String("--band"))
            || args.indexOf(QLatin1String("--band")) == 2)
            return badUsage(QStringLiteral("edi takes --band PATTERN and one EDI file"));
        const int at = int(args.indexOf(QLatin1String("--band")));
        const QString band = args[at + 1];
        args.remove(at, 2);
        return exportEdi(args[0], band);
    }
    if (command == QLatin1String("copy")) {
        const qsizetype from = args.indexOf(QLatin1String("--from"));
        const qsizetype to = args.indexOf(QLatin1String("--to"));
        if (args.size() != 4 || from < 0 || to < 0 || from % 2 || to % 2)
            return badUsage(QStringLiteral("copy takes --from LOG and --to LOG"));
        return copy(args[from + 1], args[to + 1]);
    }
    if (command == QLatin1String("check")) {
        if (!args.isEmpty())
            return badUsage(QStringLiteral("check takes no arguments"));
        return check();
    }
    return badUsage(QStringLiteral("unknown command: %1").arg(command));
}

bool LogTool::open(bool forWriting)
{
    const bool server = DbConnection::isServer(db_);
    if (!forWriting && !server && !QFileInfo::exists(db_)) {
        fail(QStringLiteral("The database file does not exist: %1").arg(db_));
        return false;
    }
    if (!forWriting && server) {
        // Reading commands never make a log on a server either.
        if (const DbError e = DatabaseFile::identify(db_)) {
            fail(e.description);
            return false;
        }
    }
    const bool created = !server && !QFileInfo::exists(db_);
    const DbError e = DatabaseFile::prepare(db_);
    // A read-only log still serves the commands that only read it.
    if (e && (forWriting || e.number != ReadOnlyNumber)) {
        fail(e.description);
        return false;
    }
    if (created)
        err_ << "kestrel-log: new logbook database made: " << db_ << Qt::endl;
    return true;
}

int LogTool::importAdif(const QString& file)
{
    if (!open(true))
        return Failed;
    // No own locator here: contacts keep the DISTANCE their record brings.
    AdifImport import(db_, {});
    if (import.start(file) == AdifImport::State::Failed)
        return fail(import.error().description);
    while (import.step(WholeJob) == AdifImport::State::Running) { }
    out_ << import.report(std::numeric_limits<int>::max()) << Qt::endl;
    if (import.state() != AdifImport::State::Done)
        return fail(QStringLiteral("The import stopped: %1").arg(import.error().text()));
    return Ok;
}

int LogTool::exportAdif(const QString& file, const QString& bandPattern)
{
    if (!open(false))
        return Failed;
    AdifExport exporter(db_, bandPattern);
    if (exporter.start(file) == AdifExport::State::Failed)
        return fail(exporter.error().description);
    while (exporter.step(WholeJob) == AdifExport::State::Running) { }
    if (exporter.state() != AdifExport::State::Done)
        return fail(exporter.error().description);
    out_ << exporter.report() << Qt::endl;
    return Ok;
}

int LogTool::dxcc(const QStringList& calls)
{
    if (!open(false))
        return Failed;
    int status = Ok;
    for (const QString& call : calls) {
        const DxccLookupResult r = DxccLookup::lookup(db_, call.toUpper());
        if (r.error)
            return fail(r.error.description);
        if (!r.found) {
            err_ << "kestrel-log: no DXCC entity for " << call << Qt::endl;
            status = Failed;
        }
        // Call, entity, entity number, CQ zone, ITU zone, continent; a tab between fields, an
        // empty field where the entity has no value.
        const DxccEntity& d = r.entity;
        auto number = [](int n) { return n > 0 ? QString::number(n) : QString(); };
        out_ << call.toUpper() << '\t' << d.name << '\t' << number(d.dxccNr) << '\t' << number(d.cqZone)
             << '\t' << number(d.ituZone) << '\t' << d.continent << '\n';
    }
    out_.flush();
    return status;
}

int LogTool::copy(const QString& from, const QString& to)
{
    auto place = [](const QString& log) {
        return DbConnection::isServer(log) ? log : QFileInfo(log).absoluteFilePath();
    };
    const LogCopy::Result result = LogCopy::run(place(from), place(to));
    if (result.error)
        return fail(result.error.description);
    for (const QString& line : result.report())
        out_ << line << '\n';
    out_.flush();
    return Ok;
}

int LogTool::check()
{
    if (const DbError e = DatabaseFile::check(db_); e && e.number != ReadOnlyNumber)
        return fail(e.description);
    if (const DbError foreign = DatabaseFile::identify(db_))
        return fail(foreign.description);
    DbConnection c(db_);
    if (!c.isOpen())
        return fail(c.error().description);
    QSqlQuery q(c.database());
    QStringList problems;
    if (!q.exec(c.sql(QStringLiteral("PRAGMA integrity_check"))))
        return fail(QStringLiteral("The integrity check could not run on %1.").arg(db_));
    while (q.next()) {
        if (q.value(0).toString() != QLatin1String("ok"))
            problems << q.value(0).toString();
    }
    q.finish();
    const int version = SchemaMigration::version(c);
    out_ << db_ << ": schema version " << version;
    if (version < SchemaMigration::CurrentVersion)
        out_ << " (brought to " << SchemaMigration::CurrentVersion << " when next opened)";
    out_ << ", integrity " << (problems.isEmpty() ? QStringLiteral("ok") : QStringLiteral("damaged")) << '\n';
    for (const QString& p : problems)
        out_ << "  " << p << '\n';
    out_.flush();
    return problems.isEmpty() ? Ok : fail(QStringLiteral("The database file is damaged: %1").arg(db_));
}

int LogTool::exportEdi(const QString& file, const QString& band)
{
    // The band as the window's button caption ("2m") or as its pattern ("144%").
    QString pattern = band;
    for (int i = 0; i < BandTable::AllBands; ++i) {
        if (band.compare(BandTable::caption(i), Qt::CaseInsensitive) == 0)
            pattern = BandTable::pattern(i);
    }
    // Kestrel.txt is read, never made: a missing one leaves the own call and locator empty.
    SettingsTable settings;
    QFile config(StationConfigPath());
    if (config.open(QIODevice::ReadOnly)) {
        const StationConfig::Parsed parsed = StationConfig::parse(config.readAll());
        for (int i = 0; i < parsed.values.size() && i < Setting::SavedCount; ++i)
            settings[i] = parsed.values[i];
        for (const QString& p : parsed.problems)
            err_ << "kestrel-log: Kestrel.txt: " << p << Qt::endl;
    }
    const EdiContest contest = EdiContest::fromSettings(settings);
    if (contest.locator.isEmpty())
        return fail(QStringLiteral("No own locator: an EDI file is scored from it. Run kestrel-log where "
                                   "Kestrel.txt is (the folder Kestrel starts in)."));
    if (!open(false))
        return Failed;
    EdiExport exporter(db_, pattern, LogClock::configured());
    const EdiExport::Result result = exporter.write(contest, file);
    for (const QString& p : exporter.problems())
        err_ << "kestrel-log: " << p << Qt::endl;
    if (result != EdiExport::Result::Written)
        return fail(exporter.report());
    out_ << exporter.report() << Qt::endl;
    return Ok;
}
