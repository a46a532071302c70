#include "tests/support/TestDatabase.h"

#include "tests/support/PgServer.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>

#include <atomic>

QString TestDatabase::fixtureDir()
{
    return qEnvironmentVariable("KESTREL_TEST_PG");
}

QString TestDatabase::connectionFor(const QString& sqliteFile)
{
    const QString dir = fixtureDir();
    if (dir.isEmpty())
        return sqliteFile;
    QFile uriFile(QDir(dir).filePath(QStringLiteral("uri")));
    if (!uriFile.open(QIODevice::ReadOnly))
        qFatal("KESTREL_TEST_PG=%s holds no uri: is the pgserver fixture (pg_fixture start) set up?",
            qPrintable(dir));
    const QString base = QString::fromUtf8(uriFile.readAll()).trimmed();
    if (qEnvironmentVariableIsEmpty("PGPASSFILE"))
        qputenv("PGPASSFILE", QFile::encodeName(QDir(dir).filePath(QStringLiteral("pgpass"))));
    // Unique across the test processes ctest runs at once.
    static std::atomic<int> counter { 0 };
    const QString name = QStringLiteral("kt_%1_%2_%3")
                             .arg(QCoreApplication::applicationPid())
                             .arg(QDateTime::currentMSecsSinceEpoch() % 100000000)
                             .arg(++counter);
    QString error;
    if (!PgServer::execOn(
            base + QStringLiteral("/postgres"), QStringLiteral("CREATE DATABASE %1").arg(name), &error))
        qFatal("cannot create a test database on %s: %s", qPrintable(base), qPrintable(error));
    return base + QLatin1Char('/') + name;
}

bool TestDatabase::publish(const PgServer& server, const QString& dir, QString* error)
{
    QString base = server.uri(QString());
    base.chop(1); // the trailing "/" of the empty database
    QFile uri(QDir(dir).filePath(QStringLiteral("uri")));
    QFile pass(QDir(dir).filePath(QStringLiteral("pgpass")));
    QFile::remove(pass.fileName());
    QFile source(server.passFile());
    const bool ok = QDir().mkpath(dir) && uri.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && uri.write(base.toUtf8() + '\n') > 0 && source.copy(pass.fileName())
        && pass.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (!ok && error)
        *error = QStringLiteral("cannot write the server's uri and pgpass into %1").arg(dir);
    return ok;
}
