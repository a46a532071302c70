#include "ui/form1/Form1Ui.h"

#include "ui/form1/Compass.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

QGroupBox* area(const QString& name, const QString& title, QWidget* parent)
{
    auto* box = new QGroupBox(title, parent);
    box->setObjectName(name);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(8, 6, 8, 8);
    layout->setSpacing(6);
    return box;
}

QLabel* named(const QString& name, const QString& text, QWidget* parent)
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(name);
    return l;
}

QLineEdit* edit(const QString& name, QWidget* parent)
{
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

QAction* menuEntry(QMenuBar* bar, const QString& name, const QString& text)
{
    QAction* a = bar->addAction(text);
    a->setObjectName(name);
    return a;
}

} // namespace

QWidget* Form1Ui::placeholder(const QString& text, QWidget* parent)
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(QStringLiteral("placeholder"));
    l->setAlignment(Qt::AlignCenter);
    l->setMinimumHeight(60);
    l->setStyleSheet(QStringLiteral("color: #888; font-style: italic;"));
    return l;
}

void Form1Ui::setupUi(QMainWindow* window)
{
    window->setObjectName(QStringLiteral("form1"));
    window->setWindowTitle(QStringLiteral("Kestrel"));

    QMenuBar* bar = window->menuBar();
    mnuARLog = menuEntry(bar, QStringLiteral("mnuARLog"), QStringLiteral("&Logbook"));
    mnuGPS = menuEntry(bar, QStringLiteral("mnuGPS"), QStringLiteral("&GPS"));
    mnuInitial = menuEntry(bar, QStringLiteral("mnuInitial"), QStringLiteral("&Initial"));
    mnuQSL = menuEntry(bar, QStringLiteral("mnuQSL"), QStringLiteral("&QSL print"));
    mnuPacket = menuEntry(bar, QStringLiteral("mnuPacket"), QStringLiteral("DX &Cluster"));

    mainSplitter = new QSplitter(Qt::Vertical, window);
    mainSplitter->setObjectName(QStringLiteral("mainSplitter"));
    mainSplitter->setChildrenCollapsible(false);
    panelScroll = new QScrollArea(mainSplitter);
    panelScroll->setObjectName(QStringLiteral("panelScroll"));
    panelScroll->setWidgetResizable(true);
    panelScroll->setFrameShape(QFrame::NoFrame);
    auto* central = new QWidget(panelScroll);
    central->setObjectName(QStringLiteral("stationPanel"));
    auto* grid = new QGridLayout(central);
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setSpacing(8);

    rigBox = area(QStringLiteral("rigBox"), QStringLiteral("Rig"), central);
    rotatorBox = area(QStringLiteral("rotatorBox"), QStringLiteral("Rotator"), central);
    sensorBox = area(QStringLiteral("sensorBox"), QStringLiteral("Sensor && weather"), central);
    keyerBox = area(QStringLiteral("keyerBox"), QStringLiteral("CW keyer"), central);
    spectrumBox = area(QStringLiteral("spectrumBox"), QStringLiteral("Spectrum"), central);
    beaconBox = area(QStringLiteral("beaconBox"), QStringLiteral("Beacon list"), mainSplitter);

    rigBox->layout()->addWidget(placeholder(QStringLiteral("rig control"), rigBox));
    keyerBox->layout()->addWidget(placeholder(QStringLiteral("CW keyer"), keyerBox));
    spectrumBox->layout()->addWidget(placeholder(QStringLiteral("audio spectrum"), spectrumBox));
    beaconBox->layout()->addWidget(placeholder(QStringLiteral("beacon list"), beaconBox));

    // rotator: compass and read-outs beside it, the locator box below
    auto* rotorTop = new QWidget(rotatorBox);
    rotorTop->setObjectName(QStringLiteral("rotatorDisplay"));
    auto* top = new QGridLayout(rotorTop);
    top->setContentsMargins(0, 0, 0, 0);
    Picture1 = new Compass(rotorTop);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Picture1->setMinimumSize(160, 160);
    Label1 = named(QStringLiteral("Label1"), QString(), rotorTop);
    QFont big = Label1->font();
    big.setPointSizeF(big.pointSizeF() * 2.2);
    big.setBold(true);
    Label1->setFont(big);
    Label1->setMinimumWidth(90);
    Label1->setAlignment(Qt::AlignCenter);
    Label1->setFrameShape(QFrame::StyledPanel);
    Label1->setToolTip(QStringLiteral("Heading read back from the rotator"));
    Label30 = named(QStringLiteral("Label30"), QString(), rotorTop);
    Label30->setAlignment(Qt::AlignCenter);
    VCX = named(QStringLiteral("VCX"), QString(), rotorTop);
    VCX->setMinimumHeight(28);
    VCX->setAlignment(Qt::AlignCenter);
    VCX->setStyleSheet(
        QStringLiteral("background: black; color: rgb(0,255,0); font-family: Arial; padding: 3px;"));
    auto* azCaption = new QLabel(QStringLiteral("Azimuth"), rotorTop);
    azCaption->setAlignment(Qt::AlignCenter);
    top->addWidget(Picture1, 0, 0, 4, 1);
    top->addWidget(azCaption, 0, 1);
    top->addWidget(Label1, 1, 1);
    top->addWidget(Label30, 2, 1);
    top->setRowStretch(3, 1);
    top->addWidget(VCX, 4, 0, 1, 2);
    top->setColumnStretch(0, 1);

    auto* locatorRow = new QWidget(rotatorBox);
    locatorRow->setObjectName(QStringLiteral("locatorBox"));
    auto* lr = new QGridLayout(locatorRow);
    lr->setContentsMargins(0, 0, 0, 0);
    Locator = edit(QStringLiteral("Locator"), locatorRow);
    Locator->setPlaceholderText(QStringLiteral("JO31HH"));
    Locator->setToolTip(QStringLiteral("Locator of the other station; Enter shows bearing and distance"));
    Text160 = edit(QStringLiteral("Text160"), locatorRow);
    Text160->setMaximumWidth(70);
    Text160->setToolTip(QStringLiteral("Azimuth to turn to, whole degrees"));
    Richtung = edit(QStringLiteral("Richtung"), locatorRow);
    Richtung->setReadOnly(true);
    Richtung->setFocusPolicy(Qt::ClickFocus);
    lr->addWidget(new QLabel(QStringLiteral("Locator"), locatorRow), 0, 0);
    lr->addWidget(Locator, 0, 1);
    lr->addWidget(new QLabel(QStringLiteral("Turn to"), locatorRow), 0, 2);
    lr->addWidget(Text160, 0, 3);
    lr->addWidget(Richtung, 1, 0, 1, 4);
    lr->setColumnStretch(1, 1);

    rotatorBox->layout()->addWidget(rotorTop);
    rotatorBox->layout()->addWidget(locatorRow);

    // sensor box and weather line
    auto* sensorForm = new QFormLayout;
    Label31 = named(QStringLiteral("Label31"), QString(), sensorBox);
    Label28 = named(QStringLiteral("Label28"), QString(), sensorBox);
    Label28->setWordWrap(true);
    Label28->setMinimumWidth(120);
    Label29 = named(QStringLiteral("Label29"), QString(), sensorBox);
    sensorForm->addRow(QStringLiteral("Temperature:"), Label31);
    sensorForm->addRow(QStringLiteral("Weather:"), Label28);
    sensorForm->addRow(QStringLiteral("Note:"), Label29);
    static_cast<QVBoxLayout*>(sensorBox->layout())->addLayout(sensorForm);
    static_cast<QVBoxLayout*>(sensorBox->layout())->addStretch(1);

    grid->addWidget(rigBox, 0, 0);
    grid->addWidget(rotatorBox, 0, 1);
    grid->addWidget(sensorBox, 0, 2);
    grid->addWidget(keyerBox, 1, 0);
    grid->addWidget(spectrumBox, 1, 1, 1, 2);
    grid->setColumnStretch(0, 5);
    grid->setColumnStretch(1, 4);
    grid->setColumnStretch(2, 2);
    panelScroll->setWidget(central);

    // The beacon list gets the rest of the height and grows with the window; the panels above
    // scroll when the screen is small.
    mainSplitter->addWidget(panelScroll);
    mainSplitter->addWidget(beaconBox);
    mainSplitter->setStretchFactor(0, 0);
    mainSplitter->setStretchFactor(1, 1);
    window->setCentralWidget(mainSplitter);
    window->statusBar()->setObjectName(QStringLiteral("statusBar"));

    // port lamps: a row of their own above the status bar, so that long port names take room
    // neither from the status bar's text nor from the menu
    auto* lamps = new QToolBar(QStringLiteral("Ports"), window);
    lamps->setObjectName(QStringLiteral("portLamps"));
    lamps->setMovable(false);
    lamps->setFloatable(false);
    lamps->toggleViewAction()->setEnabled(false);
    for (int n = 1; n <= 4; ++n) {
        lblCom[n] = named(QStringLiteral("lblCom%1").arg(n), QStringLiteral("Com%1").arg(n), lamps);
        lblCom[n]->setFrameShape(QFrame::Panel);
        lblCom[n]->setFrameShadow(QFrame::Sunken);
        lblCom[n]->setContentsMargins(4, 0, 4, 0);
    }
    for (int n : { 1, 2, 4, 3 }) {
        lamps->addWidget(lblCom[n]);
        lamps->addSeparator();
    }
    window->addToolBar(Qt::BottomToolBarArea, lamps);
}
