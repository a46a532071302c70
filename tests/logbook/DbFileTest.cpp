// Where the database file lives, how a missing one is made, and bad files: each gives a clear
// message and nothing stored is lost.
#include "DbTestSupport.h"
#include "core/Station.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/db/SchemaUpgrade.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <sqlite3.h>

namespace {

const QString OneContact = QStringLiteral("INSERT INTO logtab (Callsign, QSL) VALUES ('DL1ABC', 'Y')");

class DbFile : public ::testing::Test {
protected:
    DatabaseFile::Places places(const QString& configured = QString())
    {
        QDir(tmp.path()).mkpath(QStringLiteral("prog"));
        return { tmp.file(QStringLiteral("prog")), tmp.file(QStringLiteral("appdata")), configured };
    }
    // A database of one contact, configured as the file to use.
    QString oneContactFile()
    {
        const QString file = tmp.file(QStringLiteral("backup.db"));
        EXPECT_TRUE(DatabaseFile::create(file));
        EXPECT_TRUE(execAll(file, { OneContact }));
        return file;
    }

    TempDir tmp;
    RecordingPrompts prompts;
    Station station { prompts };
};

TEST_F(DbFile, ResolvesToAppDataUnlessALogIsBesideTheProgramOrTheIniFileNamesOne)
{
    DatabaseFile::Places p = places();
    EXPECT_EQ(DatabaseFile::resolve(p), QDir(p.appDataDir).filePath(QStringLiteral("backup.db")));
    QFile log(QDir(p.programDir).filePath(QStringLiteral("backup.db")));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.close();
    EXPECT_EQ(DatabaseFile::resolve(p), log.fileName());
    QFile::setPermissions(p.programDir, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(DatabaseFile::resolve(p), QDir(p.appDataDir).filePath(QStringLiteral("backup.db")));
    p.configured = tmp.file(QStringLiteral("mylog.db"));
    EXPECT_EQ(DatabaseFile::resolve(p), p.configured);
    QFile::setPermissions(
        p.programDir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(DbFile, ConnectCreatesAMissingFileInTheCurrentSchemaWithSeedData)
{
    const DbError e = DatabaseFile::connect(station, places());
    EXPECT_FALSE(e) << e.text().toStdString();
    EXPECT_TRUE(prompts.shown.isEmpty());
    EXPECT_EQ(station.dbConnection, tmp.file(QStringLiteral("appdata/backup.db")));
    EXPECT_FALSE(QFile::exists(station.dbConnection + QStringLiteral(".new")));
    {
        DbConnection c(station.dbConnection);
        QSqlQuery q(c.database());
        ASSERT_TRUE(q.exec(QStringLiteral("PRAGMA journal_mode")) && q.next());
        EXPECT_EQ(q.value(0).toString(), "wal");
    }
    // A second start finds it and leaves it as it is.
    ASSERT_TRUE(execAll(station.dbConnection, { OneContact }));
    EXPECT_FALSE(DatabaseFile::connect(station, places()));
    Recordset log(station.dbConnection);
    ASSERT_TRUE(log.open(SqlText::LogList));
    EXPECT_EQ(log.recordCount(), 1);
}

TEST_F(DbFile, IniFileInAMissingFolderGivesAMessage)
{
    const QString file = tmp.file(QStringLiteral("nowhere/log.db"));
    ASSERT_TRUE(DatabaseFile::connect(station, places(file)));
    EXPECT_EQ(prompts.shown,
        QStringList {
            "The folder of the database file does not exist: " + tmp.file(QStringLiteral("nowhere")) });
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(DbFile, ZeroLengthFileIsReportedAndLeftAlone)
{
    const QString file = tmp.file(QStringLiteral("empty.db"));
    tmp.write(QStringLiteral("empty.db"), QByteArray());
    ASSERT_TRUE(DatabaseFile::connect(station, places(file)));
    EXPECT_EQ(prompts.shown.size(), 1);
    EXPECT_TRUE(prompts.shown.value(0).startsWith("The database file is empty (0 bytes)"));
    EXPECT_EQ(QFile(file).size(), 0);
    Recordset rs(file);
    EXPECT_FALSE(rs.open(SqlText::LogList));
    EXPECT_TRUE(rs.errorText().contains("no such table: logtab")) << rs.errorText().toStdString();
}

TEST_F(DbFile, TextFileIsNoDatabaseAndKeepsItsContents)
{
    const QByteArray text = "Kestrel was here\nnot a database\n";
    tmp.write(QStringLiteral("backup.db"), text);
    const QString file = tmp.file(QStringLiteral("backup.db"));
    const DbError e = DatabaseFile::connect(station, places(file));
    EXPECT_EQ(e.number, 26);
    EXPECT_EQ(prompts.shown.value(0),
        QStringLiteral("The file is not a logbook database: %1 (it is no SQLite file). It was left as it is.")
            .arg(file));
    Recordset rs(file);
    EXPECT_FALSE(rs.open(SqlText::LogList));
    EXPECT_TRUE(rs.errorText().contains("is not a logbook database")) << rs.errorText().toStdString();
    EXPECT_FALSE(rs.addNew());
    EXPECT_EQ(tmp.read(QStringLiteral("backup.db")), text);
}

TEST_F(DbFile, ReadOnlyFileCanBeReadButNotChanged)
{
    const QString file = oneContactFile();
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::ReadGroup);
    ASSERT_TRUE(DatabaseFile::connect(station, places(file)));
    EXPECT_TRUE(prompts.shown.value(0).startsWith("The database file is read-only: "));

    Recordset rs(file);
    ASSERT_TRUE(rs.open(SqlText::LogList)) << rs.errorText().toStdString();
    EXPECT_EQ(rs.text("Callsign"), "DL1ABC");
    ASSERT_TRUE(rs.setValue("QSL", "Q"));
    EXPECT_FALSE(rs.update());
    EXPECT_TRUE(rs.errorText().contains("read-only")) << rs.errorText().toStdString();
    EXPECT_FALSE(rs.deleteCurrent());
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    Recordset again(file);
    ASSERT_TRUE(again.open(SqlText::LogList));
    EXPECT_EQ(again.recordCount(), 1);
    EXPECT_EQ(again.text("QSL"), "Y");
}

TEST_F(DbFile, FileLockedByAnotherWriterGivesAMessageAndTheRowCanBeSavedLater)
{
    const QString file = oneContactFile();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE; INSERT INTO logtab (Callsign) VALUES ('OTHER')", nullptr,
                  nullptr, nullptr),
        SQLITE_OK);

    Recordset rs(file);
    rs.setBusyTimeout(100);
    ASSERT_TRUE(rs.open(SqlText::LogList)) << "reading goes on beside a writer";
    EXPECT_EQ(rs.recordCount(), 1);
    ASSERT_TRUE(rs.addNew());
    rs.setValue("Callsign", "G4ABC");
    EXPECT_FALSE(rs.update());
    EXPECT_EQ(rs.error().number & 0xff, SQLITE_BUSY);
    EXPECT_TRUE(rs.errorText().contains("in use by another program")) << rs.errorText().toStdString();
    EXPECT_TRUE(rs.isEditing()) << "the new row is still there to be saved";

    ASSERT_EQ(sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(other);
    ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    Recordset check(file);
    ASSERT_TRUE(check.open(SqlText::LogList));
    EXPECT_EQ(fieldColumn(check, "Callsign"), (QStringList { "DL1ABC", "OTHER", "G4ABC" }));
}

TEST_F(DbFile, FailingStatementsAndMisuseGiveMessagesNotCrashes)
{
    const QString file = tmp.file(QStringLiteral("backup.db"));
    ASSERT_TRUE(DatabaseFile::create(file));
    Recordset bad(file);
    EXPECT_FALSE(bad.open("select * form logtab"));
    EXPECT_TRUE(bad.errorText().contains("syntax error")) << bad.errorText().toStdString();

    Recordset rs(file);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_FALSE(rs.setFilter(" bnd like '144%'"));
    EXPECT_TRUE(rs.errorText().contains("no such column: bnd")) << rs.errorText().toStdString();
    ASSERT_TRUE(rs.setFilter(QString()));
    EXPECT_FALSE(rs.setValue("Calsign", "X"));
    EXPECT_EQ(rs.error().number, DbErrorNumber::NoSuchField);
    EXPECT_FALSE(rs.deleteCurrent());
    EXPECT_EQ(rs.error().text(),
        "Error 3021 (There is no current record: the recordset is at its start or its end, or the record was "
        "deleted.)");

    for (const char* sql : { "select count(*) from logtab", "select * from logtab, dxccdata" }) {
        Recordset view(file);
        ASSERT_TRUE(view.open(sql));
        EXPECT_FALSE(view.addNew()) << sql;
        EXPECT_EQ(view.error().number, DbErrorNumber::NotUpdatable);
    }
    EXPECT_TRUE(SchemaUpgrade::check(tmp.file("missing.db")).error.description.contains("does not exist"));
}

// Read-only program folders, foreign files and the write-ahead journal: the log the operator
// has is the log shown, and a file that is not ours is never written to.
class DbFileEdges : public DbFile {
protected:
    void TearDown() override
    {
        QFile::setPermissions(tmp.file(QStringLiteral("prog")),
            QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    // A log of one contact beside the program, in a folder then made read-only.
    QString logInReadOnlyProgramFolder()
    {
        const QString file = tmp.file(QStringLiteral("prog/backup.db"));
        places();
        EXPECT_TRUE(DatabaseFile::create(file));
        EXPECT_TRUE(execAll(file, { OneContact }));
        QFile::setPermissions(
            tmp.file(QStringLiteral("prog")), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
        return file;
    }
    QStringList callsigns(const QString& file)
    {
        Recordset rs(file);
        EXPECT_TRUE(rs.open(SqlText::LogList)) << rs.errorText().toStdString();
        return fieldColumn(rs, QStringLiteral("Callsign"));
    }
    QByteArray bytes(const QString& file)
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
};

TEST_F(DbFileEdges, ALogInAReadOnlyProgramFolderIsCopiedOnceAndItsContactsShown)
{
    const QString beside = logInReadOnlyProgramFolder();
    const QByteArray before = bytes(beside);
    const QString copy = tmp.file(QStringLiteral("appdata/backup.db"));

    const DbError e = DatabaseFile::connect(station, places());
    ASSERT_FALSE(e) << e.text().toStdString();
    EXPECT_EQ(station.dbConnection, copy);
    EXPECT_EQ(prompts.shown,
        QStringList {
            QStringLiteral("The log %1 is in a folder where nothing can be saved. It was copied to %2, "
                           "and new contacts are saved there.")
                .arg(beside, copy) });
    EXPECT_EQ(callsigns(station.dbConnection), QStringList { "DL1ABC" });
    EXPECT_EQ(bytes(beside), before) << "the log beside the program is left as it was";

    // The next start uses the copy and says nothing more.
    ASSERT_TRUE(execAll(copy, { "INSERT INTO logtab (Callsign) VALUES ('G4XYZ')" }));
    prompts.shown.clear();
    EXPECT_FALSE(DatabaseFile::connect(station, places()));
    EXPECT_TRUE(prompts.shown.isEmpty());
    EXPECT_EQ(callsigns(station.dbConnection), (QStringList { "DL1ABC", "G4XYZ" }));
}

TEST_F(DbFileEdges, AnUnusableLogInAReadOnlyProgramFolderIsReportedAndNoEmptyLogIsStarted)
{
    places();
    tmp.write(QStringLiteral("prog/backup.db"), "not a database");
    QFile::setPermissions(tmp.file(QStringLiteral("prog")), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_TRUE(DatabaseFile::connect(station, places()));
    EXPECT_EQ(prompts.shown,
        QStringList {
            QStringLiteral("The file is not a logbook database: %1 (it is no SQLite file). It was left "
                           "as it is.")
                .arg(tmp.file(QStringLiteral("prog/backup.db"))) });
    EXPECT_FALSE(QFile::exists(tmp.file(QStringLiteral("appdata/backup.db"))));
}

TEST_F(DbFileEdges, AForeignSqliteFileIsLeftByteForByte)
{
    const QString file = tmp.file(QStringLiteral("other.sqlite"));
    ASSERT_TRUE(execAll(file,
        { "CREATE TABLE notes (id INTEGER PRIMARY KEY, text TEXT)",
            "INSERT INTO notes (text) VALUES ('keep')" },
        true));
    const QByteArray before = bytes(file);
    ASSERT_FALSE(before.isEmpty());

    const DbError e = DatabaseFile::connect(station, places(file));
    EXPECT_EQ(e.number, 26);
    EXPECT_EQ(prompts.shown,
        QStringList { QStringLiteral(
            "The file is not a Kestrel logbook: %1 (it has no table logtab). It was left as it is.")
                          .arg(file) });
    EXPECT_EQ(bytes(file), before);
    EXPECT_FALSE(QFile::exists(file + "-wal"));
    EXPECT_FALSE(QFile::exists(file + "-shm"));
}

TEST_F(DbFileEdges, ACopyOfBackupDbTakenRightAfterASaveHoldsThatContact)
{
    ASSERT_FALSE(DatabaseFile::connect(station, places()));
    for (const char* call : { "DL1ABC", "G4XYZ" }) {
        Recordset rs(station.dbConnection);
        ASSERT_TRUE(rs.open(SqlText::LogList));
        ASSERT_TRUE(rs.addNew());
        rs.setValue("Callsign", QString::fromLatin1(call));
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();

        const QString copy = tmp.file(QStringLiteral("copy-%1.db").arg(QString::fromLatin1(call)));
        ASSERT_TRUE(QFile::copy(station.dbConnection, copy)) << "backup.db alone, without its journal";
        EXPECT_TRUE(callsigns(copy).contains(QString::fromLatin1(call))) << call;
    }
}

TEST_F(DbFileEdges, ACopyOfBackupDbTakenDuringAnImportHoldsWhatItCommitted)
{
    ASSERT_FALSE(DatabaseFile::connect(station, places()));
    QByteArray adif = "<EOH>\n";
    const int records = 2 * AdifImport::CommitEvery + 1;
    for (int i = 0; i < records; ++i)
        adif += "<CALL:8>DL" + QByteArray::number(100000 + i) + " <QSO_DATE:8>20261123 <TIME_ON:4>1800 "
            "<BAND:3>20m <MODE:2>CW <EOR>\n";
    // -1 for a copy that cannot be read: one taken while a checkpoint was writing the file.
    auto rowsInCopy = [&] {
        const QString copy = tmp.file(QStringLiteral("copy.db"));
        for (const char* end : { "", "-wal", "-shm" })
            QFile::remove(copy + end);
        EXPECT_TRUE(QFile::copy(station.dbConnection, copy)) << "backup.db alone, without its journal";
        sqlite3* h = nullptr;
        sqlite3_stmt* count = nullptr;
        int rows = -1;
        if (sqlite3_open(copy.toUtf8().constData(), &h) == SQLITE_OK
            && sqlite3_prepare_v2(h, "SELECT count(*) FROM logtab", -1, &count, nullptr) == SQLITE_OK
            && sqlite3_step(count) == SQLITE_ROW)
            rows = sqlite3_column_int(count, 0);
        sqlite3_finalize(count);
        sqlite3_close(h);
        return rows;
    };

    AdifImport import(station.dbConnection, {});
    AdifImport::State s = import.startData(adif, QStringLiteral("big.adi"));
    while (s == AdifImport::State::Running && import.imported() == 0)
        s = import.step(1'000'000);
    const int committed = import.imported();
    ASSERT_GE(committed, AdifImport::CommitEvery);
    // The first commit reaches the file while the import waits for its next slice.
    QElapsedTimer waited;
    waited.start();
    int inCopy = 0;
    while ((inCopy = rowsInCopy()) < committed && waited.elapsed() < 10'000)
        QThread::msleep(20);
    EXPECT_EQ(inCopy, committed);

    while (s == AdifImport::State::Running)
        s = import.step(50'000'000);
    ASSERT_EQ(s, AdifImport::State::Done) << import.error().text().toStdString();
    EXPECT_EQ(rowsInCopy(), records);
    EXPECT_EQ(QFileInfo(station.dbConnection + "-wal").size(), 0) << "the closing checkpoint was not busy";
}

TEST_F(DbFileEdges, AJournalLeftWithoutItsDatabaseIsMovedAsideNotMerged)
{
    // An old log whose last contact is only in its journal; the log itself is then taken away.
    const QString file = tmp.file(QStringLiteral("prog/backup.db"));
    places();
    ASSERT_TRUE(DatabaseFile::create(file));
    sqlite3* h = nullptr;
    ASSERT_EQ(sqlite3_open(file.toUtf8().constData(), &h), SQLITE_OK);
    sqlite3_db_config(h, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    ASSERT_EQ(sqlite3_exec(h, "PRAGMA wal_autocheckpoint=0; INSERT INTO logtab (Callsign) VALUES ('OLD1AA')",
                  nullptr, nullptr, nullptr),
        SQLITE_OK);
    sqlite3_close(h);
    const QByteArray journal = bytes(file + "-wal");
    ASSERT_FALSE(journal.isEmpty());
    ASSERT_TRUE(QFile::remove(file));

    const DbError e = DatabaseFile::connect(station, places(file));
    ASSERT_FALSE(e) << e.text().toStdString();
    EXPECT_EQ(callsigns(file), QStringList {}) << "the new log starts empty";
    const QStringList aside = QDir(tmp.file(QStringLiteral("prog")))
                                  .entryList({ QStringLiteral("backup.db-wal.unmerged-*") }, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(bytes(tmp.file(QStringLiteral("prog/") + aside[0])), journal);
    ASSERT_EQ(prompts.shown.size(), 1);
    EXPECT_TRUE(prompts.shown[0].startsWith(
        QStringLiteral("A journal without its database lay beside %1; it was moved aside to ").arg(file)))
        << prompts.shown[0].toStdString();
}

} // namespace
