#pragma once
// Rows into a table on the logbook server through one COPY ... FROM STDIN in PostgreSQL's text
// format: a statement per row would cost a round trip each. Runs inside the caller's
// transaction; the data goes to the server in pieces of about a megabyte as rows are added.
#include "logbook/db/DbError.h"

#include <QByteArray>
#include <QStringList>

class DbConnection;

class ServerCopyIn {
public:
    // Starts "COPY table (columns) FROM STDIN"; a failure shows in finish().
    ServerCopyIn(DbConnection& connection, const QString& table, const QStringList& columns);
    ~ServerCopyIn();
    ServerCopyIn(const ServerCopyIn&) = delete;
    ServerCopyIn& operator=(const ServerCopyIn&) = delete;

    // The next value of the current row: NULL, or UTF-8 text (a number in its text form).
    void addNull();
    void add(const QByteArray& text);
    void endRow();
    // Ends the COPY; false with *error set when the server refused it (the whole COPY is void).
    bool finish(DbError* error = nullptr);

private:
    void separate();
    void send();

    DbConnection& c_;
    QByteArray data_;
    bool started_ = false;
    bool ok_ = false;
    bool finished_ = false;
    bool rowStarted_ = false;
    QString state_; // SQLSTATE and message of a refusal
    QString message_;
};
