#include "ui/form2/Form2.h"

#include "core/ExtensionSettings.h"
#include "core/MainPorts.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "geo/Locator.h"
#include "ui/form1/Form1.h"
#include "ui/widgets/OptionGroup.h"

#include <QCheckBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

namespace {

QLineEdit* edit(const QString& name, QWidget* parent)
{
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    return e;
}

QCheckBox* check(const QString& name, const QString& text, QWidget* parent)
{
    auto* c = new QCheckBox(text, parent);
    c->setObjectName(name);
    return c;
}

int ticked(const QCheckBox* c)
{
    return c->isChecked() ? 1 : 0;
}

} // namespace

Form2::Form2(Station& station, Form1& main, QWidget* parent)
    : QDialog(parent)
    , station_(station)
    , main_(main)
{
    setObjectName(QStringLiteral("form2"));
    setWindowTitle(QStringLiteral("Initial"));
    buildUi();

    for (int row = 1; row <= 4; ++row)
        connect(number_[row], &QLineEdit::textEdited, this, [this, row] { checkUnique(row); });
    number_[1]->installEventFilter(this);
    command1_->installEventFilter(this);
    connect(text3_, &QLineEdit::returnPressed, text4_, qOverload<>(&QWidget::setFocus));
    connect(text4_, &QLineEdit::returnPressed, command1_, qOverload<>(&QWidget::setFocus));
    connect(lineB_, &QCheckBox::toggled, this, [this](bool on) { station_.lineBeacons = on; });
    connect(geColor_, &QSlider::valueChanged, this,
        [this](int v) { station_.transparency = QString::number(v); });
    connect(command1_, &QPushButton::clicked, this, &Form2::doneClicked);
}

void Form2::buildUi()
{
    auto* outer = new QVBoxLayout(this);

    auto* own = new QGridLayout;
    text3_ = edit(QStringLiteral("text3"), this);
    text4_ = edit(QStringLiteral("text4"), this);
    own->addWidget(new QLabel(QStringLiteral("MyCallsign:"), this), 0, 0);
    own->addWidget(text3_, 0, 1);
    own->addWidget(new QLabel(QStringLiteral("MyGrid:"), this), 1, 0);
    own->addWidget(text4_, 1, 1);
    own->addWidget(new QLabel(QStringLiteral("6,8 or 10 Digit Locator"), this), 1, 2);
    own->setColumnStretch(1, 1);
    outer->addLayout(own);

    auto* portsBox = new QGroupBox(this);
    auto* ports = new QGridLayout(portsBox);
    auto* heading = new QLabel(
        QStringLiteral("RS232 Com                             FT991        ON/OFF     PortNr      Settings"),
        portsBox);
    heading->setObjectName(QStringLiteral("portHeading"));
    ports->addWidget(heading, 0, 0, 1, 5);
    const QString rowLabels[] = { QString(), QStringLiteral("Com1    TRX1 Yaesu FT847"),
        QStringLiteral("Com2    TRX2 Yaesu FT847"), QStringLiteral("Com3                 GPS Ctr NMEA Loc"),
        QStringLiteral("Com4    Rotor Ctr GHE RT21") };
    // rig rows carry the text-dialect switch in the FT991 column
    check2_ = check(QStringLiteral("Check2"), QString(), portsBox);
    check2_->setToolTip(QStringLiteral("The rig on Com1 speaks the text commands (MD03; FA...;)"));
    check3_ = check(QStringLiteral("Check3"), QString(), portsBox);
    check3_->setToolTip(QStringLiteral("The rig on Com2 speaks the text commands (MD03; FA...;)"));
    for (int row = 1; row <= 4; ++row) {
        check_[row] = check(QStringLiteral("Checkcom%1").arg(row), QString(), portsBox);
        number_[row] = edit(QStringLiteral("TxtCom%1PNr").arg(row), portsBox);
        number_[row]->setMaximumWidth(120);
        lineSettings_[row] = edit(QStringLiteral("TxtCom%1settings").arg(row), portsBox);
        lineSettings_[row]->setMaximumWidth(110);
        ports->addWidget(new QLabel(rowLabels[row], portsBox), row, 0);
        if (row == 1)
            ports->addWidget(check2_, row, 1);
        if (row == 2)
            ports->addWidget(check3_, row, 1);
        ports->addWidget(check_[row], row, 2);
        ports->addWidget(number_[row], row, 3);
        ports->addWidget(lineSettings_[row], row, 4);
    }
    ports->setColumnStretch(0, 1);
    outer->addWidget(portsBox);

    auto* clusterBox = new QGroupBox(this);
    auto* cl = new QGridLayout(clusterBox);
    conHost_ = edit(QStringLiteral("ConHost"), clusterBox);
    conPort_ = edit(QStringLiteral("ConPort"), clusterBox);
    conHost1_ = edit(QStringLiteral("ConHost1"), clusterBox);
    conPort1_ = edit(QStringLiteral("ConPort1"), clusterBox);
    conPort_->setMaximumWidth(70);
    conPort1_->setMaximumWidth(70);
    cluster_ = new OptionGroup({ QStringLiteral("1"), QStringLiteral("2") }, Qt::Vertical, clusterBox);
    cluster_->setObjectName(QStringLiteral("uSc_MultiOption1"));
    cluster_->setTitle(QStringLiteral("use"));
    cl->addWidget(new QLabel(QStringLiteral("DXCluster: 1"), clusterBox), 0, 0);
    cl->addWidget(conHost_, 0, 1);
    cl->addWidget(conPort_, 0, 2);
    cl->addWidget(new QLabel(QStringLiteral("DXCluster: 2"), clusterBox), 1, 0);
    cl->addWidget(conHost1_, 1, 1);
    cl->addWidget(conPort1_, 1, 2);
    cl->addWidget(cluster_, 0, 3, 2, 1);
    cl->setColumnStretch(1, 1);
    outer->addWidget(clusterBox);

    auto* qslBox = new QGroupBox(this);
    auto* ql = new QVBoxLayout(qslBox);
    auto* qslLabel = new QLabel(
        QStringLiteral("QSL Text fields 1 line= info data 2-5 line free data line6 address 7 foot data"),
        qslBox);
    qslLabel->setWordWrap(true);
    ql->addWidget(qslLabel);
    const char* const qslNames[] = { "TXTinfo", "TXTline2", "TXTline3", "TXTline4", "TXTadd", "TXTfoot" };
    for (int i = 0; i < 6; ++i) {
        qsl_[i] = edit(QString::fromLatin1(qslNames[i]), qslBox);
        ql->addWidget(qsl_[i]);
    }
    outer->addWidget(qslBox);

    auto* mapBox = new QGroupBox(this);
    auto* ml = new QGridLayout(mapBox);
    check1_ = check(QStringLiteral("Check1"),
        QStringLiteral("Color  line depends on prop  RS=blue Tr=red Es=green Ms=grey Au=pink"), mapBox);
    geColor_ = new QSlider(Qt::Horizontal, mapBox);
    geColor_->setObjectName(QStringLiteral("GEcolor"));
    geColor_->setRange(0, 255);
    lineB_
        = check(QStringLiteral("ChecklineB"), QStringLiteral("Line from you to stn on GE Beacons"), mapBox);
    lineS_ = check(
        QStringLiteral("ChecklineS"), QStringLiteral("Line from you to stn wkd on GE Squares"), mapBox);
    ml->addWidget(check1_, 0, 0, 1, 2);
    ml->addWidget(new QLabel(QStringLiteral("Transparency of square on GE"), mapBox), 1, 0);
    ml->addWidget(geColor_, 1, 1);
    ml->addWidget(lineB_, 2, 0, 1, 2);
    ml->addWidget(lineS_, 3, 0, 1, 2);
    outer->addWidget(mapBox);

    command1_ = new QPushButton(QStringLiteral("Done"), this);
    command1_->setObjectName(QStringLiteral("Command1"));
    command1_->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(command1_);
    outer->addLayout(buttons);
}

void Form2::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        reload();
    QDialog::showEvent(event);
}

void Form2::reload()
{
    LoadStationConfig(station_);
    const SettingsTable& t = station_.settings;
    text3_->setText(t.textAt(Setting::MyCall));
    text4_->setText(t.textAt(Setting::MyLocator));
    for (int row = 1; row <= 4; ++row) {
        const int used = Setting::Com1Used + 3 * (row - 1);
        check_[row]->setChecked(t.intAt(used) == 1);
        number_[row]->setText(t.textAt(used + 1));
        lineSettings_[row]->setText(t.textAt(used + 2));
    }
    conHost_->setText(t.textAt(Setting::Cluster1Host));
    conPort_->setText(t.textAt(Setting::Cluster1Port));
    conHost1_->setText(t.textAt(Setting::Cluster2Host));
    conPort1_->setText(t.textAt(Setting::Cluster2Port));
    cluster_->setValue(t.intAt(Setting::ClusterChoice));
    for (int i = 0; i < 6; ++i)
        qsl_[i]->setText(t.textAt(Setting::QslInfo + i));
    check1_->setChecked(t.boolAt(Setting::ColourByProp));
    geColor_->setValue(t.intAt(Setting::Transparency));
    lineB_->setChecked(t.intAt(Setting::LineBeacons) != 0);
    lineS_->setChecked(t.intAt(Setting::LineStations) != 0);
    check2_->setChecked(t.intAt(Setting::Check2) != 0);
    check3_->setChecked(t.intAt(Setting::Check3) != 0);
}

void Form2::checkUnique(int row)
{
    const QString text = number_[row]->text();
    for (int other = 1; other <= 4; ++other) {
        if (other == row || number_[other]->text() != text)
            continue;
        station_.prompts.information(DuplicateText);
        if (!text.isEmpty()) {
            // deliberate: emptying the box is a change too and is checked again, so an empty
            // box elsewhere gives the message a second time
            number_[row]->clear();
            checkUnique(row);
        }
        return;
    }
}

bool Form2::eventFilter(QObject* watched, QEvent* event)
{
    // Enter on the focused "Done" presses it; it stays no auto-default button, so that Enter
    // in the boxes above only moves the focus and never saves
    if (watched == command1_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            command1_->click();
            return true;
        }
    }
    if (watched == number_[1] && event->type() == QEvent::FocusIn) {
        const Qt::FocusReason why = static_cast<QFocusEvent*>(event)->reason();
        // coming back from the message box or another window is not a new visit
        if (why != Qt::ActiveWindowFocusReason && why != Qt::PopupFocusReason)
            comGuard();
    }
    return QDialog::eventFilter(watched, event);
}

void Form2::comGuard()
{
    // deliberate: only Com1 is guarded; the other rows can be edited while their port is in use
    if (check_[1]->isChecked())
        station_.prompts.information(QStringLiteral(" No change possible while Com1(") + main_.portNumber(1)
            + QStringLiteral(") active"));
}

void Form2::doneClicked()
{
    // A refused locator leaves the station as it was: nothing of the dialog is taken over.
    const QString locator = text4_->text().toUpper();
    CheckLocator(station_, locator);
    if (station_.locatorInvalid) {
        text4_->setFocus();
        return;
    }

    SettingsTable& t = station_.settings;
    t.setText(Setting::MyCall, text3_->text());
    station_.myCall = text3_->text();
    t.setText(Setting::MyLocator, text4_->text());
    station_.myLocator = locator;

    const QString sensorPort = ExtensionSettings::value(ExtensionKey::SensorPort);
    for (int row = 1; row <= 4; ++row) {
        const int used = Setting::Com1Used + 3 * (row - 1);
        t.setInt16(used, qint16(ticked(check_[row])));
        if (check_[row]->isChecked()) {
            if (!main_.isPortOpen(row)) {
                const MainPorts::Setup s = MainPorts::resolve(
                    row, true, number_[row]->text(), lineSettings_[row]->text(), sensorPort);
                main_.openPort(row, s.portText, s.settings);
            }
        } else {
            main_.closePort(row);
        }
        t.setText(used + 1, number_[row]->text());
        t.setText(used + 2, lineSettings_[row]->text());
    }

    t.setText(Setting::Cluster1Host, conHost_->text());
    t.setText(Setting::Cluster1Port, conPort_->text());
    t.setText(Setting::Cluster2Host, conHost1_->text());
    t.setText(Setting::Cluster2Port, conPort1_->text());
    t.setInt16(Setting::ClusterChoice, qint16(cluster_->value()));
    for (int i = 0; i < 6; ++i)
        t.setText(Setting::QslInfo + i, qsl_[i]->text());
    t.setBool(Setting::ColourByProp, check1_->isChecked());
    t.setText(Setting::Transparency, QString::number(geColor_->value()));
    t.setInt16(Setting::LineBeacons, qint16(ticked(lineB_)));
    station_.lineBeacons = lineB_->isChecked();
    t.setInt16(Setting::LineStations, qint16(ticked(lineS_)));
    station_.lineStations = lineS_->isChecked();
    t.setInt16(Setting::Check2, qint16(ticked(check2_)));
    t.setInt16(Setting::Check3, qint16(ticked(check3_)));

    SaveStationConfig(station_);
    main_.show();
    close();
}
