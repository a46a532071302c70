#include "tests/support/PgServer.h"

#include "tests/support/PgSession.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <pwd.h>
#include <unistd.h>

namespace {

constexpr int ReadyTimeoutMs = 30000;

// False for a process that is gone or a zombie nobody reaps (a zombie holds no shared memory).
bool processAlive(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (pid <= 0 || !stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = stat.readAll();
    const int close = line.lastIndexOf(')');
    return close > 0 && line.mid(close + 2, 1) != "Z";
}

QList<qint64> childrenOf(qint64 pid)
{
    QList<qint64> out;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& e : entries) {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(e));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 1 && fields[1].toLongLong() == pid)
            out << e.toLongLong();
    }
    return out;
}

int freePort()
{
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost, 0) ? probe.serverPort() : 0;
}

QString serverAccount()
{
    if (geteuid() != 0)
        return {};
    return getpwnam("postgres") ? QStringLiteral("postgres") : QStringLiteral("nobody");
}

} // namespace

PgServer::PgServer(Lifetime lifetime)
    : lifetime_(lifetime)
    , tmp_(std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/kestrel-pg-XXXXXX")))
    , folder_(tmp_->path())
    , bin_(binDir())
    , account_(serverAccount())
{
    tmp_->setAutoRemove(false);
    password_ = QString::number(QRandomGenerator::system()->generate64(), 36)
        + QString::number(QRandomGenerator::system()->generate64(), 36);
}

PgServer::PgServer(const QString& folder)
    : lifetime_(Lifetime::Owned)
    , folder_(folder)
    , bin_(binDir())
    , account_(serverAccount())
{
    readPassFile();
}

PgServer::~PgServer()
{
    if (lifetime_ == Lifetime::Detached)
        return;
    if (isRunning() && !stop())
        kill();
    QDir(folder_).removeRecursively();
}

QString PgServer::binDir()
{
    QProcess config;
    config.start(QStringLiteral("pg_config"), { QStringLiteral("--bindir") });
    if (config.waitForFinished(10000) && config.exitCode() == 0) {
        const QString dir = QString::fromLocal8Bit(config.readAllStandardOutput()).trimmed();
        if (QFile::exists(dir + QStringLiteral("/postgres")))
            return dir;
    }
    // pg_config comes with libpq-dev; the server package alone installs under a versioned folder.
    QDir versions(QStringLiteral("/usr/lib/postgresql"));
    QStringList found = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    std::sort(found.begin(), found.end(),
        [](const QString& a, const QString& b) { return a.toDouble() > b.toDouble(); });
    for (const QString& v : found) {
        const QString dir = versions.filePath(v + QStringLiteral("/bin"));
        if (QFile::exists(dir + QStringLiteral("/postgres")))
            return dir;
    }
    return {};
}

QString PgServer::socketDir() const
{
    return folder_ + QStringLiteral("/s");
}

QString PgServer::passFile() const
{
    return folder_ + QStringLiteral("/pgpass");
}

QString PgServer::logText() const
{
    QFile log(folder_ + QStringLiteral("/server.log"));
    return log.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(log.readAll()) : QString();
}

QString PgServer::uri(const QString& database) const
{
    return QStringLiteral("postgresql://%1@127.0.0.1:%2/%3").arg(user()).arg(port_).arg(database);
}

bool PgServer::start(QString* error)
{
    QString why;
    bool ok = false;
    if (bin_.isEmpty())
        why = QStringLiteral("PostgreSQL server programs not found (neither pg_config --bindir nor "
                             "/usr/lib/postgresql/*/bin): install Debian's postgresql package");
    else if (folder_.isEmpty() || !QDir(folder_).exists())
        why = QStringLiteral("no folder for the server");
    else if (QFile::exists(folder_ + QStringLiteral("/data/PG_VERSION")) || initCluster(&why)) {
        const bool pickPort = port_ == 0;
        for (int attempt = 0; attempt < 3 && !ok; ++attempt) {
            if (pickPort)
                port_ = freePort();
            ok = launch(&why);
            // Another program may take the probed port before the server binds it.
            if (!pickPort || !why.contains(QLatin1String("already in use")))
                break;
        }
    }
    if (ok) {
        QFile pass(passFile());
        ok = pass.open(QIODevice::WriteOnly | QIODevice::Truncate)
            && pass.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
            && pass.write(QStringLiteral("127.0.0.1:%1:*:%2:%3\n").arg(port_).arg(user(), password_).toUtf8())
                > 0;
        if (!ok)
            why = QStringLiteral("cannot write %1").arg(passFile());
    }
    if (error)
        *error = why;
    return ok;
}

bool PgServer::initCluster(QString* error)
{
    const QString pwfile = folder_ + QStringLiteral("/initpw");
    QFile pw(pwfile);
    if (!pw.open(QIODevice::WriteOnly) || pw.write(password_.toUtf8() + '\n') <= 0) {
        *error = QStringLiteral("cannot write %1").arg(pwfile);
        return false;
    }
    pw.close();
    if (!QDir(folder_).mkpath(QStringLiteral("s")) || !giveToAccount(folder_) || !giveToAccount(socketDir())
        || !giveToAccount(pwfile)) {
        *error = QStringLiteral("cannot hand %1 to the account %2").arg(folder_, account_);
        return false;
    }
    QString output;
    const bool ok = runTool(QStringLiteral("initdb"),
        { QStringLiteral("-D"), folder_ + QStringLiteral("/data"), QStringLiteral("-E"),
            QStringLiteral("UTF8"), QStringLiteral("--locale=C.UTF-8"), QStringLiteral("-U"), user(),
            QStringLiteral("--auth-local=trust"), QStringLiteral("--auth-host=scram-sha-256"),
            QStringLiteral("--pwfile=") + pwfile, QStringLiteral("--no-sync") },
        &output);
    QFile::remove(pwfile);
    if (!ok)
        *error = QStringLiteral("initdb failed: ") + output;
    return ok;
}

bool PgServer::launch(QString* error)
{
    // A postmaster killed earlier and never reaped (no init reaps in some containers) still
    // "exists" for the server's own lock-file check.
    const qint64 stale = postmasterPid();
    if (stale > 0 && !processAlive(stale))
        QFile::remove(folder_ + QStringLiteral("/data/postmaster.pid"));

    const QStringList args { QStringLiteral("-D"), folder_ + QStringLiteral("/data"), QStringLiteral("-c"),
        QStringLiteral("listen_addresses=127.0.0.1"), QStringLiteral("-c"),
        QStringLiteral("port=%1").arg(port_), QStringLiteral("-c"),
        QStringLiteral("unix_socket_directories=") + socketDir(), QStringLiteral("-c"),
        QStringLiteral("fsync=off") };
    QString program;
    const QStringList all = asAccount(bin_ + QStringLiteral("/postgres"), args, &program);
    const QString logPath = folder_ + QStringLiteral("/server.log");
    const qint64 logStart = QFileInfo(logPath).size();

    auto process = std::make_unique<QProcess>();
    process->setProgram(program);
    process->setArguments(all);
    process->setWorkingDirectory(folder_);
    process->setStandardOutputFile(logPath, QIODevice::Append);
    process->setStandardErrorFile(logPath, QIODevice::Append);
    qint64 pid = 0;
    if (lifetime_ == Lifetime::Detached) {
        if (!process->startDetached(&pid))
            pid = 0;
    } else {
        process->start();
        if (process->waitForStarted(10000)) {
            pid = process->processId();
            postmaster_ = std::move(process);
        }
    }
    if (pid <= 0) {
        *error = QStringLiteral("cannot start %1").arg(program);
        return false;
    }
    if (waitReady(pid, error))
        return true;
    kill();
    *error += QLatin1Char('\n') + logText().mid(int(logStart)).trimmed();
    return false;
}

bool PgServer::waitReady(qint64 pid, QString* error)
{
    QDeadlineTimer deadline(ReadyTimeoutMs);
    while (!deadline.hasExpired()) {
        if (!processAlive(pid)) {
            *error = QStringLiteral("the server ended at start");
            return false;
        }
        QFile lock(folder_ + QStringLiteral("/data/postmaster.pid"));
        if (lock.open(QIODevice::ReadOnly)) {
            const QList<QByteArray> lines = lock.readAll().split('\n');
            if (lines.size() > 7 && lines[0].toLongLong() == pid && lines[7].trimmed() == "ready")
                return true;
        }
        QThread::msleep(10);
    }
    *error = QStringLiteral("the server was not ready within %1 s").arg(ReadyTimeoutMs / 1000);
    return false;
}

qint64 PgServer::postmasterPid() const
{
    QFile lock(folder_ + QStringLiteral("/data/postmaster.pid"));
    if (!lock.open(QIODevice::ReadOnly))
        return 0;
    return lock.readLine().trimmed().toLongLong();
}

bool PgServer::isRunning() const
{
    if (postmaster_)
        return postmaster_->state() != QProcess::NotRunning;
    return processAlive(postmasterPid());
}

bool PgServer::stop()
{
    if (!isRunning())
        return true;
    QString output;
    const bool ok = runTool(QStringLiteral("pg_ctl"),
        { QStringLiteral("stop"), QStringLiteral("-D"), folder_ + QStringLiteral("/data"),
            QStringLiteral("-m"), QStringLiteral("fast"), QStringLiteral("-w"), QStringLiteral("-t"),
            QStringLiteral("60") },
        &output);
    if (postmaster_) {
        postmaster_->waitForFinished(10000);
        postmaster_.reset();
    }
    return ok;
}

bool PgServer::restart()
{
    return stop() && start();
}

void PgServer::kill()
{
    const qint64 pid = postmaster_ ? postmaster_->processId() : postmasterPid();
    if (pid <= 0)
        return;
    // Children first listed: once the postmaster is gone they belong to init.
    const QList<qint64> children = childrenOf(pid);
    ::kill(pid_t(pid), SIGKILL);
    for (qint64 c : children)
        ::kill(pid_t(c), SIGKILL);
    if (postmaster_) {
        postmaster_->waitForFinished(10000);
        postmaster_.reset();
    }
    // The next start finds the shared memory free only when every old process has ended.
    QDeadlineTimer deadline(10000);
    for (qint64 c : children)
        while (processAlive(c) && !deadline.hasExpired())
            QThread::msleep(5);
}

QString PgServer::createDatabase(const QString& name, QString* error) const
{
    QString quoted = name;
    quoted.replace(QLatin1Char('"'), QLatin1String("\"\""));
    if (!execOn(uri(QStringLiteral("postgres")), QStringLiteral("CREATE DATABASE \"%1\"").arg(quoted), error,
            password_))
        return {};
    return uri(name);
}

bool PgServer::execOn(const QString& uri, const QString& sql, QString* error, const QString& password)
{
    PgSession db(uri, password);
    const bool ok = db.opened() && db.exec(sql);
    if (!ok && error)
        *error = db.error();
    return ok;
}

bool PgServer::runTool(const QString& tool, const QStringList& args, QString* output, int timeoutMs)
{
    QString program;
    const QStringList all = asAccount(bin_ + QLatin1Char('/') + tool, args, &program);
    QProcess p;
    p.setWorkingDirectory(folder_);
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, all);
    const bool ok
        = p.waitForFinished(timeoutMs) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    *output = QString::fromLocal8Bit(p.readAll()).trimmed();
    if (p.error() == QProcess::FailedToStart)
        *output = QStringLiteral("cannot run %1").arg(program);
    return ok;
}

QStringList PgServer::asAccount(const QString& program, const QStringList& args, QString* executable) const
{
    if (account_.isEmpty()) {
        *executable = program;
        return args;
    }
    // setpriv execs the program itself (runuser stays as its parent), so the process we start is
    // the postmaster and ours to reap.
    const passwd* pw = getpwnam(account_.toLocal8Bit().constData());
    *executable = QStringLiteral("setpriv");
    return QStringList { QStringLiteral("--reuid=%1").arg(pw ? pw->pw_uid : 65534),
        QStringLiteral("--regid=%1").arg(pw ? pw->pw_gid : 65534), QStringLiteral("--init-groups"),
        QStringLiteral("--"), program }
    + args;
}

bool PgServer::giveToAccount(const QString& path) const
{
    if (account_.isEmpty())
        return true;
    const passwd* pw = getpwnam(account_.toLocal8Bit().constData());
    return pw && ::chown(QFile::encodeName(path).constData(), pw->pw_uid, pw->pw_gid) == 0;
}

void PgServer::readPassFile()
{
    QFile pass(passFile());
    if (!pass.open(QIODevice::ReadOnly))
        return;
    const QStringList fields = QString::fromUtf8(pass.readLine()).trimmed().split(QLatin1Char(':'));
    if (fields.size() == 5) {
        port_ = fields[1].toInt();
        password_ = fields[4];
    }
}
