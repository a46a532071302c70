#pragma once
// Helpers of the QSL tests: a log of contacts in a real database file, the QSL letters as
// stored, and the text of a printed PDF read back with pdftotext.
#include "core/SettingsTable.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/SqlText.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestDatabase.h"

#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSizeF>
#include <QSqlQuery>
#include <QString>

#include <gtest/gtest.h>

struct LogContact {
    QString date; // dd.MM.yyyy
    QString time;
    QString call;
    QString band;
    QString qsl;
    QString manager = QString();
    QString mode = QStringLiteral("SSB");
    QString rsts = QStringLiteral("59");
    double qrb = 512.4;
    double qtf = 87.0;
};

// A fresh log file "backup.db" and a PDF path "cards.pdf" in a temporary current folder.
class QslLogTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        DbError e;
        ASSERT_TRUE(DatabaseFile::create(db, &e)) << e.text().toStdString();
    }
    TempDir tmp;
    QString db = TestDatabase::connectionFor(tmp.file("backup.db")); // the connection text
    QString pdf = tmp.file("cards.pdf");
};

// Adds the contacts in one transaction.
inline void addContacts(const QString& path, const QList<LogContact>& contacts)
{
    DbConnection c(path);
    ASSERT_TRUE(c.begin()) << c.error().text().toStdString();
    for (const LogContact& k : contacts)
        ASSERT_TRUE(
            c.exec("INSERT INTO logtab (Date, GMT, Callsign, Band, mode, rsts, QRB, QTF, QSLman, QSL) "
                   "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                { LogDate::toStored(k.date), k.time, k.call, k.band, k.mode, k.rsts, k.qrb, k.qtf, k.manager,
                    k.qsl }))
            << c.error().text().toStdString();
    ASSERT_TRUE(c.commit()) << c.error().text().toStdString();
}

// Many contacts with one letter (callsigns DL0000, DL0001, ...).
inline void addManyContacts(const QString& path, int count, const QString& qsl)
{
    QList<LogContact> contacts;
    for (int i = 0; i < count; ++i)
        contacts.append(
            { "01.02.2026", "10:00", QStringLiteral("DL%1").arg(i, 4, 10, QLatin1Char('0')), "144", qsl });
    addContacts(path, contacts);
}

// Own lines of the card as the tests set them (settings 5, 6, 35, 36, 39, 40).
inline void setStationSettings(SettingsTable& s)
{
    s.setText(Setting::MyCall, "dl7kes");
    s.setText(Setting::MyLocator, "jo62qm48ab");
    s.setText(Setting::QslInfo, "DOK: X01  WAZ 14  ITU 28");
    s.setText(Setting::QslLine2, "Rig: IC-9700 100 W");
    s.setText(Setting::QslAddress, "OP: Erika Muster, Lindenweg 3, 12345 Kestrelbach");
    s.setText(Setting::QslFoot, "email: op@example.org");
}

// The QSL letters as stored, in callsign order and blank-separated ("Q Q Y").
inline std::string qslLetters(const QString& path)
{
    DbConnection c(path);
    QSqlQuery q(c.database());
    EXPECT_TRUE(q.exec("SELECT QSL FROM logtab ORDER BY Callsign, Date, GMT"));
    QStringList out;
    while (q.next())
        out << q.value(0).toString();
    return out.join(' ').toStdString();
}

// The text of a PDF as pdftotext lays it out; pages are separated by form feeds.
inline QString pdfText(const QString& pdf)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), { QStringLiteral("-layout"), pdf, QStringLiteral("-") });
    EXPECT_TRUE(p.waitForFinished(30000)) << "pdftotext did not finish";
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    return QString::fromUtf8(p.readAllStandardOutput());
}

// The first page's size in millimetres as pdfinfo reports it; empty when it cannot tell.
inline QSizeF pdfPageSizeMm(const QString& pdf)
{
    QProcess info;
    info.start(QStringLiteral("pdfinfo"), { pdf });
    EXPECT_TRUE(info.waitForFinished(30000)) << "pdfinfo did not finish";
    const QString out = QString::fromUtf8(info.readAllStandardOutput());
    const auto m = QRegularExpression(QStringLiteral("Page size:\\s+([\\d.]+) x ([\\d.]+) pts")).match(out);
    EXPECT_TRUE(m.hasMatch()) << out.toStdString();
    return m.hasMatch() ? QSizeF(m.captured(1).toDouble(), m.captured(2).toDouble()) * (25.4 / 72) : QSizeF();
}

// A small signature picture of the given size, written as BMP.
inline void writeBmp(const QString& path, int width, int height, QColor colour)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixelColor(width / 2, height / 2, colour);
    ASSERT_TRUE(image.save(path, "BMP"));
}
