#pragma once
// Check partial: the known active calls (a MASTER.SCP file, one call a line, "#" comments)
// that contain the characters typed so far, to catch a busted call before it is logged.
// A missing or unreadable file leaves the list empty; the window says nothing about it.
#include <QString>
#include <QStringList>

class CheckPartial {
public:
    // Kestrel.ini's `scp/file`, else the file of Debian's hamradio-files.
    static QString defaultPath();

    // False (and no calls) when the file cannot be read.
    bool load(const QString& path);
    qsizetype size() const { return calls_.size(); }

    // The calls containing `typed` (without case), in the file's order, at most `max`; none
    // for fewer than two characters (every call would match).
    QStringList matches(const QString& typed, int max = 40) const;

private:
    QStringList calls_; // upper case
};
