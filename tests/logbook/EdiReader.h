#pragma once
// The tests' own reader of EDI files (REG1TEST;1), written from the format's description and
// sharing nothing with the writer: header lines, remarks, QSO records and the closing line, and
// a check that the header's claims are the sums of the records.
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

struct EdiRecord {
    QString date, time, call, mode, rstSent, nrSent, rstRcvd, nrRcvd, exchange, locator;
    int points = 0;
    QString newExchange, newLocator, newDxcc, dupe;
};

struct EdiFileRead {
    QString first; // "[REG1TEST;1]"
    QMap<QString, QString> header; // key -> value
    QStringList remarks;
    int declared = -1; // N of [QSORecords;N]
    QList<EdiRecord> records;
    QString end; // "[END;...]"
    QStringList faults; // what does not follow the format

    static EdiFileRead parse(const QByteArray& bytes)
    {
        EdiFileRead f;
        QStringList lines = QString::fromLatin1(bytes).split(QStringLiteral("\r\n"));
        if (lines.isEmpty() || !lines.last().isEmpty())
            f.faults << QStringLiteral("the file does not end with CR LF");
        lines.removeLast();
        enum { Header, Remarks, Records, After } part = Header;
        for (int i = 0; i < lines.size(); ++i) {
            const QString& l = lines[i];
            if (l.contains(QLatin1Char('\n')))
                f.faults << QStringLiteral("line %1 has a bare LF").arg(i + 1);
            if (i == 0) {
                f.first = l;
                continue;
            }
            if (l == QLatin1String("[Remarks]")) {
                part = Remarks;
            } else if (l.startsWith(QLatin1String("[QSORecords;")) && l.endsWith(QLatin1Char(']'))) {
                part = Records;
                f.declared = l.mid(12, l.size() - 13).toInt();
            } else if (l.startsWith(QLatin1String("[END;"))) {
                f.end = l;
                part = After;
            } else if (part == Header) {
                const int eq = l.indexOf(QLatin1Char('='));
                if (eq != 5)
                    f.faults << QStringLiteral("header line \"%1\"").arg(l);
                f.header.insert(l.left(eq), l.mid(eq + 1));
            } else if (part == Remarks) {
                f.remarks << l;
            } else if (part == Records) {
                const QStringList v = l.split(QLatin1Char(';'));
                if (v.size() != 15) {
                    f.faults << QStringLiteral("record \"%1\" has %2 fields").arg(l).arg(v.size());
                    continue;
                }
                EdiRecord r { v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8], v[9], v[10].toInt(),
                    v[11], v[12], v[13], v[14] };
                f.records << r;
            } else {
                f.faults << QStringLiteral("text after the closing line");
            }
        }
        return f;
    }

    QList<int> claim(const QString& key) const
    {
        QList<int> out;
        for (const QString& v : header.value(key).split(QLatin1Char(';')))
            out << v.toInt();
        return out;
    }

    // Every header claim against the records: counts, points, marks, bonuses and total.
    void expectConsistent() const
    {
        EXPECT_EQ(first, QStringLiteral("[REG1TEST;1]"));
        EXPECT_TRUE(faults.isEmpty()) << faults.join('\n').toStdString();
        EXPECT_EQ(declared, records.size());
        EXPECT_TRUE(end.startsWith(QLatin1String("[END;Kestrel ")) && end.endsWith(QLatin1Char(']')));
        int scoring = 0, points = 0, squares = 0, dxccs = 0, exchanges = 0, odx = 0;
        for (const EdiRecord& r : records) {
            EXPECT_EQ(r.date.size(), 6);
            EXPECT_EQ(r.time.size(), 4);
            if (r.dupe == QLatin1String("D"))
                EXPECT_EQ(r.points, 0) << r.call.toStdString();
            scoring += r.points > 0;
            points += r.points;
            squares += r.newLocator == QLatin1String("N");
            dxccs += r.newDxcc == QLatin1String("N");
            exchanges += r.newExchange == QLatin1String("N");
            odx = std::max(odx, r.points);
        }
        EXPECT_EQ(claim("CQSOs").value(0), scoring);
        EXPECT_EQ(header.value("CQSOP").toInt(), points);
        const QList<int> wwl = claim("CWWLs");
        const QList<int> dxc = claim("CDXCs");
        const QList<int> exc = claim("CExcs");
        EXPECT_EQ(wwl.value(0), squares);
        EXPECT_EQ(dxc.value(0), dxccs);
        EXPECT_EQ(exc.value(0), exchanges);
        EXPECT_EQ(header.value("CWWLB").toInt(), squares * wwl.value(1));
        EXPECT_EQ(header.value("CDXCB").toInt(), dxccs * dxc.value(1));
        EXPECT_EQ(header.value("CExcB").toInt(), exchanges * exc.value(1));
        int total = points + header.value("CWWLB").toInt() + header.value("CDXCB").toInt()
            + header.value("CExcB").toInt();
        if (wwl.value(2) == 1)
            total *= squares;
        if (dxc.value(2) == 1)
            total *= dxccs;
        EXPECT_EQ(header.value("CToSc").toInt(), total);
        if (scoring > 0)
            EXPECT_EQ(header.value("CODXC").split(QLatin1Char(';')).value(2).toInt(), odx);
    }
};
