#pragma once
// The command grammar Hamlib's rigctld and rotctld speak on their TCP port, as their NET
// clients (rig and rotator model 2) send it: one-letter commands and "\long_name" commands,
// each followed by its arguments, several on a line; a leading '+' asks for the extended
// answer (';', '|' or ',' instead of '+' put that separator between the lines). Pure: a
// table of commands in, answer bytes out.
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>

namespace Hamlib {
// Hamlib's result codes (rig_errcode_e).
constexpr int Ok = 0;
constexpr int InvalidArgument = -1; // RIG_EINVAL
constexpr int NotImplemented = -4; // RIG_ENIMPL
constexpr int IoError = -6; // RIG_EIO
} // namespace Hamlib

class HamlibCommands {
public:
    struct Result {
        int code = Hamlib::Ok;
        // A get's values with their labels in the extended form ("Frequency", "144300000").
        QList<QPair<QString, QString>> values;
        // Printed as it stands in both forms, instead of values and report (\dump_state).
        QByteArray raw;
        bool quit = false; // close the connection after the answer
    };
    using Handler = std::function<Result(const QStringList& args, bool extended)>;

    struct Command {
        char shortName = 0; // 0: only the long name
        QString longName; // without the backslash
        int argumentCount = 0;
        bool get = false; // a get answers its values; a set answers "RPRT n"
        Handler run;
    };

    void add(Command command) { commands_ << std::move(command); }

    struct Answer {
        QByteArray bytes;
        bool quit = false;
    };
    // Every command on the line in turn. An unknown command gets "RPRT -4" and ends the line,
    // since its arguments cannot be told from the next command.
    Answer answer(const QByteArray& line) const;

private:
    const Command* find(const QString& token) const;
    static QByteArray format(const Command& c, const QStringList& args, const Result& r, char separator);

    QList<Command> commands_;
};
