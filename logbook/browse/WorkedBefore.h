#pragma once
// Worked-before while a call is typed: every contact of the log by its call, and the DXCC
// entities and squares worked on each band, read once into memory (a look-up is a hash
// probe, so a keystroke never waits for the database) and kept up to date by add() on each
// save. The entity of a call comes from the in-memory DXCC index.
#include "logbook/browse/DxccIndex.h"
#include "logbook/browse/WorkedContact.h"
#include "logbook/db/DbError.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

struct WorkedCheck {
    QList<WorkedContact> earlier; // contacts with the call, newest first
    bool dupe = false; // one of them on this band
    bool newEntity = false; // the call's entity was never worked on this band
    bool newSquare = false; // the locator's square was never worked on this band
    QString entity;
    QString square;
};

class DbConnection;

class WorkedBefore {
public:
    // Reads logtab (call, date, time, band, mode, locator, QSL, entity) and dxccdata.
    bool load(const QString& connection, DbError* error = nullptr);
    void add(const WorkedContact& contact);
    // Rows saved elsewhere (another position of a server log), read by their IDs; rows known
    // already are left out. How many rows were read; -1 with *error set when the read failed.
    int addRows(const QString& connection, const QList<qint64>& ids, DbError* error = nullptr);
    qsizetype size() const { return contacts_; }

    // The check of a call (without case) on a band text, with the locator when one is known.
    WorkedCheck check(const QString& callsign, const QString& band, const QString& locator = QString());

    // The list the window shows: the flags ("DUPE on 144", "New DXCC on 144: Finland",
    // "New square on 144: KP22"), then one line per earlier contact, at most `maxContacts`:
    // "15.11.2026  144  MSK144  KP22  QSL Y".
    static QStringList lines(const WorkedCheck& check, const QString& band, int maxContacts = 20);

private:
    // Adds the rows of logtab the condition picks (" WHERE ..." or none); how many, or -1.
    int readRows(DbConnection& conn, const QString& where, DbError* error);
    static QString key(const QString& a, const QString& b) { return a + QLatin1Char('|') + b; }

    QHash<QString, QList<WorkedContact>> byCall_; // upper-case call -> its contacts, oldest first
    QSet<QString> entityBands_;
    QSet<QString> squareBands_;
    qsizetype contacts_ = 0;
    QSet<qint64> ids_;
    DxccIndex dxcc_;
};
