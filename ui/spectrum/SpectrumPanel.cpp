#include "ui/spectrum/SpectrumPanel.h"

#include "audio/SpectrumTexts.h"
#include "core/Station.h"
#include "ui/spectrum/SpectrumView.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTimer>

namespace {
QLabel* valueLabel(const char* name, const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("000 dB anl")));
    return label;
}
} // namespace

SpectrumPanel::SpectrumPanel(Station& station, QWidget* parent)
    : QWidget(parent)
    , capture_(station.prompts)
    , picture2_(new SpectrumView(this))
    , scrReflvl_(new QScrollBar(Qt::Vertical, this))
    , lblReflvl_(valueLabel("lblReflvl", SpectrumTexts::refCaption(30.0f), this))
    , lblMax_(valueLabel("lblMax", QStringLiteral("0 dB anl"), this))
    , lblMaxHold_(valueLabel("lblMaxHold", QStringLiteral("0"), this))
    , clearMax_(new QPushButton(tr("Clear"), this))
    , lblFreq_(valueLabel("lblFreq", QStringLiteral("0 Hz"), this))
    , label23_(valueLabel("Label23", QStringLiteral("0"), this))
    , chkDiff_(new QCheckBox(tr("Diff"), this))
    , timer1_(new QTimer(this))
{
    setObjectName(QStringLiteral("SpectrumPanel"));
    scrReflvl_->setObjectName(QStringLiteral("scrReflvl"));
    scrReflvl_->setRange(-20, 120);
    scrReflvl_->setValue(30);
    scrReflvl_->setToolTip(tr("Reference level"));
    clearMax_->setObjectName(QStringLiteral("ClearMax"));
    chkDiff_->setObjectName(QStringLiteral("chkDiff"));
    chkDiff_->setToolTip(tr("Show the change against the spectrum at the moment this is switched on"));
    label23_->setToolTip(tr("Level beside the passband (dB)"));
    timer1_->setObjectName(QStringLiteral("Timer1"));
    picture2_->setToolTip(
        tr("%1 Hz per division, %2 Hz across").arg(state_.hzPerDivisionText, state_.spanText));

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(picture2_, 0, 0, 1, 8);
    grid->addWidget(scrReflvl_, 0, 8);
    grid->addWidget(lblReflvl_, 1, 0);
    grid->addWidget(new QLabel(tr("SigMax:"), this), 1, 1);
    grid->addWidget(lblMax_, 1, 2);
    grid->addWidget(new QLabel(tr("MaxHold:"), this), 1, 3);
    grid->addWidget(lblMaxHold_, 1, 4);
    grid->addWidget(clearMax_, 1, 5);
    grid->addWidget(new QLabel(tr("FreqMax:"), this), 2, 1);
    grid->addWidget(lblFreq_, 2, 2);
    grid->addWidget(label23_, 2, 4);
    grid->addWidget(chkDiff_, 2, 5);
    grid->setRowStretch(0, 1);

    connect(timer1_, &QTimer::timeout, this, &SpectrumPanel::tick);
    connect(scrReflvl_, &QScrollBar::valueChanged, this, &SpectrumPanel::refLevelChanged);
    connect(clearMax_, &QPushButton::clicked, this, &SpectrumPanel::clearMax);
    connect(chkDiff_, &QCheckBox::toggled, this, &SpectrumPanel::differenceToggled);
    connect(picture2_, &SpectrumView::resized, this, [this] { redrawPicture(lastDrawn_); });
}

SpectrumPanel::~SpectrumPanel()
{
    stop();
}

int SpectrumPanel::start()
{
    prepare();
    DrawSpectrumFrame();
    const int status = StartWaveInput();
    timer1_->start(1);
    return status;
}

void SpectrumPanel::stop()
{
    StopWaveInput();
    timer1_->stop();
}

void SpectrumPanel::prepare()
{
    state_.reset();
    const QSignalBlocker scrollBlock(scrReflvl_);
    scrReflvl_->setValue(static_cast<int>(state_.refLevel));
    lblReflvl_->setText(SpectrumTexts::refCaption(state_.refLevel));
    lblMaxHold_->setText(QStringLiteral("0"));
    const QSignalBlocker diffBlock(chkDiff_);
    chkDiff_->setChecked(false);
}

int SpectrumPanel::StartWaveInput()
{
    return capture_.StartWaveInput();
}

void SpectrumPanel::StopWaveInput()
{
    capture_.StopWaveInput();
}

void SpectrumPanel::tick()
{
    // Capture runs back to back; there is no stop and restart between buffers.
    if (!capture_.takeBuffer(buffer_))
        return;
    GetAudio();
    DrawSpectrum();
}

void SpectrumPanel::GetAudio()
{
    state_.GetAudio(buffer_);
}

void SpectrumPanel::DrawSpectrum()
{
    state_.computeLevels();
    DrawSpectrumFrame();
    lastDrawn_ = state_.transformLength() / 2;
    picture2_->picture().drawTrace(state_, lastDrawn_);
    picture2_->update();
    label23_->setText(SpectrumTexts::sideCaption(state_.sideValue));
}

void SpectrumPanel::DrawSpectrumFrame()
{
    picture2_->picture().drawFrame();
    picture2_->update();
    lblMax_->setText(SpectrumTexts::maxCaption(state_.strongest));
    lblMaxHold_->setText(SpectrumTexts::heldCaption(lblMaxHold_->text(), lblMax_->text()));
    lblFreq_->setText(SpectrumTexts::freqCaption(state_.peakFrequency));
}

bool SpectrumPanel::openWaveFile(const QString& path, bool paced)
{
    StopWaveInput();
    capture_.setFactory(WaveCapture::waveFile(path, paced));
    const bool ok = StartWaveInput() == WaveStatus::Ok;
    if (!timer1_->isActive())
        timer1_->start(1);
    return ok;
}

void SpectrumPanel::useSoundCard()
{
    StopWaveInput();
    capture_.setFactory(WaveCapture::soundCard());
    StartWaveInput();
    if (!timer1_->isActive())
        timer1_->start(1);
}

void SpectrumPanel::refLevelChanged(int value)
{
    state_.refLevel = static_cast<float>(value);
    lblReflvl_->setText(SpectrumTexts::refCaption(state_.refLevel));
    // deliberate: the redraw reaches sample rate / 2 as asked, bounded by the dB array's end.
    redrawPicture(state_.sampleRate / 2);
}

void SpectrumPanel::clearMax()
{
    lblMaxHold_->setText(QStringLiteral("0"));
}

void SpectrumPanel::differenceToggled(bool on)
{
    state_.setDifferenceMode(on);
    redrawPicture(lastDrawn_);
}

void SpectrumPanel::redrawPicture(int last)
{
    // The frame is cleared first so an old trace does not stay beside the new one.
    picture2_->picture().drawFrame();
    if (last > 0)
        picture2_->picture().drawTrace(state_, last);
    picture2_->update();
}
