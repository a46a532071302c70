#pragma once
// The contest log behind the EDI goldens and the goldens themselves, with the closing line
// naming this build's version (the files say 0.1).
#include "DbTestSupport.h"

#include <QFile>

inline QByteArray ediGolden(const QString& name)
{
    QFile f(QStringLiteral(KESTREL_GOLDEN_DIR "/edi/") + name);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name.toStdString();
    return f.readAll().replace("[END;Kestrel 0.1]", "[END;Kestrel " KESTREL_VERSION "]");
}

// contest-log.txt as logtab rows: Date;GMT;Callsign;mode;rsts;NrSent;rstr;NrRcvd;Grid;DxccNr;Band.
inline QList<Row> ediContestLog()
{
    const QStringList columns
        = { "Date", "GMT", "Callsign", "mode", "rsts", "NrSent", "rstr", "NrRcvd", "Grid", "DxccNr", "Band" };
    QList<Row> rows;
    for (const QString& line :
        QString::fromLatin1(ediGolden("contest-log.txt")).split('\n', Qt::SkipEmptyParts)) {
        if (line.startsWith('#'))
            continue;
        const QStringList v = line.split(';');
        Row r;
        for (int i = 0; i < columns.size(); ++i)
            r.insert(columns[i], v.value(i));
        rows << r;
    }
    return rows;
}
