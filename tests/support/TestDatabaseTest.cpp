#include "tests/support/TestDatabase.h"
#include "tests/support/PgServer.h"
#include "tests/support/PgSession.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TEST(TestDatabaseTest, TheFileStaysWithoutAServer)
{
    const QByteArray saved = qgetenv("KESTREL_TEST_PG");
    qunsetenv("KESTREL_TEST_PG");
    EXPECT_EQ(TestDatabase::connectionFor("/logs/backup.db"), "/logs/backup.db");
    if (!saved.isEmpty())
        qputenv("KESTREL_TEST_PG", saved);
}

// Run plainly it makes a server and publishes it as the fixture would; run as .pg it takes the
// pgserver fixture's.
TEST(TestDatabaseTest, EveryCallGetsAFreshEmptyDatabase)
{
    TempDir tmp;
    std::unique_ptr<PgServer> own;
    if (TestDatabase::fixtureDir().isEmpty()) {
        own = std::make_unique<PgServer>();
        QString error;
        ASSERT_TRUE(own->start(&error)) << error.toStdString();
        ASSERT_TRUE(TestDatabase::publish(*own, tmp.file("fixture"), &error)) << error.toStdString();
        qputenv("KESTREL_TEST_PG", tmp.file("fixture").toLocal8Bit());
        qunsetenv("PGPASSFILE");
    }
    const QString first = TestDatabase::connectionFor("backup.db");
    const QString second = TestDatabase::connectionFor("backup.db");
    EXPECT_NE(first, second);
    for (const QString& uri : { first, second }) {
        SCOPED_TRACE(uri.toStdString());
        EXPECT_TRUE(uri.startsWith("postgresql://kestrel@127.0.0.1:"));
        PgSession db(uri);
        ASSERT_TRUE(db.opened()) << db.error().toStdString();
        EXPECT_EQ(db.value("SELECT count(*) FROM pg_tables WHERE schemaname = 'public'").toInt(), 0);
        EXPECT_TRUE(db.exec("CREATE TABLE logtab (callsign text)"));
    }
    if (own)
        qunsetenv("KESTREL_TEST_PG");
}

} // namespace
