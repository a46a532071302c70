// pg_fixture start DIR | stop DIR: one PostgreSQL server for a whole ctest run (the pgserver
// fixture). start leaves it running and writes DIR/uri and DIR/pgpass for TestDatabase, and
// DIR/server (its folder) for stop.
#include "tests/support/PgServer.h"
#include "tests/support/TestDatabase.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

namespace {

QString serverFolder(const QString& dir)
{
    QFile f(QDir(dir).filePath(QStringLiteral("server")));
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()).trimmed() : QString();
}

bool stopServer(const QString& dir)
{
    const QString folder = serverFolder(dir);
    for (const char* name : { "server", "uri", "pgpass" })
        QFile::remove(QDir(dir).filePath(QLatin1String(name)));
    if (folder.isEmpty() || !QDir(folder).exists())
        return true;
    PgServer server(folder); // owned again: its folder goes with it
    return server.stop();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 3 || (args[1] != QLatin1String("start") && args[1] != QLatin1String("stop"))) {
        std::fprintf(stderr, "usage: pg_fixture start|stop DIR\n");
        return 2;
    }
    const QString dir = args[2];
    if (args[1] == QLatin1String("stop")) {
        QElapsedTimer t;
        t.start();
        const bool ok = stopServer(dir);
        std::printf("pg_fixture: server stopped in %lld ms\n", t.elapsed());
        return ok ? 0 : 1;
    }
    stopServer(dir); // one an interrupted run left behind
    QElapsedTimer t;
    t.start();
    PgServer server(PgServer::Lifetime::Detached);
    QString error;
    if (!server.start(&error) || !TestDatabase::publish(server, dir, &error)) {
        std::fprintf(stderr, "pg_fixture: %s\n", qPrintable(error));
        server.stop();
        QDir(server.folder()).removeRecursively();
        return 1;
    }
    QFile folder(QDir(dir).filePath(QStringLiteral("server")));
    if (!folder.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || folder.write(server.folder().toUtf8()) <= 0) {
        std::fprintf(stderr, "pg_fixture: cannot write %s\n", qPrintable(folder.fileName()));
        return 1;
    }
    std::printf("pg_fixture: %s up in %lld ms\n", qPrintable(server.uri(QString())), t.elapsed());
    return 0;
}
