#pragma once
// Contacts typed while the logbook server was away: kept in a local journal file until the
// server has them, so that a server restart or a broken network loses nothing. One JSON object
// a line (id, time kept, connection text, the saved fields with their types: NULL, text and
// number stay apart); appends are synced to disk, removals rewrite the file atomically.
// Works with ContactSave, which does the saving.
#include "logbook/db/DbError.h"
#include "logbook/entry/ContactSave.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

struct PendingContact {
    QString id;
    QString connection;
    QDateTime kept; // UTC
    QList<SavedField> fields;
};

// What one flush did.
struct PendingFlush {
    QStringList saved; // ids now in the log, in journal order
    int alreadyInLog = 0; // of those, found there already: their first save had reached the server
    int left = 0; // still waiting for this connection
    DbError error; // why the flush stopped or an entry stayed (ServerGone: try again later)
    QStringList damaged; // reports of journal lines that could not be read and were set aside
};

class PendingContacts {
public:
    explicit PendingContacts(const QString& path = defaultPath());

    // pending-contacts.jsonl in the user's application-data folder.
    static QString defaultPath();
    const QString& path() const { return path_; }
    // Where lines that cannot be read go, byte for byte.
    QString damagedPath() const { return path_ + QStringLiteral(".damaged"); }

    // Adds a contact at the end, on disk before it returns; its id, or empty with *error set.
    QString append(const QString& connection, const QList<SavedField>& fields, QString* error = nullptr);
    // Puts new fields into a waiting contact (the operator corrected it); false when it is no
    // longer waiting or the file could not be written.
    bool replace(const QString& id, const QList<SavedField>& fields, QString* error = nullptr);
    // The waiting contacts, oldest first. A line that cannot be read is moved to damagedPath()
    // and reported in *damaged.
    QList<PendingContact> entries(QStringList* damaged = nullptr);
    int count(const QString& connection);

    // Saves the contacts waiting for `connection` in order; they are taken out of the journal
    // only once their saves have committed. One already in the log (same Callsign in any case, Date, GMT,
    // Band and mode) is not saved twice. Stops at the first ServerGone; a contact the server
    // refuses for another reason stays and the rest go on.
    PendingFlush flush(const QString& connection);

    // Whether two field lists name the same contact: Callsign in any case, Date, GMT, Band, mode.
    static bool sameContact(const QList<SavedField>& a, const QList<SavedField>& b);
    // Whether the log holds a contact with the fields' key; false with *error set when it cannot tell.
    static bool inLog(const QString& connection, const QList<SavedField>& fields, DbError* error);

private:
    // Under the journal's lock: the readable entries with their lines; unreadable lines go aside.
    QList<PendingContact> read(QList<QByteArray>* lines, QStringList* damaged);
    bool rewrite(const QList<QByteArray>& lines, QString* error);
    bool remove(const QStringList& ids, QString* error);

    QString path_;
};
