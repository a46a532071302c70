// The QSL print window on the offscreen platform: its controls, the station's lines, the
// print runs behind its buttons into a PDF file, and what the operator is told.
#include "ui/qsl/Form6.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "qsl/CardNames.h"
#include "tests/qsl/QslTestSupport.h"
#include "ui/qsl/CardFace.h"

#include <QComboBox>
#include <QFontMetricsF>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace {

class Form6Window : public QslLogTest {
protected:
    void SetUp() override
    {
        QslLogTest::SetUp();
        station.dbConnection = db;
        LoadStationConfig(station);
        setStationSettings(station.settings);
        ASSERT_TRUE(SaveStationConfig(station));
        station.settings.clear(); // the window reads the file again
        writeBmp(tmp.file("Sign.bmp"), 240, 80, Qt::darkBlue);
        writeBmp(tmp.file("ClubSign.bmp"), 120, 120, Qt::darkRed);

        form = std::make_unique<Form6>(station);
        form->setPictureDirectory(tmp.path());
        form->printer().setOutputFormat(QPrinter::PdfFormat);
        form->printer().setOutputFileName(pdf);
        form->show();
    }

    void click(const char* button)
    {
        auto* b = form->findChild<QPushButton*>(QString::fromLatin1(button));
        ASSERT_NE(b, nullptr) << button;
        QTest::mouseClick(b, Qt::LeftButton);
    }
    QString shown(const QString& name) { return form->card().text(name); }

    RecordingPrompts prompts;
    Station station { prompts };
    std::unique_ptr<Form6> form;
};

} // namespace

TEST_F(Form6Window, ShowsTheStationLinesAndHandsItsOwnLayoutToThePrinter)
{
    EXPECT_EQ(shown(CardName::MyCall).toStdString(), "DL7KES");
    EXPECT_EQ(shown(CardName::MyGrid).toStdString(), "Loc: JO62QM48ab");
    EXPECT_EQ(shown(CardName::Info).toStdString(), "DOK: X01  WAZ 14  ITU 28");
    EXPECT_EQ(shown(CardName::Foot).toStdString(), "email: op@example.org");
    EXPECT_EQ(shown(CardName::Confirmation).toStdString(), "Confirming 2-way QSO with:");
    EXPECT_TRUE(shown(CardName::Greeting).isEmpty());

    // The card is 140 x 90 mm at the window's scale, and the pictures stand on it.
    EXPECT_EQ(form->card().size(), QSize(700, 450));
    auto* sign = form->findChild<QLabel*>(CardName::Sign);
    auto* club = form->findChild<QLabel*>(CardName::ClubSign);
    EXPECT_TRUE(sign->isVisible());
    EXPECT_TRUE(club->isVisible());
    EXPECT_LT(sign->geometry().right(), club->geometry().left());
    EXPECT_NEAR(club->geometry().height(), 15.875 * CardFace::PxPerMm, 1);

    // What the window hands over for printing is its own layout, within a pixel.
    const CardDesign shownDesign = form->card().design();
    const CardDesign standard = CardDesign::standard();
    ASSERT_EQ(shownDesign.items.size(), standard.items.size());
    for (int i = 0; i < standard.items.size(); ++i) {
        const QRectF a = shownDesign.items[i].rect, b = standard.items[i].rect;
        EXPECT_NEAR(a.left(), b.left(), 0.2) << b.top();
        EXPECT_NEAR(a.top(), b.top(), 0.2);
        EXPECT_NEAR(a.width(), b.width(), 0.2);
        EXPECT_NEAR(a.height(), b.height(), 0.2);
    }
}

TEST_F(Form6Window, Command4PrintsThanksCardsInCallsignOrderMarksQAndClearsTheBoxes)
{
    addContacts(db,
        { { "15.11.2026", "18:20:05", "OK1XYZ", "144", "T" },
            { "14.11.2026", "09:30", "DL1ABC", "14200", "T" }, { "13.11.2026", "10:00", "G4ABC", "432", "Y" },
            { "12.11.2026", "07:05", "DF9ZZ", "10368", "T" } });
    click("Command4");
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join('\n').toStdString();
    EXPECT_EQ(form->letter().toStdString(), "T");
    const QString text = pdfText(pdf);
    EXPECT_EQ(text.count('\f'), 3);
    for (const char* line : { "TNX QSL", "Confirming 2-way QSO with:", "tnx fer QSO Best 73 de" })
        EXPECT_EQ(text.count(QString::fromLatin1(line)), 3) << line;
    EXPECT_GE(text.indexOf("DF9ZZ"), 0);
    EXPECT_LT(text.indexOf("DF9ZZ"), text.indexOf("DL1ABC"));
    EXPECT_LT(text.indexOf("DL1ABC"), text.indexOf("OK1XYZ"));
    EXPECT_FALSE(text.contains("G4ABC"));
    // Date, time and band in their card forms; the own lines from the settings.
    for (const char* part : { "15.11.2026", "18:20", "07:05", "14,200", "10,368", "DL7KES", "Loc: JO62QM48ab",
             "DOK: X01", "Rig: IC-9700", "OP: Erika Muster", "email: op@example.org", "512.4", "87" })
        EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part;
    EXPECT_FALSE(text.contains("18:20:05"));
    EXPECT_EQ(qslLetters(db), "Q Q Y Q"); // DF9ZZ DL1ABC G4ABC OK1XYZ

    EXPECT_EQ(shown(CardName::Greeting).toStdString(), "TNX QSL");
    for (const QString& box : { CardName::Callsign, CardName::Date, CardName::Time, CardName::Band })
        EXPECT_TRUE(shown(box).isEmpty()) << box.toStdString();
}

TEST_F(Form6Window, BeaconPrintThenStopPrintRepeatsTheChosenLetter)
{
    click("StopPrint"); // before any run: nothing to repeat
    EXPECT_FALSE(QFile::exists(pdf));
    EXPECT_TRUE(form->findChild<QLabel*>("lblNote")->text().contains("choose Y, S, T or B"));

    addContacts(db,
        { { "01.03.2026", "21:00", "OK0EA", "1296", "B" },
            { "01.03.2026", "20:00", "DB0ABC", "10368", "B" } });
    click("BeaconPrint");
    EXPECT_EQ(shown(CardName::Confirmation).toStdString(), "Confirming heard Beacon:");
    EXPECT_EQ(shown(CardName::Closing).toStdString(), "Best 73 de");
    QString text = pdfText(pdf);
    for (const char* line : { "Confirming heard Beacon:", "Best 73 de", "PSE QSL" })
        EXPECT_EQ(text.count(QString::fromLatin1(line)), 2) << line;
    EXPECT_FALSE(text.contains("tnx fer QSO"));
    EXPECT_LT(text.indexOf("DB0ABC"), text.indexOf("OK0EA"));
    EXPECT_EQ(qslLetters(db), "N N");

    addContacts(db, { { "02.03.2026", "21:00", "ON0VHF", "1296", "B" } });
    click("StopPrint");
    text = pdfText(pdf);
    EXPECT_TRUE(text.contains("ON0VHF"));
    EXPECT_FALSE(text.contains("DB0ABC"));
    EXPECT_EQ(qslLetters(db), "N N N");
}

TEST_F(Form6Window, EmptyPrintsTheWindowAsOneCardWithPseQsl)
{
    addContacts(db, { { "01.03.2026", "20:00", "DL1AA", "144", "Y" } });
    QTest::keyClicks(form->findChild<QLineEdit*>("Cal"), "HB9QQ");
    form->findChild<QPlainTextEdit*>("datem")->setPlainText(" 24.12.2025");
    click("Empty");
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join('\n').toStdString();
    EXPECT_EQ(form->letter().toStdString(), "X");
    const QString text = pdfText(pdf);
    EXPECT_EQ(text.count('\f'), 1);
    for (const char* part : { "PSE QSL", "HB9QQ", "24.12.2025", "Confirming 2-way QSO with:", "DL7KES" })
        EXPECT_TRUE(text.contains(QString::fromLatin1(part))) << part;
    EXPECT_EQ(shown(CardName::Greeting).toStdString(), "PSE QSL");
    EXPECT_EQ(shown(CardName::Callsign).toStdString(), "HB9QQ"); // the window keeps what it printed
    EXPECT_EQ(qslLetters(db), "Y");
}

TEST_F(Form6Window, AnUnwritablePdfOrAMissingDatabaseChangesNoLetter)
{
    addContacts(db, { { "01.03.2026", "20:00", "DL1AA", "144", "Y" } });
    tmp.write("plainfile", "x");
    form->printer().setOutputFileName(tmp.file("plainfile/cards.pdf"));
    click("Command1");
    ASSERT_EQ(prompts.shown.size(), 1);
    EXPECT_TRUE(prompts.shown[0].startsWith("Printing is not possible: the folder of the PDF file"))
        << prompts.shown[0].toStdString();
    EXPECT_TRUE(prompts.shown[0].endsWith("No QSL letter has been changed."));
    EXPECT_EQ(qslLetters(db), "Y");

    form->printer().setOutputFileName(pdf);
    station.dbConnection = tmp.file("gone.db");
    click("Command3");
    ASSERT_EQ(prompts.shown.size(), 2);
    EXPECT_EQ(prompts.shown[1].toStdString(), "No new Recorset available");
    EXPECT_TRUE(form->findChild<QLabel*>("lblNote")->text().contains("gone.db"));
}

TEST_F(Form6Window, MissingPicturesAreNotedAndHidden)
{
    form->setPictureDirectory(tmp.file("elsewhere"));
    EXPECT_FALSE(form->findChild<QLabel*>(CardName::Sign)->isVisible());
    EXPECT_FALSE(form->findChild<QLabel*>(CardName::ClubSign)->isVisible());
    const QString note = form->findChild<QLabel*>("lblNote")->text();
    EXPECT_TRUE(note.contains("/Sign.bmp not found")) << note.toStdString();
    EXPECT_TRUE(note.contains("/ClubSign.bmp not found")) << note.toStdString();
    click("Empty");
    EXPECT_TRUE(prompts.shown.isEmpty());
    EXPECT_EQ(pdfText(pdf).count('\f'), 1);
}

TEST_F(Form6Window, PreviewAndExitDoNotBlock)
{
    form->card().setText(CardName::Callsign, "SM5ABC");
    click("cmdPreview");
    auto* preview = form->findChild<QPrintPreviewDialog*>();
    ASSERT_NE(preview, nullptr);
    auto* pages = preview->findChild<QPrintPreviewWidget*>();
    ASSERT_NE(pages, nullptr);
    QTRY_COMPARE(pages->pageCount(), 1);
    preview->reject();
    EXPECT_FALSE(QFile::exists(pdf)); // a preview prints nothing
    click("Exit");
    EXPECT_FALSE(form->isVisible());
}

// "Print to File (PDF)" chosen in the print dialog (which must open without blocking): the dialog
// brings its own paper along, the card that comes out is still 140 x 90 mm.
TEST_F(Form6Window, ThePrintDialogsPdfFileGetsACardPage)
{
    form->printer().setOutputFormat(QPrinter::NativeFormat);
    const QString chosen = tmp.file("chosen.pdf");
    click("cmdPrinter");
    auto* dialog = form->findChild<QPrintDialog*>();
    ASSERT_NE(dialog, nullptr);
    auto* printers = dialog->findChild<QComboBox*>(QStringLiteral("printers"));
    auto* fileName = dialog->findChild<QLineEdit*>(QStringLiteral("filename"));
    ASSERT_TRUE(printers && fileName);
    const int pdfEntry = printers->findText(QStringLiteral("PDF"), Qt::MatchContains);
    ASSERT_GE(pdfEntry, 0);
    printers->setCurrentIndex(pdfEntry);
    fileName->setText(chosen);
    dialog->accept();
    ASSERT_EQ(form->printer().outputFormat(), QPrinter::PdfFormat);
    ASSERT_EQ(form->printer().outputFileName(), chosen);

    click("Empty");
    const QSizeF page = pdfPageSizeMm(chosen);
    EXPECT_NEAR(page.width(), 140.0, 0.5);
    EXPECT_NEAR(page.height(), 90.0, 0.5);
}

TEST_F(Form6Window, ALongCallsignIsShownSmallerToFitItsBox)
{
    auto* cal = form->findChild<QLineEdit*>("Cal");
    ASSERT_NE(cal, nullptr);
    const int normal = cal->font().pixelSize();
    QTest::keyClicks(cal, "DL1ABC");
    EXPECT_EQ(cal->font().pixelSize(), normal); // fits as it is
    cal->clear();
    QTest::keyClicks(cal, "3D2/DL1ABC/QRP");
    EXPECT_LT(cal->font().pixelSize(), normal);
    EXPECT_LE(QFontMetricsF(cal->font()).horizontalAdvance(cal->text()), cal->contentsRect().width());
    EXPECT_EQ(shown(CardName::Callsign), "3D2/DL1ABC/QRP");
}
