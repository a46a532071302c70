#include "hub/HamlibCommands.h"

namespace {
QByteArray report(int code)
{
    return "RPRT " + QByteArray::number(code);
}
} // namespace

const HamlibCommands::Command* HamlibCommands::find(const QString& token) const
{
    for (const Command& c : commands_) {
        if (token.size() > 1 && token.startsWith(u'\\') && QStringView(token).mid(1) == c.longName)
            return &c;
        if (token.size() == 1 && c.shortName != 0 && token[0] == QLatin1Char(c.shortName))
            return &c;
    }
    return nullptr;
}

HamlibCommands::Answer HamlibCommands::answer(const QByteArray& line) const
{
    Answer out;
    const QStringList tokens
        = QString::fromLatin1(line).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < tokens.size() && !out.quit;) {
        QString token = tokens[i++];
        char separator = 0;
        if (token.size() > 1 && QStringLiteral("+;|,").contains(token[0])) {
            separator = token[0] == u'+' ? '\n' : token[0].toLatin1();
            token.remove(0, 1);
        }
        const Command* c = find(token);
        if (!c) {
            // deliberate: rigctld 4.5 stays silent here, which leaves its client waiting
            out.bytes += report(Hamlib::NotImplemented) + '\n';
            break;
        }
        if (tokens.size() - i < c->argumentCount) {
            out.bytes += report(Hamlib::InvalidArgument) + '\n';
            break;
        }
        const QStringList args = tokens.mid(i, c->argumentCount);
        i += c->argumentCount;
        const Result r = c->run(args, separator != 0);
        out.bytes += format(*c, args, r, separator);
        out.quit = r.quit;
    }
    return out;
}

QByteArray HamlibCommands::format(const Command& c, const QStringList& args, const Result& r, char separator)
{
    if (!r.raw.isEmpty())
        return r.raw;
    QByteArray out;
    if (separator == 0) {
        if (c.get && r.code == Hamlib::Ok) {
            for (const auto& v : r.values)
                out += v.second.toLatin1() + '\n';
            return out;
        }
        return report(r.code) + '\n';
    }
    // deliberate: the extended header echoes the arguments as the client wrote them
    out += c.longName.toLatin1() + ':';
    if (!args.isEmpty())
        out += ' ' + args.join(u' ').toLatin1();
    out += separator;
    if (r.code == Hamlib::Ok)
        for (const auto& v : r.values)
            out += v.first.toLatin1() + ": " + v.second.toLatin1() + separator;
    return out + report(r.code) + '\n';
}
