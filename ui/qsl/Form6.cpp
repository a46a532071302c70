#include "ui/qsl/Form6.h"

#include "core/Station.h"
#include "core/StationConfig.h"
#include "qsl/CardNames.h"
#include "qsl/QslPrintJob.h"
#include "qsl/QslPrintRun.h"
#include "qsl/QslText.h"
#include "ui/qsl/CardFace.h"

#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// The busy mouse pointer for as long as a print lasts.
class BusyCursor {
public:
    BusyCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QGuiApplication::restoreOverrideCursor(); }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

} // namespace

Form6::Form6(Station& station, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , station_(station)
{
    setObjectName(QStringLiteral("Form6"));
    setWindowTitle(QStringLiteral("QSL print"));
    QslPrintJob::useCardPage(printer_);
    buildUi();
    loadStationLines();
    setPictureDirectory(QCoreApplication::applicationDirPath());
    showPrinter();
}

Form6::~Form6() = default;

void Form6::buildUi()
{
    card_ = new CardFace(CardDesign::standard(), this);

    const auto button = [this](const char* name, const QString& caption, const QString& tip) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        return b;
    };
    QPushButton* command1 = button(
        "Command1", QStringLiteral("Print &Y"), QStringLiteral("Cards of contacts with QSL Y (card due)"));
    QPushButton* command3 = button("Command3", QStringLiteral("Print &S"),
        QStringLiteral("Cards of contacts with QSL S (card to send)"));
    QPushButton* command4 = button("Command4", QStringLiteral("Print &T (TNX)"),
        QStringLiteral("Answer the cards received: contacts with QSL T"));
    QPushButton* beacon = button("BeaconPrint", QStringLiteral("&Beacons B"),
        QStringLiteral("Reception reports: contacts with QSL B"));
    QPushButton* empty
        = button("Empty", QStringLiteral("&Empty card"), QStringLiteral("One card as the window shows it"));
    QPushButton* again
        = button("StopPrint", QStringLiteral("Print &again"), QStringLiteral("The last run's letter again"));
    QPushButton* exit = button("Exit", QStringLiteral("E&xit"), QString());
    QPushButton* printerButton = button(
        "cmdPrinter", QStringLiteral("&Printer..."), QStringLiteral("Choose the printer or a PDF file"));
    QPushButton* preview = button("cmdPreview", QStringLiteral("Pre&view..."),
        QStringLiteral("The card as it stands, before printing"));

    connect(command1, &QPushButton::clicked, this, [this] { printRun(QslText::LetterDue); });
    connect(command3, &QPushButton::clicked, this, [this] { printRun(QslText::LetterSend); });
    connect(command4, &QPushButton::clicked, this, [this] { printRun(QslText::LetterThanks); });
    connect(beacon, &QPushButton::clicked, this, [this] { printRun(QslText::LetterBeacon); });
    connect(empty, &QPushButton::clicked, this, &Form6::printWindowCard);
    connect(again, &QPushButton::clicked, this, &Form6::stopPrintClicked);
    connect(exit, &QPushButton::clicked, this, &QWidget::close);
    connect(printerButton, &QPushButton::clicked, this, &Form6::openPrintDialog);
    connect(preview, &QPushButton::clicked, this, &Form6::openPreview);

    auto* runs = new QHBoxLayout;
    for (QPushButton* b : { command1, command3, command4, beacon, empty, again })
        runs->addWidget(b);
    auto* tools = new QHBoxLayout;
    printerLine_ = new QLabel(this);
    printerLine_->setObjectName(QStringLiteral("lblPrinter"));
    tools->addWidget(printerLine_, 1);
    for (QPushButton* b : { printerButton, preview, exit })
        tools->addWidget(b);
    noteLine_ = new QLabel(this);
    noteLine_->setObjectName(QStringLiteral("lblNote"));
    noteLine_->setWordWrap(true);
    noteLine_->setTextFormat(Qt::PlainText);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(card_, 0, Qt::AlignHCenter);
    layout->addLayout(runs);
    layout->addLayout(tools);
    layout->addWidget(noteLine_);
}

void Form6::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    loadStationLines();
}

void Form6::loadStationLines()
{
    // The settings dialog may have changed the card lines since the window was made.
    LoadStationConfig(station_);
    CardDesign d = card_->design();
    setStationLines(d, station_.settings);
    card_->setTexts(d);
}

void Form6::setPictureDirectory(const QString& directory)
{
    pictureDir_ = directory;
    pictures_ = SignaturePictures::load(directory);
    card_->showPictures(pictures_);
    note(pictures_.notes.join(QLatin1Char('\n')));
}

void Form6::note(const QString& text)
{
    noteLine_->setText(text);
}

void Form6::showPrinter()
{
    QString target;
    if (printer_.outputFormat() != QPrinter::PdfFormat)
        target = QStringLiteral("printer %1").arg(printer_.printerName());
    else if (!printer_.outputFileName().isEmpty())
        target = QStringLiteral("PDF file %1").arg(QDir::toNativeSeparators(printer_.outputFileName()));
    else
        target = QStringLiteral("nowhere yet: choose a printer or PDF file (Printer...)");
    printerLine_->setText(QStringLiteral("Cards go to: ") + target);
}

bool Form6::printerReady()
{
    showPrinter();
    const QString problem = QslPrintJob::preflight(printer_);
    if (problem.isEmpty())
        return true;
    station_.prompts.information(
        QStringLiteral("Printing is not possible: %1\nNo QSL letter has been changed.").arg(problem));
    return false;
}

void Form6::printRun(const QString& letter)
{
    letter_ = letter;
    if (!printerReady())
        return;
    QslRunOutcome out;
    {
        BusyCursor busy;
        CardDesign design = card_->design();
        out = QslPrintRun::run(station_.dbConnection, letter, design, printer_, pictures_);
        card_->setTexts(design);
    }
    note((pictures_.notes + out.notes).join(QLatin1Char('\n')));
    for (const QString& message : std::as_const(out.messages))
        station_.prompts.information(message);
    if (!out.print.ok && !out.marked.isEmpty()
        && station_.prompts.question(QslPrintRun::restoreQuestion(int(out.marked.size()))))
        station_.prompts.information(QslPrintRun::restoreLetters(station_.dbConnection, out.marked));
}

void Form6::printWindowCard()
{
    letter_ = QslText::LetterEmpty;
    if (!printerReady())
        return;
    PrintResult result;
    {
        BusyCursor busy;
        CardDesign design = card_->design();
        QslPrintRun::completeGreeting(design);
        card_->setText(CardName::Greeting, design.text(CardName::Greeting));
        result = QslPrintJob::print(printer_, design, {}, pictures_);
    }
    note((pictures_.notes + QStringList(result.ok ? QStringLiteral("The card has been printed.") : QString()))
             .join(QLatin1Char('\n'))
             .trimmed());
    if (!result.ok)
        station_.prompts.information(QslPrintRun::printFailedMessage(result.error, {}));
}

void Form6::stopPrintClicked()
{
    if (letter_.isEmpty()) {
        note(QStringLiteral("No run yet: choose Y, S, T or B first."));
        return;
    }
    // deliberate: after "Empty" the letter is "X", and the run looks for contacts marked X.
    printRun(letter_);
}

void Form6::openPrintDialog()
{
    auto* dialog = new QPrintDialog(&printer_, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("QSL card printer"));
    connect(dialog, &QDialog::finished, this, [this](int result) {
        // The dialog puts its own paper (Letter or A4) on the printer; a card stays a card.
        if (result == QDialog::Accepted)
            QslPrintJob::useCardPage(printer_);
        showPrinter();
    });
    dialog->open();
}

void Form6::openPreview()
{
    auto* preview = new QPrintPreviewDialog(&printer_, this);
    preview->setAttribute(Qt::WA_DeleteOnClose);
    preview->setWindowTitle(QStringLiteral("QSL card preview"));
    connect(preview, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* printer) {
        CardDesign design = card_->design();
        QslPrintRun::completeGreeting(design);
        QPainter painter(printer);
        QslPrintJob::paintPages(painter, *printer, design, {}, pictures_);
    });
    connect(preview, &QDialog::finished, this, &Form6::showPrinter);
    preview->open();
}
