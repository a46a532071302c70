// One operating position for the concurrency tests: saves contacts through the entry line's
// save as told on stdin, one command a line, and answers each on stdout.
//   same CALL           one contact of CALL (fixed date, time, band, mode)
//   many PREFIX COUNT   COUNT contacts PREFIX0, PREFIX1, ... (every key different)
//   notify TEXT         a bare notice on the log's channel (the latency reference)
// Answers: "saved ID", "refused TEXT", "failed TEXT", "many SAVED REFUSED FAILED", "notified".
#include "logbook/db/DatabaseServer.h"
#include "logbook/db/DbConnection.h"
#include "logbook/entry/ContactSave.h"
#include "tests/logbook/PositionContact.h"

#include <QCoreApplication>

#include <iostream>
#include <string>

namespace {
DbError saveOne(const QString& connection, const QString& call, qint64* id)
{
    return ContactSave::save(connection, ContactSave::fields(positionContact(call), MapPosition()), id);
}

void answer(const QString& text)
{
    std::cout << text.toStdString() << std::endl;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: contact_saver CONNECTION" << std::endl;
        return 2;
    }
    const QString connection = QString::fromLocal8Bit(argv[1]);
    {
        DbConnection warm(connection); // the handshake before the first command, kept for the saves
        if (!warm.isOpen()) {
            answer(QStringLiteral("failed ") + warm.error().text());
            return 1;
        }
    }
    answer(QStringLiteral("ready"));
    for (std::string line; std::getline(std::cin, line);) {
        const QStringList words = QString::fromStdString(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const QString command = words.value(0);
        if (command == QLatin1String("same")) {
            qint64 id = 0;
            const DbError e = saveOne(connection, words.value(1), &id);
            answer(!e ? QStringLiteral("saved %1").arg(id)
                      : (e.number == DbErrorNumber::AlreadyLogged ? QStringLiteral("refused ")
                                                                  : QStringLiteral("failed "))
                        + e.description);
        } else if (command == QLatin1String("many")) {
            int saved = 0, refused = 0, failed = 0;
            const int count = words.value(2).toInt();
            for (int i = 0; i < count; ++i) {
                const DbError e = saveOne(connection, words.value(1) + QString::number(i), nullptr);
                (!e ? saved : e.number == DbErrorNumber::AlreadyLogged ? refused : failed)++;
                if (e && e.number != DbErrorNumber::AlreadyLogged)
                    std::cerr << e.text().toStdString() << std::endl;
            }
            answer(QStringLiteral("many %1 %2 %3").arg(saved).arg(refused).arg(failed));
        } else if (command == QLatin1String("notify")) {
            DbConnection c(connection);
            c.exec(QStringLiteral("SELECT pg_notify(?, ?)"),
                { QString::fromLatin1(DatabaseServer::ChangeChannel), words.mid(1).join(QLatin1Char(' ')) });
            answer(QStringLiteral("notified"));
        }
    }
    return 0;
}
