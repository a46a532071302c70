// Print runs on a real log, printed into PDF files in a temporary folder and read back with
// pdftotext: cards shared by contacts, the run's bound, failures after marking, the card's page
// and the signature pictures. The runs behind each button are shown through the window.
#include "core/SettingsTable.h"
#include "qsl/CardDesign.h"
#include "qsl/CardNames.h"
#include "qsl/QslPrintRun.h"
#include "qsl/SignaturePictures.h"
#include "tests/qsl/QslTestSupport.h"
#include "tests/support/TempDir.h"

#include <QPrinter>
#include <QProcess>

namespace {

class QslPrinting : public QslLogTest {
protected:
    void SetUp() override
    {
        QslLogTest::SetUp();
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        QslPrintJob::useCardPage(printer);
        SettingsTable s;
        setStationSettings(s);
        setStationLines(design, s);
    }

    QslRunOutcome run(const QString& letter)
    {
        return QslPrintRun::run(db, letter, design, printer, pictures);
    }

    QPrinter printer { QPrinter::HighResolution };
    CardDesign design = CardDesign::standard();
    SignaturePictures pictures;
};

} // namespace

TEST_F(QslPrinting, SeveralContactsWithOneStationShareACardWithItsManager)
{
    addContacts(db,
        { { "01.03.2026", "20:00", "EA8XX", "144", "S", "DL0MGR" },
            { "02.03.2026", "21:15", "EA8XX", "432", "S", "DL0MGR" } });
    EXPECT_EQ(run("S").cards, 1);
    const QString text = pdfText(pdf);
    EXPECT_EQ(text.count('\f'), 1);
    EXPECT_EQ(text.count("EA8XX"), 1);
    for (const char* part : { "01.03.2026", "02.03.2026", "20:00", "21:15", "432", "via DL0MGR", "PSE QSL" })
        EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part;
    EXPECT_EQ(qslLetters(db), "D D");
}

TEST_F(QslPrinting, NothingSelectedPrintsNothingAndLeavesTheCard)
{
    addContacts(db, { { "01.03.2026", "20:00", "DL1AA", "144", "Q" } });
    design.setText(CardName::Callsign, "typed");
    const QslRunOutcome out = run("T");
    EXPECT_EQ(design.text(CardName::Callsign).toStdString(), "typed");
    EXPECT_EQ(out.notes, QStringList { "No contacts with QSL \"T\" to print." });
    EXPECT_FALSE(out.hasRows);
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_TRUE(design.text(CardName::Greeting).isEmpty());
    EXPECT_FALSE(QFile::exists(pdf));
}

TEST_F(QslPrinting, PrintingFailureAfterMarkingNamesTheMarkedContacts)
{
    addContacts(db,
        { { "15.11.2026", "18:20", "OK1XYZ", "144", "T" }, { "14.11.2026", "09:30", "DL1ABC", "144", "T" } });
    // The PDF's folder is a plain file: the printer cannot start, after the letters changed.
    tmp.write("notafolder", "x");
    printer.setOutputFileName(tmp.file("notafolder/cards.pdf"));
    const QslRunOutcome out = run("T");
    EXPECT_FALSE(out.print.ok);
    ASSERT_EQ(out.messages.size(), 1);
    const QString m = out.messages[0];
    EXPECT_TRUE(m.startsWith("Printing failed: the PDF file")) << m.toStdString();
    EXPECT_TRUE(m.contains("DL1ABC 14.11.2026 09:30 (T -> Q)")) << m.toStdString();
    EXPECT_TRUE(m.contains("OK1XYZ 15.11.2026 18:20 (T -> Q)")) << m.toStdString();
    EXPECT_EQ(qslLetters(db), "Q Q");

    // The offer after the failure sets both back; a letter changed since stays as it is.
    EXPECT_EQ(QslPrintRun::restoreQuestion(2).toStdString(),
        "Set the QSL letter of these 2 contacts back to what it was before this run, so that the next run "
        "prints their cards again?");
    ASSERT_EQ(out.marked.size(), 2);
    EXPECT_EQ(QslPrintRun::restoreLetters(db, out.marked).toStdString(),
        "The QSL letter of 2 contacts is back to what it was.");
    EXPECT_EQ(qslLetters(db), "T T");
    run("T");
    {
        DbConnection c(db);
        ASSERT_TRUE(c.exec("UPDATE logtab SET QSL = 'X' WHERE Callsign = 'OK1XYZ'"));
    }
    EXPECT_EQ(QslPrintRun::restoreLetters(db, out.marked).toStdString(),
        "The QSL letter of 1 of 2 contacts is back to what it was; the others had been changed since and "
        "keep their letter.");
    EXPECT_EQ(qslLetters(db), "T X");
    EXPECT_TRUE(QslPrintRun::restoreLetters(tmp.file("gone/none.db"), out.marked)
                    .startsWith("The QSL letters could not be set back: "));

    QList<MarkedContact> marked;
    for (int i = 0; i < 43; ++i)
        marked.append({ QStringLiteral("DL%1").arg(i), " 01.01.2026", "  10:00 ", "Y", "N" });
    const QString forty = QslPrintRun::printFailedMessage("paper jam.", marked);
    EXPECT_TRUE(forty.startsWith("Printing failed: paper jam.\n\n"
                                 "The QSL letter of these 43 contacts has already been changed"));
    EXPECT_TRUE(forty.contains("\nDL39 01.01.2026 10:00 (Y -> N)"));
    EXPECT_TRUE(forty.endsWith("\nand 3 more: DL40, DL41, DL42")) << forty.toStdString();
}

TEST_F(QslPrinting, MoreThan1001ContactsStopAtTheBoundWithAMessageAndWaitForTheNextRun)
{
    addManyContacts(db, 1003, "Y");
    QslRunOutcome out = run("Y");
    EXPECT_TRUE(out.print.ok) << out.print.error.toStdString();
    EXPECT_EQ(out.contacts, 1001);
    EXPECT_EQ(out.marked.size(), 1001);
    EXPECT_EQ(out.leftOver, 2);
    EXPECT_EQ(out.print.pages, 1001);
    EXPECT_EQ(out.messages,
        QStringList { "Only 1001 contacts fit into one print run: 2 more with QSL \"Y\" "
                      "keep their letter. Start the run again to print them." });
    std::string letters = qslLetters(db);
    EXPECT_EQ(std::count(letters.begin(), letters.end(), 'Y'), 2);

    out = run("Y");
    EXPECT_EQ(out.contacts, 2);
    EXPECT_TRUE(out.messages.isEmpty());
    EXPECT_TRUE(pdfText(pdf).contains("DL1002"));
    letters = qslLetters(db);
    EXPECT_EQ(std::count(letters.begin(), letters.end(), 'N'), 1003);
}

TEST_F(QslPrinting, CardPageIs140By90Millimetres)
{
    ASSERT_TRUE(QslPrintJob::print(printer, design, {}, pictures).ok);
    const QSizeF page = pdfPageSizeMm(pdf);
    EXPECT_NEAR(page.width(), 140.0, 0.5);
    EXPECT_NEAR(page.height(), 90.0, 0.5);
}

TEST(QslPictures, PlacedAtTheRightEdgeWithTheirTwipHeights)
{
    const QSizeF card(140, 90);
    const QRectF club = SignaturePictures::clubSignRect(card, QSize(200, 200));
    EXPECT_EQ(club, QRectF(136 - 15.875, club.top(), 15.875, 15.875)); // 900 twips
    EXPECT_NEAR(club.top(), 66.18, 0.005); // (card height - 600 twips) / 1.2
    const QRectF sign = SignaturePictures::signRect(card, QSize(300, 100), QSize(200, 200));
    EXPECT_NEAR(sign.height(), 8.819, 0.001); // 500 twips, side by side with a 2 mm gap
    EXPECT_EQ(sign.topRight(), QPointF(club.left() - 2.0, club.top()));
    // Alone, the signature stands at the edge; a missing picture has no place.
    EXPECT_NEAR(SignaturePictures::signRect(card, QSize(300, 100), QSize()).right(), 136.0, 1e-6);
    EXPECT_TRUE(SignaturePictures::clubSignRect(card, QSize()).isEmpty());
}

TEST(QslPictures, PresentPicturesArePrintedAndAnUnreadableOneIsLeftOutWithANote)
{
    TempDir tmp;
    writeBmp(tmp.file("Sign.bmp"), 240, 80, Qt::darkBlue);
    writeBmp(tmp.file("ClubSign.bmp"), 120, 120, Qt::darkRed);
    const SignaturePictures p = SignaturePictures::load(tmp.path());
    EXPECT_TRUE(p.notes.isEmpty());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(tmp.file("card.pdf"));
    QslPrintJob::useCardPage(printer);
    ASSERT_TRUE(QslPrintJob::print(printer, CardDesign::standard(), {}, p).ok);
    QProcess images;
    images.start("pdfimages", { "-list", tmp.file("card.pdf") });
    ASSERT_TRUE(images.waitForFinished(30000));
    const QStringList lines
        = QString::fromUtf8(images.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size() - 2, 2) << lines.join('\n').toStdString(); // two header lines

    tmp.write("ClubSign.bmp", "not a picture");
    const SignaturePictures broken = SignaturePictures::load(tmp.path());
    EXPECT_TRUE(broken.clubSign.isNull());
    EXPECT_EQ(broken.notes.size(), 1);
    EXPECT_TRUE(broken.notes.value(0).contains("/ClubSign.bmp cannot be read"))
        << broken.notes.value(0).toStdString();
}

namespace {
// The page as pdftoppm renders it at `dpi`, in grey.
QImage renderPage(const QString& pdf, int dpi)
{
    QProcess p;
    const QString base = pdf + QStringLiteral(".page");
    p.start(QStringLiteral("pdftoppm"),
        { QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-gray"), QStringLiteral("-png"),
            QStringLiteral("-singlefile"), pdf, base });
    EXPECT_TRUE(p.waitForFinished(30000)) << "pdftoppm did not finish";
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    return QImage(base + QStringLiteral(".png")).convertToFormat(QImage::Format_Grayscale8);
}
} // namespace

// Long callsigns on the card, checked on the rendered page: the ink of the callsign keeps a
// blank margin inside its frame on both sides (a clipped text runs into the frame) and is
// not shrunk more than it must be. The text layer must carry the whole callsign too.
TEST_F(QslPrinting, LongCallsignsShrinkIntoTheirBoxInsteadOfBeingClipped)
{
    constexpr int Dpi = 300;
    const auto px = [](double mm) { return int(std::lround(mm * Dpi / 25.4)); };
    const CardItem* box = design.item(CardName::Callsign);
    ASSERT_TRUE(box);
    const QRectF mm = box->rect;
    const char* const calls[] = { "VK9/DL1ABC/MM", "VP2V/W1ABC/P", "3D2/DL1ABC/QRP", "DL1ABC" };
    for (const char* call : calls) {
        SCOPED_TRACE(call);
        const QString file
            = tmp.file(QStringLiteral("%1.pdf").arg(QString::fromLatin1(call).replace('/', '_')));
        printer.setOutputFileName(file);
        design.setText(CardName::Callsign, QString::fromLatin1(call));
        ASSERT_TRUE(QslPrintJob::print(printer, design, {}, pictures).ok);
        EXPECT_TRUE(pdfText(file).contains(QString::fromLatin1(call)));

        const QImage page = renderPage(file, Dpi);
        ASSERT_NEAR(page.width(), px(CardDesign::WidthMm), 2);
        // Inside the frame (its line is 0.25 mm wide), every column that carries ink.
        const int left = px(mm.left() + 0.4), right = px(mm.right() - 0.4);
        const int top = px(mm.top() + 0.4), bottom = px(mm.bottom() - 0.4);
        int first = -1, last = -1;
        for (int x = left; x <= right; ++x)
            for (int y = top; y <= bottom; ++y)
                if (qGray(page.pixel(x, y)) < 128) {
                    if (first < 0)
                        first = x;
                    last = x;
                    break;
                }
        ASSERT_GE(first, 0) << "no ink in the box";
        EXPECT_GT(first, px(mm.left() + 1.0)) << "the callsign touches the left of its box";
        EXPECT_LT(last, px(mm.right() - 1.0)) << "the callsign touches the right of its box";
        // Centred, and only as small as it must be: a long callsign fills most of the width.
        EXPECT_NEAR((first + last) / 2.0, px(mm.center().x()), px(1.5));
        if (qstrlen(call) > 10)
            EXPECT_GT(last - first, px(mm.width() * 0.8));
    }
}
