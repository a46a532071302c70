// Logbook database on a generated log of 100 000 contacts over the 21 bands: opening the log
// list with band filter and sort, callsign-prefix search, DXCC lookup, saving one contact,
// and the memory of the whole list, reading and marking a QSL print run. Each figure is the
// median of repeated runs; the list load is also given against a reference in the same run (the
// same rows read through QSqlQuery), the print run against storing each letter on its own.
// Then the bulk paths: ADIF import of 100 000 records with a DXCC lookup each (references: the
// same import with an empty prefix list, and the rows it stored inserted plainly through one
// prepared statement), and the in-memory DXCC index over every call of
// MASTER.SCP (reference: the window's SQL-text lookup of the same calls).
// Last, the same log on a PostgreSQL server the bench starts itself, copied there with the copy
// of kestrel-log: list, search, save and import side by side with SQLite ("bench_logbook server"
// runs this part alone).
#include "bench/BenchSupport.h"
#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/browse/DxccIndex.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogCopy.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSave.h"
#include "mapexport/ImportLocator.h"
#include "qsl/QslRunReader.h"
#include "qsl/QslText.h"
#include "tests/support/PgServer.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QThread>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <vector>

namespace {

const char* const BandPatterns[]
    = { "1840%", "3600%", "7050%", "10140", "14200%", "18110%", "21150%", "24950%", "28400%", "50%", "144%",
          "432%", "1296%", "2320%", "34%", "5760%", "10368%", "24048%", "47088%", "76032%", "122250%" };
const char* const Prefixes[] = { "DL", "DK", "DJ", "G", "M0", "F", "ON", "PA", "OK", "OM", "SP", "HA", "OE",
    "HB9", "I", "IK", "S5", "9A", "YU", "LZ", "YO", "SM", "OH", "LA", "OZ", "EA", "CT", "EI", "GM", "GW", "K",
    "W", "N", "VE", "JA", "VK", "ZL", "UA", "UR", "LY" };

long statusKb(const char* key)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key))).trimmed().split(' ').first().toLong();
    }
    return -1;
}

QString randomCall(QRandomGenerator& rng)
{
    QString call = QString::fromLatin1(Prefixes[rng.bounded(int(std::size(Prefixes)))]);
    call += QString::number(rng.bounded(10));
    const int letters = 2 + rng.bounded(2);
    for (int i = 0; i < letters; ++i)
        call += QChar(u'A' + rng.bounded(26));
    return call;
}

// 100 000 contacts in the order they were made, over 20 years, bands uniform.
void generateLog(const QString& path, int count)
{
    QRandomGenerator rng(4711);
    QVariantList date, gmt, call, grid, rsts, rstr, band, mode, nam, qsl, prop, qrb, qtf, comment, dxcc,
        gedata, gegrid;
    const QDate start(2006, 1, 1);
    for (int i = 0; i < count; ++i) {
        const QDate d = start.addDays(qint64(i) * 7300 / count);
        QString b = QString::fromLatin1(BandPatterns[rng.bounded(21)]);
        if (b.endsWith(QLatin1Char('%')))
            b.chop(1);
        const QString c = randomCall(rng);
        const QString g = randomGrid(rng);
        const int km = 50 + rng.bounded(2000);
        const int deg = rng.bounded(360);
        date << LogDate::toStored(d.toString(LogDate::DisplayFormat));
        gmt << QStringLiteral("%1:%2:00")
                   .arg(rng.bounded(24), 2, 10, QLatin1Char('0'))
                   .arg(rng.bounded(60), 2, 10, QLatin1Char('0'));
        call << c;
        grid << g;
        rsts << QStringLiteral("59");
        rstr << QStringLiteral("57");
        band << b;
        mode << QStringLiteral("SSB");
        nam << QStringLiteral("Hans");
        qsl << (rng.bounded(3) == 0 ? QStringLiteral("Q") : QStringLiteral("Y"));
        prop << QStringLiteral("Tr");
        qrb << double(km);
        qtf << double(deg);
        comment << QStringLiteral("tnx");
        dxcc << QStringLiteral("Germany");
        gedata << QStringLiteral(
            "Log: %1 %2 kHz  %3 12:00 rsts:59 rstr:57 QRB:%4km  QTF:%5 QSL: Y Prop:Tr tnx")
                      .arg(c, b, d.toString(LogDate::DisplayFormat))
                      .arg(km)
                      .arg(deg);
        gegrid << QStringLiteral("13.375,52.5");
    }
    DbConnection c(path);
    c.exec(QStringLiteral("PRAGMA cache_size=-262144"));
    c.begin();
    QSqlQuery q(c.database());
    q.prepare(QStringLiteral(
        "INSERT INTO logtab (Date, GMT, Callsign, Grid, rsts, rstr, Band, mode, Nam, QSL, Prop, "
        "QRB, QTF, Comment, DXCC, GEdata, GEgridXY) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    for (const QVariantList& col : { date, gmt, call, grid, rsts, rstr, band, mode, nam, qsl, prop, qrb, qtf,
             comment, dxcc, gedata, gegrid })
        q.addBindValue(col);
    if (!q.execBatch())
        std::printf("generating the log failed\n");
    c.commit();
}

void row(const char* what, double ms, const char* target)
{
    std::printf("  %-58s %9.3f ms   %s\n", what, ms, target);
}

// An ADIF file of `count` contacts with locators, over the bands, a few portable calls among them.
QByteArray generateAdif(int count)
{
    QRandomGenerator rng(1717);
    const char* const bands[]
        = { "160m", "80m", "40m", "30m", "20m", "17m", "15m", "12m", "10m", "6m", "2m", "70cm", "23cm" };
    const char* const suffixes[] = { "", "", "", "", "", "", "/P", "/M", "/9", "/QRP" };
    QByteArray out = "generated\n<EOH>\n";
    const QDate start(2006, 1, 1);
    for (int i = 0; i < count; ++i) {
        const QString call = randomCall(rng) + QLatin1String(suffixes[rng.bounded(10)]);
        const QDate d = start.addDays(qint64(i) * 7300 / count);
        const QString time = QStringLiteral("%1%2")
                                 .arg(rng.bounded(24), 2, 10, QLatin1Char('0'))
                                 .arg(rng.bounded(60), 2, 10, QLatin1Char('0'));
        for (const auto& [name, value] : { std::pair { "CALL", call }, { "QSO_DATE", d.toString("yyyyMMdd") },
                 { "TIME_ON", time }, { "BAND", QString::fromLatin1(bands[rng.bounded(13)]) },
                 { "MODE", QStringLiteral("SSB") }, { "RST_SENT", QStringLiteral("59") },
                 { "RST_RCVD", QStringLiteral("57") }, { "GRIDSQUARE", randomGrid(rng) },
                 { "NAME", QStringLiteral("Hans") }, { "STATE", QStringLiteral("NY") } }) {
            const QByteArray v = value.toUtf8();
            out += '<' + QByteArray(name) + ':' + QByteArray::number(v.size()) + '>' + v + ' ';
        }
        out += "<EOR>\n";
    }
    return out;
}

// CPU time of the process in ms: on a machine shared with other work the wall clock says little.
double cpuMs()
{
    timespec ts {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) * 1e3 + double(ts.tv_nsec) / 1e6;
}

struct Timing {
    double wallMs;
    double cpuMs;
};

// A print run of 1001 contacts (QSL "T") out of the log: read and marked in one transaction,
// against reading alone and against the letters stored one connection and transaction per
// contact. The run's letters are set again before each pass, outside the time taken. Wall and
// CPU time, medians of 7 passes.
void readAndMark(const QString& path)
{
    auto timed = [&](int runs, const std::function<void()>& action) {
        std::vector<double> wall;
        std::vector<double> cpu;
        for (int i = 0; i < runs; ++i) {
            DbConnection(path).exec(
                QStringLiteral("UPDATE logtab SET QSL = 'T' WHERE ID % 99 = 1 AND ID <= 99099"));
            const double c = cpuMs();
            wall.push_back(medianMs(1, action));
            cpu.push_back(cpuMs() - c);
        }
        std::sort(wall.begin(), wall.end());
        std::sort(cpu.begin(), cpu.end());
        return Timing { wall[wall.size() / 2], cpu[cpu.size() / 2] };
    };
    int marked = 0;
    const Timing batched
        = timed(7, [&] { marked = int(QslRunReader::read(path, QStringLiteral("T")).marked.size()); });
    const Timing peek
        = timed(7, [&] { QslRunReader::read(path, QStringLiteral("T"), QslRunReader::Mode::Peek); });
    // The reference stores the first 101 letters and is scaled to the run: each costs a sync.
    constexpr int ReferenceRows = 101;
    const double oneByOne
        = timed(1,
              [&] {
                  Recordset rs(path);
                  rs.open(SqlText::qslRun(QStringLiteral("T")));
                  for (bool ok = rs.first(); ok && rs.position() < ReferenceRows; ok = rs.next()) {
                      rs.setValue(QStringLiteral("qsl"), QslText::nextStatus(rs.text(QStringLiteral("qsl"))));
                      rs.update();
                  }
              })
              .wallMs
        * 1001.0 / ReferenceRows;
    char label[128];
    std::snprintf(label, sizeof label, "QSL print run: read and mark %d contacts", marked);
    row(label, batched.wallMs, "target < 100 ms");
    row("  the same, CPU time", batched.cpuMs, "");
    row("  reading alone (print preview)", peek.wallMs, "");
    row("  reading alone, CPU time", peek.cpuMs, "");
    std::printf(
        "  %-58s %9.2f x\n", "  read and mark against reading alone (CPU time)", batched.cpuMs / peek.cpuMs);
    row("  reference: each letter on its own connection (101, scaled)", oneByOne, "");
    std::printf("  %-58s %9.0f x\n", "  the reference against the print run", oneByOne / batched.wallMs);
}

// Import into a new database; `withDxcc` false empties its prefix list first.
Timing importMs(const QString& path, const QByteArray& adif, bool withDxcc, int* imported)
{
    DatabaseFile::create(path);
    if (!withDxcc)
        DbConnection(path).exec(QStringLiteral("DELETE FROM dxccdata"));
    const ImportLocator locate(QStringLiteral("JN48OW")); // the own locator
    QElapsedTimer t;
    t.start();
    const double cpu = cpuMs();
    AdifImport import(path, locate);
    for (AdifImport::State s = import.startData(adif, QStringLiteral("bench.adi"));
         s == AdifImport::State::Running;)
        s = import.step(50'000'000);
    *imported = import.imported();
    return { double(t.nsecsElapsed()) / 1e6, cpuMs() - cpu };
}

// The reference for the import: the rows it stored, inserted into a new log through one
// prepared statement in one transaction, by SQLite's C API alone (no reading, mapping or lookup).
Timing plainInsertMs(const QString& from, const QString& path)
{
    const QString columns = AdifContact::columns().join(QStringLiteral(", "));
    std::vector<std::vector<sqlite3_value*>> rows;
    {
        DbConnection source(from);
        sqlite3_stmt* read = nullptr;
        const QByteArray sql = QStringLiteral("SELECT %1 FROM logtab").arg(columns).toUtf8();
        sqlite3_prepare_v2(source.handle(), sql.constData(), int(sql.size()), &read, nullptr);
        while (read && sqlite3_step(read) == SQLITE_ROW) {
            rows.emplace_back();
            for (int i = 0; i < sqlite3_column_count(read); ++i)
                rows.back().push_back(sqlite3_value_dup(sqlite3_column_value(read, i)));
        }
        sqlite3_finalize(read);
    }
    DatabaseFile::create(path);
    QElapsedTimer t;
    t.start();
    const double cpu = cpuMs();
    {
        DbConnection c(path);
        c.begin();
        QStringList marks;
        for (qsizetype i = 0; i < AdifContact::columns().size(); ++i)
            marks << QStringLiteral("?");
        const QByteArray sql = QStringLiteral("INSERT INTO logtab (%1) VALUES (%2)")
                                   .arg(columns, marks.join(QStringLiteral(", ")))
                                   .toUtf8();
        sqlite3_stmt* insert = nullptr;
        sqlite3_prepare_v2(c.handle(), sql.constData(), int(sql.size()), &insert, nullptr);
        for (const auto& row : rows) {
            for (std::size_t i = 0; i < row.size(); ++i)
                sqlite3_bind_value(insert, int(i + 1), row[i]);
            if (sqlite3_step(insert) != SQLITE_DONE)
                std::printf("plain insert failed: %s\n", sqlite3_errmsg(c.handle()));
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        c.commit();
    }
    const Timing out { double(t.nsecsElapsed()) / 1e6, cpuMs() - cpu };
    for (const auto& row : rows)
        std::for_each(row.begin(), row.end(), sqlite3_value_free);
    return out;
}

// Three rounds of the import and its two references side by side, medians of each: the speed
// of a shared machine changes by half within minutes, and the ratios stay.
void benchAdifImport(const QString& dir, int records)
{
    const QByteArray adif = generateAdif(records);
    int withLookup = 0;
    int without = 0;
    std::vector<Timing> ms;
    std::vector<Timing> reference;
    std::vector<Timing> plain;
    for (int round = 0; round < 3; ++round) {
        const QString name = dir + QStringLiteral("/import-%1").arg(round);
        ms.push_back(importMs(name + QStringLiteral(".db"), adif, true, &withLookup));
        reference.push_back(importMs(name + QStringLiteral("-ref.db"), adif, false, &without));
        plain.push_back(plainInsertMs(name + QStringLiteral(".db"), name + QStringLiteral("-plain.db")));
    }
    auto median = [](std::vector<Timing> t, double Timing::*field) {
        std::sort(t.begin(), t.end(), [field](const Timing& a, const Timing& b) { return a.*field < b.*field; });
        return t[t.size() / 2].*field;
    };
    const double wall = median(ms, &Timing::wallMs);
    const double cpu = median(ms, &Timing::cpuMs);
    const double plainWall = median(plain, &Timing::wallMs);
    std::printf("\n");
    char label[128];
    std::snprintf(
        label, sizeof label, "ADIF import, %d records, DXCC lookup each (%d in)", records, withLookup);
    row(label, wall, "target < 2000 ms");
    std::printf("  %-58s %s\n", "  its three runs (median above, as for every figure here)",
        qPrintable(QStringLiteral("%1 / %2 / %3 ms")
                       .arg(ms[0].wallMs, 0, 'f', 0)
                       .arg(ms[1].wallMs, 0, 'f', 0)
                       .arg(ms[2].wallMs, 0, 'f', 0)));
    row("  of it CPU time of this process", cpu, "");
    std::snprintf(label, sizeof label, "  reference: the same import, empty prefix list (%d in)", without);
    row(label, median(reference, &Timing::wallMs), "");
    row("  of it CPU time of this process", median(reference, &Timing::cpuMs), "");
    std::printf("  %-58s %9.2f x\n", "  import against the reference (CPU time)",
        cpu / median(reference, &Timing::cpuMs));
    row("  reference: plain SQLite insert of the same rows", plainWall, "");
    row("  of it CPU time of this process", median(plain, &Timing::cpuMs), "");
    std::printf("  %-58s %9.2f x\n", "  import against the plain insert (wall time)", wall / plainWall);
    std::printf("  %-58s %9.2f x\n", "  import against the plain insert (CPU time)",
        cpu / median(plain, &Timing::cpuMs));
}

void benchDxccBulk(const QString& path)
{
    QStringList calls;
    QFile scp(QStringLiteral("/usr/share/hamradio-files/MASTER.SCP"));
    if (scp.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : scp.readAll().split('\n')) {
            if (!line.isEmpty() && !line.startsWith('#'))
                calls << QString::fromLatin1(line.trimmed());
        }
    }
    if (calls.isEmpty()) {
        std::printf("  MASTER.SCP not found: no bulk DXCC figures\n");
        return;
    }
    QElapsedTimer t;
    t.start();
    DxccIndex index;
    index.load(path);
    const double loadMs = double(t.nsecsElapsed()) / 1e6;
    t.restart();
    int found = 0;
    for (const QString& c : calls)
        found += index.find(c).found;
    const double bulkUs = double(t.nsecsElapsed()) / 1e3 / calls.size();
    // The window's lookup for every 100th call: normalising query, SQL text, one connection each.
    const int step = 100;
    t.restart();
    int sampled = 0;
    for (int i = 0; i < calls.size(); i += step, ++sampled)
        (void)DxccLookup::lookup(path, calls[i]);
    const double sqlUs = double(t.nsecsElapsed()) / 1e3 / sampled;
    std::printf("\n");
    row("DXCC index: loading dxccdata", loadMs, "");
    std::printf("  %-58s %9.3f us   target < 10 us\n",
        qPrintable(QStringLiteral("DXCC index: bulk lookup per call (%1 MASTER.SCP calls, %2 found)")
                       .arg(calls.size())
                       .arg(found)),
        bulkUs);
    std::printf("  %-58s %9.3f us\n",
        qPrintable(QStringLiteral("  reference: SQL-text lookup per call (%1 of them)").arg(sampled)), sqlUs);
    std::printf("  %-58s %9.0f x\n", "  SQL-text lookup against the index", sqlUs / bulkUs);
}

// One backend's figures for the side-by-side table.
struct Figures {
    double list = 0;
    double search = 0;
    double save = 0;
    Timing import {};
    int listed = 0;
    int found = 0;
    int imported = 0;
};

Figures measure(const QString& log, const QString& importTarget, const QByteArray& adif)
{
    Figures f;
    // The log list over the whole log, every field of every row read.
    f.list = medianMs(5, [&] {
        Recordset rs(log);
        rs.open(SqlText::LogList);
        f.listed = rs.recordCount();
        qsizetype chars = 0;
        for (int r = 0; r < f.listed; ++r) {
            for (int c = 0; c < rs.fieldCount(); ++c)
                chars += rs.valueAt(r, c).toString().size();
        }
        if (chars == 0)
            std::printf("the list read nothing\n");
    });
    const char* const prefixes[] = { "DL", "OK1", "G4", "HB9", "SP", "ON4", "PA", "JA1", "VK", "OE" };
    int i = 0; // both backends search the same prefixes in the same order
    f.search = medianMs(21, [&] {
        Recordset rs(log);
        rs.open(SqlText::searchByCallsign(QString::fromLatin1(prefixes[i++ % 10])));
        f.found = rs.recordCount();
        rs.last();
    });
    // A new call each time: on a server the same contact twice is refused as a dupe.
    QList<SavedField> contact
        = { { "Date", "2026-11-23" }, { "GMT", "18:04" }, { "Callsign", "DL1ABC" }, { "Grid", "JO62QM" },
              { "rsts", "59" }, { "rstr", "57" }, { "Band", "144" }, { "mode", "SSB" }, { "Nam", "Hans" },
              { "Comment", "tnx" }, { "QSL", "Q" }, { "Prop", "Tr" }, { "DXCC", "Germany" }, { "QRB", 512.0 },
              { "QTF", 87.0 }, { "GEdata", "Log: DL1ABC 144 kHz" }, { "GEgridXY", "13.375,52.5" } };
    int saved = 0;
    f.save = medianMs(51, [&] {
        contact[2].value = QStringLiteral("DL%1ABC").arg(saved++);
        if (const DbError e = ContactSave::save(log, contact))
            std::printf("save failed: %s\n", qPrintable(e.text()));
    });
    f.import = importMs(importTarget, adif, true, &f.imported);
    return f;
}

QString loadAverage()
{
    QFile f(QStringLiteral("/proc/loadavg"));
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()).section(QLatin1Char(' '), 0, 2)
                                       : QStringLiteral("?");
}

// The same generated log in a file and on a PostgreSQL server started here (127.0.0.1, a
// temporary folder), copied there with LogCopy; each figure on both, the server's against the file's.
void benchServer(const QString& dir, int contacts)
{
    std::printf("\nThe same log on a PostgreSQL server (started by the bench) beside SQLite\n");
    const QString before = loadAverage();
    PgServer server;
    QString error;
    if (!server.start(&error)) {
        std::printf("  no PostgreSQL server: %s\n", qPrintable(error));
        return;
    }
    qunsetenv("PGPASSWORD");
    qputenv("PGPASSFILE", server.passFile().toLocal8Bit());
    const QString file = dir + QStringLiteral("/server-side.db");
    DatabaseFile::create(file);
    generateLog(file, contacts);
    DatabaseFile::checkpoint(file);
    const QString log = server.createDatabase(QStringLiteral("club"), &error);
    QElapsedTimer t;
    t.start();
    const LogCopy::Result copied = LogCopy::run(file, log);
    if (copied.error) {
        std::printf("  the copy failed: %s\n", qPrintable(copied.error.text()));
        return;
    }
    row("copy of the log to the server (kestrel-log copy)", double(t.nsecsElapsed()) / 1e6, "");
    for (const QString& line : copied.report())
        std::printf("    %s\n", qPrintable(line));
    const QByteArray adif = generateAdif(contacts);
    const Figures lite = measure(file, dir + QStringLiteral("/server-side-import.db"), adif);
    const Figures pg = measure(log, server.createDatabase(QStringLiteral("import"), &error), adif);
    std::printf("\n  %-46s %12s %12s %8s\n", "", "SQLite ms", "PostgreSQL ms", "ratio");
    auto line = [](const QString& what, double a, double b) {
        std::printf("  %-46s %12.3f %12.3f %7.2fx\n", qPrintable(what), a, b, b / a);
    };
    line(QStringLiteral("log list, whole log, every row read (%1)").arg(lite.listed), lite.list, pg.list);
    line(QStringLiteral("callsign-prefix search (median of 21)"), lite.search, pg.search);
    line(QStringLiteral("saving one contact, ContactSave (median of 51)"), lite.save, pg.save);
    line(QStringLiteral("ADIF import, %1 records (%2 / %3 in)")
             .arg(contacts)
             .arg(lite.imported)
             .arg(pg.imported),
        lite.import.wallMs, pg.import.wallMs);
    line(QStringLiteral("  of it CPU time of this process"), lite.import.cpuMs, pg.import.cpuMs);
    if (lite.listed != pg.listed)
        std::printf("  the lists differ: %d rows against %d\n", lite.listed, pg.listed);
    std::printf("  load average (1, 5, 15 min) before: %s, after: %s, on %d cores\n", qPrintable(before),
        qPrintable(loadAverage()), QThread::idealThreadCount());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    // "bench_logbook import [N [DIR]]" runs the ADIF import alone, e.g. under callgrind with fewer
    // records; with DIR the imported databases are left there to compare.
    if (argc >= 2 && qstrcmp(argv[1], "import") == 0) {
        benchAdifImport(argc >= 4 ? QString::fromLocal8Bit(argv[3]) : dir.path(),
            argc >= 3 ? std::max(1, std::atoi(argv[2])) : 100000);
        return 0;
    }
    const QString path = dir.filePath(QStringLiteral("backup.db"));
    const int contacts = 100000;
    if (argc >= 2 && qstrcmp(argv[1], "server") == 0) {
        benchServer(dir.path(), argc >= 3 ? std::max(1, std::atoi(argv[2])) : contacts);
        return 0;
    }
    // "bench_logbook qsl" runs the QSL print run alone on the generated log (for callgrind).
    if (argc >= 2 && qstrcmp(argv[1], "qsl") == 0) {
        if (!DatabaseFile::create(path))
            return 1;
        generateLog(path, contacts);
        DatabaseFile::checkpoint(path);
        readAndMark(path);
        return 0;
    }

    std::printf("Logbook database, %d generated contacts over 21 bands (SQLite, WAL)\n\n", contacts);
    QElapsedTimer t;
    t.start();
    DbError error;
    if (!DatabaseFile::create(path, &error)) {
        std::printf("cannot create the database: %s\n", qPrintable(error.text()));
        return 1;
    }
    row("new database file with schema and seed data", double(t.nsecsElapsed()) / 1e6, "");
    t.restart();
    generateLog(path, contacts);
    DatabaseFile::checkpoint(path); // as the program's start does
    row("generating and storing the log (one transaction)", double(t.nsecsElapsed()) / 1e6, "");
    std::printf("\n");

    // Log list: SELECT * FROM logtab, sort "date  desc ", filter " band like '144%'".
    int listed = 0;
    const double list = medianMs(21, [&] {
        static int b = 0;
        Recordset rs(path);
        rs.open(SqlText::LogList);
        rs.setSort(SqlText::LogListSort);
        rs.setFilter(SqlText::logListFilter(QString::fromLatin1(BandPatterns[(b++ % 20) + 1])));
        listed = rs.recordCount();
        rs.first();
        (void)rs.text(QStringLiteral("Callsign"));
    });
    char label[128];
    std::snprintf(label, sizeof label, "log list, band filter and sort (~%d rows)", listed);
    row(label, list, "target < 50 ms");

    const double reference = medianMs(21, [&] {
        static int b = 0;
        DbConnection c(path);
        QSqlQuery q(c.database());
        q.setForwardOnly(true);
        Recordset shape(path);
        shape.setFilter(SqlText::logListFilter(QString::fromLatin1(BandPatterns[(b++ % 20) + 1])));
        shape.setSort(SqlText::LogListSort);
        shape.open(SqlText::LogList);
        q.exec(shape.plainSql());
        std::vector<QVariant> cells;
        while (q.next()) {
            const int n = q.record().count();
            for (int i = 0; i < n; ++i)
                cells.push_back(q.value(i));
        }
    });
    std::snprintf(label, sizeof label, "  reference: the same rows as QVariants via QSqlQuery");
    row(label, reference, "");
    std::printf("  %-58s %9.2f x\n", "  list load against the reference", list / reference);

    int found = 0;
    const double search = medianMs(21, [&] {
        static int i = 0;
        const QString prefix
            = QString::fromLatin1(Prefixes[i++ % 40]) + QString::number(i % 10) + QLatin1Char('A');
        Recordset rs(path);
        rs.open(SqlText::searchByCallsign(prefix));
        found = rs.recordCount();
    });
    std::snprintf(label, sizeof label, "callsign-prefix search, e.g. \"DL1A\" (~%d rows)", found);
    row(label, search, "target < 20 ms");

    const double searchBand = medianMs(21, [&] {
        Recordset rs(path);
        rs.setFilter(SqlText::logListFilter(QStringLiteral("144%")));
        rs.open(SqlText::searchByCallsign(QStringLiteral("DL")));
        found = rs.recordCount();
    });
    std::snprintf(label, sizeof label, "callsign-prefix search \"DL\" on 144 MHz (%d rows)", found);
    row(label, searchBand, "target < 20 ms");

    const QStringList calls = { QStringLiteral("DL1ABC"), QStringLiteral("KH6ABC"), QStringLiteral("VK9XX"),
        QStringLiteral("EA8ZZ"), QStringLiteral("JA1XYZ"), QStringLiteral("ZL2AB"), QStringLiteral("4U1UN"),
        QStringLiteral("OH0XX"), QStringLiteral("W1AW") };
    QString entity;
    const double dxcc = medianMs(201, [&] {
        static int i = 0;
        Recordset rs(path);
        rs.open(SqlText::dxccLookup(calls[i++ % calls.size()]));
        entity = rs.text(2);
        for (bool more = !rs.atEnd(); more; more = rs.next()) {
            const QString code = rs.text(1);
            if (code.endsWith(QLatin1Char('*'))) {
                rs.setValue(1, code.left(code.size() - 1) + QLatin1Char('%'));
                rs.update();
            }
        }
    });
    row("DXCC lookup of one callsign (whole lookup procedure)", dxcc, "target < 2 ms");

    const double save = medianMs(51, [&] {
        Recordset rs(path);
        rs.open(SqlText::LogList);
        rs.addNew();
        const QStringList names = { QStringLiteral("Date"), QStringLiteral("GMT"), QStringLiteral("Callsign"),
            QStringLiteral("Grid"), QStringLiteral("rsts"), QStringLiteral("rstr"), QStringLiteral("Band"),
            QStringLiteral("mode"), QStringLiteral("Nam"), QStringLiteral("Comment"), QStringLiteral("QSL"),
            QStringLiteral("Prop"), QStringLiteral("DXCC"), QStringLiteral("GEdata"),
            QStringLiteral("GEgridXY") };
        for (const QString& n : names)
            rs.setValue(n, QStringLiteral("x"));
        rs.setValue(QStringLiteral("QRB"), 512.0);
        rs.setValue(QStringLiteral("QTF"), 87.0);
        if (!rs.update())
            std::printf("save failed: %s\n", qPrintable(rs.errorText()));
    });
    row("saving one contact (open, add new, 17 fields, update)", save, "target < 10 ms");

    // The whole log in one recordset: time and memory. The peak mark is reset first, so the
    // peak below is that of loading the list alone.
    {
        QFile clear(QStringLiteral("/proc/self/clear_refs"));
        if (clear.open(QIODevice::WriteOnly))
            clear.write("5");
    }
    const long rssBefore = statusKb("VmRSS:");
    t.restart();
    Recordset all(path);
    all.open(SqlText::LogList);
    all.setSort(SqlText::LogListSort);
    const int total = all.recordCount();
    const double allMs = double(t.nsecsElapsed()) / 1e6;
    const long rssAfter = statusKb("VmRSS:");
    std::printf("\n");
    std::snprintf(label, sizeof label, "whole log sorted, no filter (%d rows)", total);
    row(label, allMs, "");
    std::printf("  %-58s %9.1f MB\n", "  rows held by the recordset", double(all.memoryUse()) / 1048576.0);
    std::printf("  %-58s %9.1f MB\n", "  process memory growth while it is open",
        double(rssAfter - rssBefore) / 1024.0);
    std::printf("  %-58s %9.1f MB   target < 100 MB\n", "  peak memory growth while loading it",
        double(statusKb("VmHWM:") - rssBefore) / 1024.0);
    all.last();
    std::printf("  %-58s %s\n", "  oldest contact (last row)", qPrintable(all.text(QStringLiteral("Date"))));
    std::printf("  %-58s %s\n", "  DXCC entity found for the last callsign", qPrintable(entity));
    all.close();

    benchDxccBulk(path);
    benchAdifImport(dir.path(), 100000);
    std::printf("\n");
    readAndMark(path);
    benchServer(dir.path(), contacts);
    return 0;
}
