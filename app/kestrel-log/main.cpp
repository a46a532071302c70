// kestrel-log: the logbook database from the command line, for scripts and backups.
#include "app/kestrel-log/LogTool.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Kestrel"));
    // The libraries' log lines are for the window's log; here every outcome is a message of its own.
    QLoggingCategory::setFilterRules(QStringLiteral("kestrel.*=false"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    LogTool tool(out, err);
    return tool.run(app.arguments().mid(1));
}
