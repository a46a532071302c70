// Print runs on a real log, printed into PDF files in a temporary folder and read back with
// pdftotext; the card's page, the signature pictures and failures after marking.
#include "core/SettingsTable.h"
#include "qsl/CardDesign.h"
#include "qsl/CardNames.h"
#include "qsl/QslPrintRun.h"
#include "qsl/SignaturePictures.h"
#include "tests/qsl/QslTestSupport.h"
#include "tests/support/TempDir.h"

#include <QPdfWriter>
#include <QPrinter>
#include <QRegularExpression>

#include <cmath>

namespace {

class QslPrinting : public ::testing::Test {
protected:
    void SetUp() override
    {
        makeLog(db);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        QslPrintJob::useCardPage(printer);
        SettingsTable s;
        s.setText(Setting::MyCall, QStringLiteral("dl7kes"));
        s.setText(Setting::MyLocator, QStringLiteral("JO62QM48AB"));
        s.setText(Setting::QslInfo, QStringLiteral("DOK: X01  WAZ 14  ITU 28"));
        s.setText(Setting::QslLine2, QStringLiteral("Rig: IC-9700 100 W"));
        s.setText(Setting::QslAddress, QStringLiteral("OP: Erika Muster, Lindenweg 3, 12345 Kestrelbach"));
        s.setText(Setting::QslFoot, QStringLiteral("email: op@example.org"));
        setStationLines(design, s);
    }

    QslRunOutcome run(const QString& letter)
    {
        return QslPrintRun::run(db, letter, design, printer, pictures);
    }

    TempDir tmp;
    QString db = tmp.file(QStringLiteral("backup.db"));
    QString pdf = tmp.file(QStringLiteral("cards.pdf"));
    QPrinter printer { QPrinter::HighResolution };
    CardDesign design = CardDesign::standard();
    SignaturePictures pictures;
};

// Position of each text in `text`, -1 when missing.
QList<qsizetype> positions(const QString& text, const QStringList& parts)
{
    QList<qsizetype> out;
    for (const QString& p : parts)
        out << text.indexOf(p);
    return out;
}

} // namespace

TEST_F(QslPrinting, ThanksRunPrintsTnxQslInCallsignOrderAndMarksEveryContactQ)
{
    addContacts(db,
        { { "15.11.2026", "18:20:05", "OK1XYZ", "144", "T" },
            { "14.11.2026", "09:30", "DL1ABC", "14200", "T" }, { "13.11.2026", "10:00", "G4ABC", "432", "Y" },
            { "12.11.2026", "07:05", "DF9ZZ", "10368", "T" } });
    const QslRunOutcome out = run(QStringLiteral("T"));
    ASSERT_TRUE(out.print.ok) << out.print.error.toStdString();
    EXPECT_TRUE(out.messages.isEmpty()) << out.messages.join('\n').toStdString();
    EXPECT_EQ(out.contacts, 3);
    EXPECT_EQ(out.cards, 3);

    const QString text = pdfText(pdf);
    EXPECT_EQ(text.count(QLatin1Char('\f')), 3);
    EXPECT_EQ(text.count(QStringLiteral("TNX QSL")), 3);
    EXPECT_EQ(text.count(QStringLiteral("Confirming 2-way QSO with:")), 3);
    EXPECT_EQ(text.count(QStringLiteral("tnx fer QSO Best 73 de")), 3);
    const auto at = positions(text, { "DF9ZZ", "DL1ABC", "OK1XYZ" });
    EXPECT_GE(at[0], 0);
    EXPECT_LT(at[0], at[1]);
    EXPECT_LT(at[1], at[2]);
    EXPECT_FALSE(text.contains(QStringLiteral("G4ABC")));
    // Date, time and band in their card forms; the own lines from the settings.
    for (const char* part : { "15.11.2026", "18:20", "07:05", "14,200", "10,368", "DL7KES", "Loc: JO62QM48ab",
             "DOK: X01", "Rig: IC-9700", "OP: Erika Muster", "email: op@example.org", "512", "87" })
        EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part;
    EXPECT_FALSE(text.contains(QStringLiteral("18:20:05")));

    const auto letters = qslLetters(db);
    EXPECT_EQ(letters.value("OK1XYZ 15.11.2026 18:20:05").toStdString(), "Q");
    EXPECT_EQ(letters.value("DL1ABC 14.11.2026 09:30").toStdString(), "Q");
    EXPECT_EQ(letters.value("DF9ZZ 12.11.2026 07:05").toStdString(), "Q");
    EXPECT_EQ(letters.value("G4ABC 13.11.2026 10:00").toStdString(), "Y");

    // The window's card afterwards: greeting lines set, text boxes empty again.
    EXPECT_EQ(design.text(CardName::Greeting).toStdString(), "TNX QSL");
    EXPECT_TRUE(design.text(CardName::Callsign).isEmpty());
    EXPECT_TRUE(design.text(CardName::Date).isEmpty());
}

TEST_F(QslPrinting, BeaconRunPrintsTheBeaconLinesAndMarksN)
{
    addContacts(db,
        { { "01.03.2026", "20:00", "DB0ABC", "10368", "B" },
            { "01.03.2026", "21:00", "OK0EA", "1296", "B" } });
    const QslRunOutcome out = run(QStringLiteral("B"));
    ASSERT_TRUE(out.print.ok) << out.print.error.toStdString();
    const QString text = pdfText(pdf);
    EXPECT_EQ(text.count(QStringLiteral("Confirming heard Beacon:")), 2);
    EXPECT_EQ(text.count(QStringLiteral("Best 73 de")), 2);
    EXPECT_EQ(text.count(QStringLiteral("PSE QSL")), 2);
    EXPECT_FALSE(text.contains(QStringLiteral("tnx fer QSO")));
    EXPECT_FALSE(text.contains(QStringLiteral("2-way")));
    EXPECT_LT(text.indexOf(QStringLiteral("DB0ABC")), text.indexOf(QStringLiteral("OK0EA")));
    const auto letters = qslLetters(db);
    EXPECT_EQ(letters.value("DB0ABC 01.03.2026 20:00").toStdString(), "N");
    EXPECT_EQ(letters.value("OK0EA 01.03.2026 21:00").toStdString(), "N");
}

TEST_F(QslPrinting, SeveralContactsWithOneStationShareACardWithItsManager)
{
    addContacts(db,
        { { "01.03.2026", "20:00", "EA8XX", "144", "S", "DL0MGR" },
            { "02.03.2026", "21:15", "EA8XX", "432", "S", "DL0MGR" } });
    const QslRunOutcome out = run(QStringLiteral("S"));
    ASSERT_TRUE(out.print.ok);
    EXPECT_EQ(out.cards, 1);
    const QString text = pdfText(pdf);
    EXPECT_EQ(pdfPages(pdf), 1);
    EXPECT_EQ(text.count(QStringLiteral("EA8XX")), 1);
    for (const char* part : { "01.03.2026", "02.03.2026", "20:00", "21:15", "432", "via DL0MGR", "PSE QSL" })
        EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part;
    EXPECT_EQ(qslLetters(db).values().count(QStringLiteral("D")), 2);
}

TEST_F(QslPrinting, NothingSelectedPrintsNothingAndChangesNoLabel)
{
    addContacts(db, { { "01.03.2026", "20:00", "DL1AA", "144", "Q" } });
    design.setText(CardName::Callsign, QStringLiteral("typed"));
    const QslRunOutcome out = run(QStringLiteral("T"));
    EXPECT_EQ(design.text(CardName::Callsign).toStdString(), "typed");
    ASSERT_EQ(out.notes.size(), 1);
    EXPECT_EQ(out.notes[0].toStdString(), "No contacts with QSL \"T\" to print.");
    EXPECT_FALSE(out.hasRows);
    EXPECT_EQ(out.cards, 0);
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_FALSE(QFile::exists(pdf));
    EXPECT_TRUE(design.text(CardName::Greeting).isEmpty());
}

TEST_F(QslPrinting, DatabaseErrorShowsNoNewRecorsetAvailable)
{
    const QslRunOutcome out = QslPrintRun::run(
        tmp.file(QStringLiteral("missing.db")), QStringLiteral("T"), design, printer, pictures);
    EXPECT_TRUE(out.databaseFailed);
    ASSERT_EQ(out.messages.size(), 1);
    EXPECT_EQ(out.messages[0].toStdString(), "No new Recorset available");
    EXPECT_FALSE(QFile::exists(pdf));
}

TEST_F(QslPrinting, PrintingFailureAfterMarkingNamesTheMarkedContacts)
{
    addContacts(db,
        { { "15.11.2026", "18:20", "OK1XYZ", "144", "T" }, { "14.11.2026", "09:30", "DL1ABC", "144", "T" } });
    // The PDF's folder is a plain file: the printer cannot start, after the letters changed.
    tmp.write(QStringLiteral("notafolder"), "x");
    printer.setOutputFileName(tmp.file(QStringLiteral("notafolder/cards.pdf")));
    const QslRunOutcome out = run(QStringLiteral("T"));
    EXPECT_FALSE(out.print.ok);
    ASSERT_EQ(out.messages.size(), 1);
    const QString m = out.messages[0];
    EXPECT_TRUE(m.startsWith(QStringLiteral("Printing failed: the PDF file"))) << m.toStdString();
    EXPECT_TRUE(m.contains(QStringLiteral("DL1ABC 14.11.2026 09:30 (T -> Q)"))) << m.toStdString();
    EXPECT_TRUE(m.contains(QStringLiteral("OK1XYZ 15.11.2026 18:20 (T -> Q)"))) << m.toStdString();
    EXPECT_EQ(qslLetters(db).values().count(QStringLiteral("Q")), 2);
    EXPECT_FALSE(QslPrintJob::preflight(printer).isEmpty());
}

TEST_F(QslPrinting, FailureMessageListsFortyContactsAndNamesTheRest)
{
    QList<MarkedContact> marked;
    for (int i = 0; i < 43; ++i)
        marked.append({ QStringLiteral("DL%1").arg(i), QStringLiteral(" 01.01.2026"),
            QStringLiteral("  10:00 "), QStringLiteral("Y"), QStringLiteral("N") });
    const QString m = QslPrintRun::printFailedMessage(QStringLiteral("paper jam."), marked);
    EXPECT_TRUE(m.startsWith(QStringLiteral("Printing failed: paper jam.\n\n"
                                            "The QSL letter of these 43 contacts has already been changed")));
    EXPECT_TRUE(m.contains(QStringLiteral("\nDL39 01.01.2026 10:00 (Y -> N)")));
    EXPECT_TRUE(m.endsWith(QStringLiteral("\nand 3 more: DL40, DL41, DL42"))) << m.toStdString();
    EXPECT_EQ(QslPrintRun::printFailedMessage(QStringLiteral("x."), {}).toStdString(), "Printing failed: x.");
}

TEST_F(QslPrinting, MoreThan1001ContactsStopAtTheBoundWithAMessageAndWaitForTheNextRun)
{
    addManyContacts(db, 1003, QStringLiteral("Y"));
    QslRunOutcome out = run(QStringLiteral("Y"));
    EXPECT_TRUE(out.print.ok) << out.print.error.toStdString();
    EXPECT_EQ(out.contacts, 1001);
    EXPECT_EQ(out.marked.size(), 1001);
    EXPECT_EQ(out.leftOver, 2);
    EXPECT_EQ(out.print.pages, 1001);
    ASSERT_EQ(out.messages.size(), 1);
    EXPECT_EQ(out.messages[0].toStdString(),
        "Only 1001 contacts fit into one print run: 2 more with QSL \"Y\" keep their letter. "
        "Start the run again to print them.");
    EXPECT_EQ(qslLetters(db).values().count(QStringLiteral("Y")), 2);

    out = run(QStringLiteral("Y"));
    EXPECT_EQ(out.contacts, 2);
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_TRUE(pdfText(pdf).contains(QStringLiteral("DL1002")));
    EXPECT_EQ(qslLetters(db).values().count(QStringLiteral("N")), 1003);
}

TEST_F(QslPrinting, CardPageIs140By90MillimetresAndAnEmptyCardPrintsPseQsl)
{
    design.setText(CardName::Callsign, QStringLiteral("HB9QQ"));
    QslPrintRun::completeGreeting(design);
    const PrintResult r = QslPrintJob::print(printer, design, {}, pictures);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_EQ(r.pages, 1);
    const QString text = pdfText(pdf);
    EXPECT_TRUE(text.contains(QStringLiteral("PSE QSL")));
    EXPECT_TRUE(text.contains(QStringLiteral("HB9QQ")));

    QProcess info;
    info.start(QStringLiteral("pdfinfo"), { pdf });
    ASSERT_TRUE(info.waitForFinished(30000));
    const QString out = QString::fromUtf8(info.readAllStandardOutput());
    const auto m = QRegularExpression(QStringLiteral("Page size:\\s+([\\d.]+) x ([\\d.]+) pts")).match(out);
    ASSERT_TRUE(m.hasMatch()) << out.toStdString();
    EXPECT_NEAR(m.captured(1).toDouble() * 25.4 / 72, 140.0, 0.5);
    EXPECT_NEAR(m.captured(2).toDouble() * 25.4 / 72, 90.0, 0.5);
}

TEST_F(QslPrinting, AnyPagedDeviceWorksAndSmallPagesShrinkTheCard)
{
    QPdfWriter writer(tmp.file(QStringLiteral("writer.pdf")));
    writer.setPageSize(QPageSize(QPageSize::A6)); // 105 x 148 mm: narrower than the card
    design.setText(CardName::Callsign, QStringLiteral("SM5ABC"));
    const PrintResult r = QslPrintJob::print(writer, design, {}, pictures);
    ASSERT_TRUE(r.ok) << r.error.toStdString();
    EXPECT_TRUE(pdfText(tmp.file(QStringLiteral("writer.pdf"))).contains(QStringLiteral("SM5ABC")));
}

TEST(QslPictures, PlacedAtTheRightEdgeWithTheirTwipHeights)
{
    const QSizeF card(140, 90);
    EXPECT_NEAR(SignaturePictures::SignHeightMm, 8.819, 0.001); // 500 twips
    EXPECT_NEAR(SignaturePictures::ClubSignHeightMm, 15.875, 0.001); // 900 twips
    const QRectF club = SignaturePictures::clubSignRect(card, QSize(200, 200));
    EXPECT_NEAR(club.height(), 15.875, 1e-6);
    EXPECT_NEAR(club.width(), 15.875, 1e-6);
    EXPECT_NEAR(club.right(), 136.0, 1e-6);
    EXPECT_NEAR(club.top(), (90.0 - 600 * 25.4 / 1440) / 1.2, 1e-6);
    const QRectF sign = SignaturePictures::signRect(card, QSize(300, 100), QSize(200, 200));
    EXPECT_NEAR(sign.height(), 8.819, 0.001);
    EXPECT_NEAR(sign.width(), 3 * 8.819, 0.003);
    EXPECT_NEAR(sign.right(), club.left() - 2.0, 1e-6);
    EXPECT_NEAR(sign.top(), club.top(), 1e-6);
    EXPECT_LE(club.bottom(), 90.0);
    // Alone, the signature stands at the edge; a missing picture has no place.
    EXPECT_NEAR(SignaturePictures::signRect(card, QSize(300, 100), QSize()).right(), 136.0, 1e-6);
    EXPECT_TRUE(SignaturePictures::clubSignRect(card, QSize()).isEmpty());
}

TEST(QslPictures, MissingPicturesAreLeftOutWithANote)
{
    TempDir tmp;
    writeBmp(tmp.file(QStringLiteral("Sign.bmp")), 240, 80, Qt::darkBlue);
    tmp.write(QStringLiteral("ClubSign.bmp"), "not a picture");
    SignaturePictures p = SignaturePictures::load(tmp.path());
    EXPECT_FALSE(p.sign.isNull());
    EXPECT_TRUE(p.clubSign.isNull());
    ASSERT_EQ(p.notes.size(), 1);
    EXPECT_TRUE(p.notes[0].contains(QStringLiteral("/ClubSign.bmp cannot be read")))
        << p.notes[0].toStdString();

    p = SignaturePictures::load(tmp.file(QStringLiteral("nowhere")));
    EXPECT_TRUE(p.sign.isNull());
    ASSERT_EQ(p.notes.size(), 2);
    EXPECT_TRUE(p.notes[0].contains(QStringLiteral("/Sign.bmp not found")));

    // Printing goes on without them.
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(tmp.file(QStringLiteral("card.pdf")));
    EXPECT_TRUE(QslPrintJob::print(printer, CardDesign::standard(), {}, p).ok);
}

TEST(QslPictures, PresentPicturesArePrintedOntoTheCard)
{
    TempDir tmp;
    writeBmp(tmp.file(QStringLiteral("Sign.bmp")), 240, 80, Qt::darkBlue);
    writeBmp(tmp.file(QStringLiteral("ClubSign.bmp")), 120, 120, Qt::darkRed);
    const SignaturePictures p = SignaturePictures::load(tmp.path());
    EXPECT_TRUE(p.notes.isEmpty());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(tmp.file(QStringLiteral("card.pdf")));
    QslPrintJob::useCardPage(printer);
    ASSERT_TRUE(QslPrintJob::print(printer, CardDesign::standard(), {}, p).ok);
    QProcess images;
    images.start(
        QStringLiteral("pdfimages"), { QStringLiteral("-list"), tmp.file(QStringLiteral("card.pdf")) });
    ASSERT_TRUE(images.waitForFinished(30000));
    const QStringList lines
        = QString::fromUtf8(images.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size() - 2, 2) << lines.join('\n').toStdString(); // two header lines
}
