#pragma once
// The commands of kestrel-log on one logbook database file: import and export ADIF, look up
// DXCC entities, check the file, copy a log to a club server and back. Messages and exit codes
// as command-line tools have them: results on standard output, problems on standard error, 0
// for success, 1 for a failure, 2 for a command line that cannot be understood. A file that is
// not a Kestrel logbook is never written to.
#include <QString>
#include <QStringList>
#include <QTextStream>

class LogTool {
public:
    static constexpr int Ok = 0;
    static constexpr int Failed = 1;
    static constexpr int BadUsage = 2;

    LogTool(QTextStream& out, QTextStream& err);

    // Runs the command line (without the program's name); returns the exit status.
    int run(const QStringList& arguments);

    static QString usage();

private:
    int importAdif(const QString& file);
    int exportAdif(const QString& file, const QString& bandPattern);
    int dxcc(const QStringList& calls);
    int check();
    // The whole log from one file or server to another (never into a log that holds contacts).
    int copy(const QString& from, const QString& to);
    // One band as an EDI contest file, the station from Kestrel.txt and Kestrel.ini here.
    int exportEdi(const QString& file, const QString& band);
    // Makes the database ready for a command (identified, created for an import, brought to the
    // current schema); false with the message written when it cannot serve.
    bool open(bool forWriting);
    int fail(const QString& message);
    int badUsage(const QString& message);

    QTextStream& out_;
    QTextStream& err_;
    QString db_;
};
