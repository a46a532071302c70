#pragma once
// The receiver streams of tests/gps/streams, found by listing the folder: each "*.nmea" file
// opens with "#" lines, one of them "# Order: ..." naming the receiver order it reproduces.
// Its sentences go out with CR LF, or as stored when the header says "Line ends: LF alone".
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace NmeaStreams {

inline QDir folder()
{
    return QDir(QStringLiteral(KESTREL_GPS_STREAMS));
}

// Names without ".nmea", sorted; a test per name.
inline QStringList names()
{
    QStringList out;
    for (const QString& file : folder().entryList({ QStringLiteral("*.nmea") }, QDir::Files, QDir::Name))
        out << file.chopped(5);
    return out;
}

// A test name from a stream name: "gga-first-mtk" -> "gga_first_mtk".
inline std::string testName(const ::testing::TestParamInfo<QString>& info)
{
    std::string name = info.param.toStdString();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

struct Stream {
    QString header;
    QByteArray bytes;
};

inline Stream load(const QString& name)
{
    QFile in(folder().filePath(name + QStringLiteral(".nmea")));
    Stream s;
    if (!in.open(QIODevice::ReadOnly))
        return s;
    QList<QByteArray> sentences;
    for (const QByteArray& line : in.readAll().split('\n')) {
        if (line.startsWith('#'))
            s.header += QString::fromUtf8(line) + u'\n';
        else if (!line.isEmpty())
            sentences << line;
    }
    const QByteArray end = s.header.contains(QStringLiteral("Line ends: LF alone")) ? "\n" : "\r\n";
    for (const QByteArray& line : sentences)
        s.bytes += line + end;
    return s;
}

} // namespace NmeaStreams
