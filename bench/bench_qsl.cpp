// QSL card printing on a generated log of 100 000 contacts: reading a selection of 1001 cards
// (against the same rows read through a plain QSqlQuery in the same run), the letter change
// stored per contact, and cards painted into a PDF file. Each figure is the median of
// repeated runs.
#include "bench/BenchSupport.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/SqlText.h"
#include "qsl/CardDesign.h"
#include "qsl/QslCards.h"
#include "qsl/QslPrintJob.h"
#include "qsl/QslRunReader.h"
#include "qsl/SignaturePictures.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPrinter>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int LogSize = 100000;
constexpr int Selected = 1001;


bool fillLog(const QString& path)
{
    DbConnection c(path);
    if (!c.begin())
        return false;
    const char* letters[] = { "Q", "N", "Y", "D" };
    for (int i = 0; i < LogSize; ++i) {
        const QString qsl = i % (LogSize / Selected) == 0 && i / (LogSize / Selected) < Selected
            ? QStringLiteral("T")
            : QString::fromLatin1(letters[i % 4]);
        if (!c.exec(QStringLiteral(
                        "INSERT INTO logtab (Date, GMT, Callsign, Band, mode, rsts, QRB, QTF, QSL, QSLman) "
                        "VALUES (?, ?, ?, '144', 'SSB', '59', ?, ?, ?, '')"),
                { QStringLiteral("2025-%1-%2")
                        .arg(1 + i % 12, 2, 10, QLatin1Char('0'))
                        .arg(1 + i % 28, 2, 10, QLatin1Char('0')),
                    QStringLiteral("%1:%2")
                        .arg(i % 24, 2, 10, QLatin1Char('0'))
                        .arg(i % 60, 2, 10, QLatin1Char('0')),
                    QStringLiteral("DL%1ABC").arg(i % 10000), 100.0 + i % 900, double(i % 360), qsl }))
            return false;
    }
    return c.commit();
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTemporaryDir dir;
    const QString db = dir.filePath(QStringLiteral("backup.db"));
    if (!DatabaseFile::create(db) || !fillLog(db)) {
        std::fprintf(stderr, "cannot build the test log\n");
        return 1;
    }
    std::printf("log of %d contacts, %d with QSL \"T\"\n", LogSize, Selected);

    int count = 0;
    const double peek = medianMs(5, [&] {
        count = QslRunReader::read(db, QStringLiteral("T"), QslRunReader::Mode::Peek).contacts->count();
    });
    const double plain = medianMs(5, [&] {
        DbConnection c(db);
        QSqlQuery q(c.database());
        q.exec(SqlText::qslRun(QStringLiteral("T")));
        int n = 0;
        while (q.next())
            n += q.value(3).toString().size() > 0;
    });
    std::printf("read %d contacts into the run arrays:   %8.1f ms (plain QSqlQuery of the same rows %.1f ms, "
                "x%.2f)\n",
        count, peek, plain, peek / plain);

    // The letter change, stored contact by contact; the letters are put back between runs.
    const double mark = medianMs(3, [&] {
        QslRunReader::read(db, QStringLiteral("T"));
        DbConnection(db).exec(
            QStringLiteral("UPDATE logtab SET QSL = 'T' WHERE QSL = 'Q' AND ID % 99 = 1 AND ID <= 99099"));
    });
    std::printf("read and mark %d contacts (T -> Q):      %8.1f ms (%.2f ms per contact)\n", count, mark,
        mark / count);

    const QslRunRead run = QslRunReader::read(db, QStringLiteral("T"), QslRunReader::Mode::Peek);
    const QList<CardTexts> cards = QslCards::make(*run.contacts);
    CardDesign design = CardDesign::standard();
    design.setText(QStringLiteral("lblMyCall"), QStringLiteral("DL7KES"));
    SignaturePictures pictures;
    pictures.sign = QImage(300, 100, QImage::Format_RGB32);
    pictures.sign.fill(Qt::white);
    pictures.clubSign = QImage(200, 200, QImage::Format_RGB32);
    pictures.clubSign.fill(Qt::lightGray);
    const QString pdf = dir.filePath(QStringLiteral("cards.pdf"));
    const QList<CardTexts> some = cards.mid(0, 200);
    const double print = medianMs(3, [&] {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        QslPrintJob::useCardPage(printer);
        QslPrintJob::print(printer, design, some, pictures);
    });
    std::printf(
        "%d cards with pictures into a PDF file:   %8.1f ms (%.2f ms per card, %lld bytes per card)\n",
        int(some.size()), print, print / some.size(), QFileInfo(pdf).size() / some.size());
    return 0;
}
