#include "ui/gps/Form4.h"

#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "gps/GpsDisplay.h"
#include "gps/GpsLog.h"
#include "gps/GpsPosition.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

struct Form4::Boxes {
    // RMC
    QLineEdit *txtUT, *txtRW, *txtLa, *txtLAD, *txtLo, *txtLOD, *txtSK, *txtCO, *txtDS, *txtMD;
    // GGA
    QLineEdit *txtUT2, *txtLa2, *txtLAD2, *txtLo2, *txtLOD2, *txtQU, *txtSA, *txtHD, *txtALS, *txtALSU,
        *txtALE, *txtALEU;
    // GSA
    QLineEdit *txtASM, *txtMO, *txtPDOP, *txtHDOP, *txtVDOP;
    QLineEdit* txtSat[13] = {};
};

namespace {

// Colours are kept as plain RGB integers with red in the low byte.
QColor colourOf(int rgb)
{
    return QColor(rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
}

QPixmap satellitePicture()
{
    QPixmap pm(48, 48);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.translate(24, 24);
    p.rotate(-35);
    p.setPen(QPen(Qt::darkGray, 1));
    p.setBrush(QColor(30, 80, 160));
    p.drawRect(-22, -5, 14, 10);
    p.drawRect(8, -5, 14, 10);
    p.setBrush(QColor(200, 170, 60));
    p.drawRect(-6, -7, 12, 14);
    p.drawLine(-8, 0, 8, 0);
    return pm;
}

} // namespace

Form4::Form4(Station& station, QWidget* parent)
    : Form4(station, std::make_unique<QtSerialLink>(), parent)
{
}

Form4::Form4(Station& station, std::unique_ptr<SerialLink> link, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , station_(station)
    , link_(std::move(link))
    , boxes_(std::make_unique<Boxes>())
{
    setObjectName(QStringLiteral("form4"));
    setWindowTitle(QStringLiteral("GPS"));
    buildUi();
    connect(command1_, &QPushButton::clicked, this, &Form4::command1Clicked);
    connect(cmdMyLocator_, &QPushButton::clicked, this, &Form4::takeLocatorClicked);
    connect(link_.get(), &SerialLink::readyRead, this, &Form4::onReadyRead);
    connect(link_.get(), &SerialLink::errorOccurred, this, &Form4::onLinkError);
    silenceCheck_.setInterval(kSilenceCheckMs);
    connect(&silenceCheck_, &QTimer::timeout, this, &Form4::checkSilence);
    silenceCheck_.start();
    opened();
    showFix();
}

Form4::~Form4()
{
    if (link_->isOpen())
        link_->close();
}

void Form4::buildUi()
{
    Boxes& b = *boxes_;
    auto box = [this](const char* name, int width = 90) {
        auto* e = new QLineEdit(this);
        e->setObjectName(QString::fromLatin1(name));
        e->setReadOnly(true);
        e->setMinimumWidth(width);
        return e;
    };
    auto group = [this](const QString& title, const QList<std::pair<QString, QLineEdit*>>& rows) {
        auto* g = new QGroupBox(title, this);
        auto* grid = new QGridLayout(g);
        int r = 0;
        for (const auto& [caption, edit] : rows) {
            grid->addWidget(new QLabel(caption, g), r, 0);
            grid->addWidget(edit, r, 1);
            ++r;
        }
        return g;
    };

    b.txtUT = box("txtUT");
    b.txtRW = box("txtRW", 30);
    b.txtLa = box("txtLa");
    b.txtLAD = box("txtLAD", 30);
    b.txtLo = box("txtLo");
    b.txtLOD = box("txtLOD", 30);
    b.txtSK = box("txtSK");
    b.txtCO = box("txtCO");
    b.txtDS = box("txtDS");
    b.txtMD = box("txtMD");
    b.txtUT2 = box("txtUT2");
    b.txtLa2 = box("txtLa2");
    b.txtLAD2 = box("txtLAD2", 30);
    b.txtLo2 = box("txtLo2");
    b.txtLOD2 = box("txtLOD2", 30);
    b.txtQU = box("txtQU");
    b.txtSA = box("txtSA");
    b.txtHD = box("txtHD");
    b.txtALS = box("txtALS");
    b.txtALSU = box("txtALSU", 30);
    b.txtALE = box("txtALE");
    b.txtALEU = box("txtALEU", 30);
    b.txtASM = box("txtASM", 30);
    b.txtMO = box("txtMO");
    b.txtPDOP = box("txtPDOP");
    b.txtHDOP = box("txtHDOP");
    b.txtVDOP = box("txtVDOP");

    auto* rmc = group(QStringLiteral("RMC"),
        { { QStringLiteral("UTC"), b.txtUT }, { QStringLiteral("Status"), b.txtRW },
            { QStringLiteral("Latitude"), b.txtLa }, { QStringLiteral("N/S"), b.txtLAD },
            { QStringLiteral("Longitude"), b.txtLo }, { QStringLiteral("E/W"), b.txtLOD },
            { QStringLiteral("Speed kn"), b.txtSK }, { QStringLiteral("Course"), b.txtCO },
            { QStringLiteral("Date"), b.txtDS }, { QStringLiteral("Mag. var."), b.txtMD } });
    auto* gga = group(QStringLiteral("GGA"),
        { { QStringLiteral("UTC"), b.txtUT2 }, { QStringLiteral("Latitude"), b.txtLa2 },
            { QStringLiteral("N/S"), b.txtLAD2 }, { QStringLiteral("Longitude"), b.txtLo2 },
            { QStringLiteral("E/W"), b.txtLOD2 }, { QStringLiteral("Quality"), b.txtQU },
            { QStringLiteral("Satellites"), b.txtSA }, { QStringLiteral("HDOP"), b.txtHD },
            { QStringLiteral("Altitude"), b.txtALS }, { QStringLiteral("Unit"), b.txtALSU },
            { QStringLiteral("Geoid sep."), b.txtALE }, { QStringLiteral("Unit"), b.txtALEU } });
    auto* gsa = group(QStringLiteral("GSA"),
        { { QStringLiteral("Selection"), b.txtASM }, { QStringLiteral("Mode"), b.txtMO },
            { QStringLiteral("PDOP"), b.txtPDOP }, { QStringLiteral("HDOP"), b.txtHDOP },
            { QStringLiteral("VDOP"), b.txtVDOP } });
    auto* used = new QGridLayout;
    used->addWidget(new QLabel(QStringLiteral("Satellites used"), gsa), 0, 0, 1, 4);
    for (int i = 1; i <= 12; ++i) {
        b.txtSat[i] = box(QStringLiteral("txtSat%1").arg(i).toLatin1().constData(), 30);
        used->addWidget(b.txtSat[i], 1 + (i - 1) / 4, (i - 1) % 4);
    }
    // Every system's used satellites: the boxes above hold only the last GSA read.
    usedSystems_ = new QLabel(gsa);
    usedSystems_->setObjectName(QStringLiteral("lblUsedSystems"));
    usedSystems_->setWordWrap(true);
    used->addWidget(usedSystems_, 4, 0, 1, 4);
    auto* gsaGrid = static_cast<QGridLayout*>(gsa->layout());
    gsaGrid->addLayout(used, 5, 0, 1, 2);
    gsaGrid->setRowStretch(6, 1);

    lblCom3_ = new QLabel(this);
    lblCom3_->setObjectName(QStringLiteral("lblCom3"));
    command1_ = new QPushButton(QStringLiteral("&start"), this);
    command1_->setObjectName(QStringLiteral("Command1"));
    cmdMyLocator_ = new QPushButton(QStringLiteral("Take over as own &locator"), this);
    cmdMyLocator_->setObjectName(QStringLiteral("cmdMyLocator"));
    grid_ = new QLabel(this);
    grid_->setObjectName(QStringLiteral("Grid"));
    QFont big = grid_->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    big.setBold(true);
    grid_->setFont(big);
    image1_ = new QLabel(this);
    image1_->setObjectName(QStringLiteral("Image1"));
    image1_->setPixmap(satellitePicture());
    text1_ = new QPlainTextEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setReadOnly(true);
    text1_->setMaximumBlockCount(kLogLines);
    text1_->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto* top = new QHBoxLayout;
    top->addWidget(lblCom3_);
    top->addWidget(command1_);
    top->addStretch(1);
    top->addWidget(cmdMyLocator_);
    auto* fix = new QHBoxLayout;
    fix->addWidget(image1_);
    fix->addWidget(grid_, 1);
    auto* groups = new QHBoxLayout;
    groups->addWidget(rmc);
    groups->addWidget(gga);
    groups->addWidget(gsa);
    auto* outer = new QVBoxLayout(this);
    outer->addLayout(top);
    outer->addLayout(fix);
    outer->addLayout(groups);
    outer->addWidget(text1_, 1);
}

void Form4::opened()
{
    lblCom3_->setText(QStringLiteral("Com3 PortNr: ") + station_.settings.textAt(Setting::Com3Port));
    LoadStationConfig(station_);
}

void Form4::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        opened();
}

void Form4::command1Clicked()
{
    if (link_->isOpen()) {
        link_->close();
        command1_->setText(QStringLiteral("&start"));
        showFix();
        return;
    }
    const QString port = station_.settings.textAt(Setting::Com3Port);
    if (!link_->open(port, station_.settings.textAt(Setting::Com3Settings))) {
        qCInfo(lcGps) << "Com3 not opened:" << link_->errorText();
        station_.prompts.information(QStringLiteral("Com3(") + port + QStringLiteral(")Port not open"));
        return;
    }
    command1_->setText(QStringLiteral("&stop"));
    silence_ = SilenceWatch(); // counted afresh from the opening
    showFix();
}

void Form4::onLinkError(const QString& text)
{
    // A receiver unplugged while running: say so in the log, and show the port as stopped.
    if (!link_->isOpen() && command1_->text() == u"&stop") {
        command1_->setText(QStringLiteral("&start"));
        log(text);
    }
    showFix();
}

void Form4::checkSilence()
{
    const SilenceWatch::State before = silence_.state();
    silence_.tick(link_->isOpen() || otherSource_, std::exchange(heard_, false));
    if (silence_.state() != before)
        showFix();
}

void Form4::onReadyRead()
{
    bytesArrived(link_->readAll());
}

void Form4::bytesArrived(const QByteArray& bytes)
{
    if (!link_->isOpen())
        otherSource_ = true; // gpsd
    heard_ = heard_ || !bytes.isEmpty();
    if (heard_ && silence_.state() == SilenceWatch::State::Silent)
        checkSilence();
    const QList<GpsReceiver::Decoded> decoded = receiver_.feed(bytes);
    for (const GpsReceiver::Decoded& d : decoded)
        showDecoded(d);
    showFix();
}

void Form4::showDecoded(const GpsReceiver::Decoded& d)
{
    using namespace GpsDisplay;
    Boxes& b = *boxes_;
    log(d.sentence);
    switch (d.type) {
    case NmeaReceiveBuffer::Type::RMC: {
        const RmcData& r = receiver_.rmc();
        b.txtUT->setText(r.time);
        b.txtRW->setText(validityText(r.valid));
        b.txtLa->setText(numberText(r.latitude));
        b.txtLAD->setText(r.latHemisphere);
        b.txtLo->setText(numberText(r.longitude));
        b.txtLOD->setText(r.lonHemisphere);
        b.txtSK->setText(numberText(r.speed));
        b.txtCO->setText(numberText(r.course));
        b.txtDS->setText(r.date);
        b.txtMD->setText(numberText(r.magneticVariation));
        break;
    }
    case NmeaReceiveBuffer::Type::GGA: {
        const GgaData& g = receiver_.gga();
        b.txtUT2->setText(g.time);
        b.txtLa2->setText(numberText(g.latitude));
        b.txtLAD2->setText(g.latHemisphere);
        b.txtLo2->setText(numberText(g.longitude));
        b.txtLOD2->setText(g.lonHemisphere);
        b.txtQU->setText(g.quality);
        b.txtSA->setText(QString::number(g.satellites));
        b.txtHD->setText(numberText(g.hdop));
        b.txtALS->setText(numberText(g.altitude));
        b.txtALSU->setText(unitText(g.altitudeUnit));
        b.txtALE->setText(numberText(g.separation));
        b.txtALEU->setText(unitText(g.separationUnit));
        break;
    }
    case NmeaReceiveBuffer::Type::GSA: {
        const GsaData& a = receiver_.gsa();
        b.txtASM->setText(selectionText(a.automatic));
        b.txtMO->setText(a.fix);
        for (int i = 1; i <= 12; ++i)
            b.txtSat[i]->setText(entryText(a.satellites[i]));
        b.txtPDOP->setText(numberText(a.pdop));
        b.txtHDOP->setText(numberText(a.hdop));
        b.txtVDOP->setText(numberText(a.vdop));
        break;
    }
    case NmeaReceiveBuffer::Type::GSV: {
        const QString groups = gsvGroups(d.gsv);
        if (!groups.isEmpty())
            log(groups);
        break;
    }
    }
}

void Form4::showFix()
{
    // A stopped, lost or silent source has no fix, and its last sentences stand greyed; a live
    // one shows its fix from GSA, GGA or RMC, stale data none (not `txtMO` alone).
    const bool live = (link_->isOpen() || otherSource_) && silence_.state() != SilenceWatch::State::Silent;
    for (QGroupBox* group : findChildren<QGroupBox*>())
        group->setEnabled(live);
    const FixKind fix = live ? receiver_.fix() : FixKind::None;
    usedSystems_->setText(GpsDisplay::usedText(receiver_));
    const auto position = receiver_.position();
    grid_->setText(GpsDisplay::gridText(fix, position));
    QPalette pal = grid_->palette();
    pal.setColor(QPalette::WindowText, colourOf(GpsDisplay::gridColour(fix)));
    grid_->setPalette(pal);
    const bool located = fix != FixKind::None && position.has_value();
    image1_->setVisible(located);
    cmdMyLocator_->setEnabled(located);
}

void Form4::takeLocatorClicked()
{
    const auto position = receiver_.position();
    if (!position || receiver_.fix() == FixKind::None || !cmdMyLocator_->isEnabled())
        return;
    const QString locator = PositionToLocator(*position, 6);
    if (!station_.prompts.question(QStringLiteral("Take over %1 as own locator?").arg(locator)))
        return;
    station_.settings.setText(Setting::MyLocator, locator);
    station_.myLocator = locator;
    if (SaveStationConfig(station_))
        log(QStringLiteral("Own locator set to ") + locator);
}

void Form4::log(const QString& line)
{
    text1_->appendPlainText(line);
}
