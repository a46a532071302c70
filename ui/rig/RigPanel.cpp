#include "ui/rig/RigPanel.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/rig/RigController.h"
#include "ui/rig/BackColour.h"
#include "ui/widgets/OptionGroup.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

namespace {
constexpr int Red = 255;
constexpr int Green = 65280;

OptionGroup* group(const QString& name, const QString& title, const QStringList& captions, QWidget* parent)
{
    auto* g = new OptionGroup(captions, Qt::Horizontal, parent);
    g->setObjectName(name);
    g->setTitle(title);
    g->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    return g;
}

QPushButton* button(const QString& name, const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

// Every click runs the handler, also on the option already chosen.
template <typename Handler> void onClick(OptionGroup* g, Handler handler)
{
    for (int i = 1; i <= g->count(); ++i)
        QObject::connect(g->button(i), &QRadioButton::clicked, g, [handler, i] { handler(i); });
}

// The VHF band a frequency (10 Hz units) lies in.
int bandOf(qint64 counter)
{
    return counter < 10000000 ? 1 : counter < 30000000 ? 2 : 3;
}
} // namespace

RigPanel::RigPanel(Station& station, StationPorts& ports, QWidget* parent)
    : QWidget(parent)
    , station_(station)
    , rig_(new RigController(station, ports, this))
{
    setObjectName(QStringLiteral("rigPanel"));
    optFT847_ = group(
        QStringLiteral("OptFT847"), QStringLiteral("FT847"), { "100", "200", "900", "CW", "SSB" }, this);
    optBandV_ = group(
        QStringLiteral("OptBandV"), QStringLiteral("VHF / UHF"), { "50 MHz", "144 MHz", "432 MHz" }, this);
    optBandR_ = group(QStringLiteral("OptBandR"), QStringLiteral("Microwave"),
        { "1296", "2320", "3400", "5760", "10368", "24048", "47088", "76032", "122G" }, this);
    optQRG_ = group(
        QStringLiteral("OptQRG"), QStringLiteral("QRG"), { "0.1kHz", "1kHz", "10kHz", "100kHz" }, this);
    freqUp_ = button(QStringLiteral("FreqUp"), QStringLiteral("QRG up"), this);
    freqDwn_ = button(QStringLiteral("FreqDwn"), QStringLiteral("QRG dn"), this);
    txRx_ = button(QStringLiteral("TxRx"), QStringLiteral("TRX"), this);
    txRx_->setCheckable(true);
    formatFre_ = new QLabel(this);
    formatFre_->setObjectName(QStringLiteral("formatFre"));
    formatFre_->setToolTip(QStringLiteral("Frequency in MHz"));
    QFont big = formatFre_->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    formatFre_->setFont(big);
    formatFre_->setMinimumWidth(110);
    formatFre_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    optBandV_->setValue(2);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(optFT847_, 0, 0, 1, 3);
    grid->addWidget(optBandV_, 1, 0, 1, 3);
    grid->addWidget(optBandR_, 2, 0, 1, 3);
    grid->addWidget(optQRG_, 3, 0, 1, 3);
    auto* display = new QHBoxLayout;
    display->addStretch(1);
    display->addWidget(formatFre_);
    display->addWidget(new QLabel(QStringLiteral("MHz"), this));
    display->addStretch(1);
    grid->addWidget(freqDwn_, 4, 0);
    grid->addLayout(display, 4, 1);
    grid->addWidget(freqUp_, 4, 2);
    grid->addWidget(txRx_, 5, 0, 1, 3);
    grid->setRowStretch(6, 1);

    onClick(optFT847_, [this](int i) { rig_->OptFT847_Click(i); });
    onClick(optBandV_, [this](int i) { rig_->OptBandV_Click(i); });
    onClick(optBandR_, [this](int i) { rig_->OptBandR_Click(i); });
    connect(optQRG_, &OptionGroup::valueChanged, rig_, &RigController::setStepOption);
    rig_->setStepOption(optQRG_->value());

    connect(freqUp_, &QPushButton::pressed, rig_, [this] { rig_->startTuning(+1); });
    connect(freqDwn_, &QPushButton::pressed, rig_, [this] { rig_->startTuning(-1); });
    connect(freqUp_, &QPushButton::released, rig_, &RigController::stopTuning);
    connect(freqDwn_, &QPushButton::released, rig_, &RigController::stopTuning);

    connect(txRx_, &QPushButton::toggled, rig_, &RigController::setPtt);
    connect(rig_, &RigController::pttChanged, this, &RigPanel::showPtt);
    connect(rig_, &RigController::frequencyDisplayChanged, formatFre_, &QLabel::setText);
    connect(rig_, &RigController::com1NotOpen, this, [this] {
        if (com1Lamp_)
            BackColour::set(com1Lamp_, Red);
    });
}

void RigPanel::showPtt(bool on)
{
    const QSignalBlocker block(txRx_);
    txRx_->setChecked(on);
    BackColour::set(txRx_, on ? Red : Green);
}

void RigPanel::restoreFromSettings()
{
    const SettingsTable& t = station_.settings;
    const qint64 counter = qint64(t.intAt(Setting::RigFrequency)) * 100;
    rig_->setCounter(counter);
    rig_->setBandIndex(bandOf(counter));
    optBandV_->setValue(bandOf(counter));
    optQRG_->setValue(t.intAt(Setting::MainState));
    rig_->setStepOption(optQRG_->value());
    const int microwave = ExtensionSettings::value(ExtensionKey::RigMicrowaveBand).toInt();
    if (microwave >= 1 && microwave <= optBandR_->count())
        optBandR_->setValue(microwave);
}

void RigPanel::writeToSettings()
{
    station_.settings.setInt32(Setting::RigFrequency, static_cast<qint32>(rig_->counter() / 100));
    station_.settings.setInt16(Setting::MainState, static_cast<qint16>(optQRG_->value()));
    ExtensionSettings::setValue(ExtensionKey::RigMicrowaveBand, QString::number(optBandR_->value()));
}

void RigPanel::clickBandV(int index)
{
    optBandV_->setValue(index);
    rig_->OptBandV_Click(index);
}

void RigPanel::clickBandR(int index)
{
    optBandR_->setValue(index);
    rig_->OptBandR_Click(index);
}
