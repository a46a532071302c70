#pragma once
// "Kestrel.txt": the station settings file in the current directory, 47 lines of
// delimited values (quoted text, bare numbers, #TRUE#/#FALSE#, empty lines), CR LF ended.
#include "core/SettingValue.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class Station;

// The file name: DirectoryOf("Kestrel.txt") + "Kestrel.txt", i.e. the bare name.
QString StationConfigPath();

// Part of `path` up to and including its last backslash; empty when there is none.
QString DirectoryOf(const QString& path);

// True only when the file's length can be read and is greater than zero.
bool FileExistsNonEmpty(const QString& path);

// Fills the table from the file, creating it with the new-file defaults when it is missing
// or empty. Unreadable values are replaced by defaults and reported through the prompts, once
// per run for the same fault (every window reloads the file).
void LoadStationConfig(Station& station);

// Writes elements 0 to 46, replacing the file atomically. On failure the operator is told
// and the old file stays whole; returns false then.
bool SaveStationConfig(Station& station);

namespace StationConfig {
SettingValue newFileValue(int index);
SettingValue fillValue(int index);

struct Parsed {
    QList<SettingValue> values; // read up to (not including) the first empty element
    QStringList problems;       // one clear sentence each
};
// Reads delimited values from the file's bytes; stops at the first empty element and at
// the table's end.
Parsed parse(const QByteArray& bytes);
// One value in the file's form: "text", 123, #TRUE#, or nothing for empty.
QByteArray format(const SettingValue& value);
} // namespace StationConfig
