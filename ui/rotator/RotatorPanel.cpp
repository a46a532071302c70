#include "ui/rotator/RotatorPanel.h"

#include "devices/rotator/RotatorController.h"
#include "ui/rig/BackColour.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {
QPushButton* button(const QString& name, const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}
} // namespace

RotatorPanel::RotatorPanel(Station& station, StationPorts& ports, OutputLines& lines, QLineEdit* text160,
    QWidget* locator, QWidget* parent)
    : QWidget(parent)
    , rotator_(new RotatorController(station, ports, lines, this))
    , text160_(text160)
    , locator_(locator)
{
    setObjectName(QStringLiteral("rotatorPanel"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    if (!text160_) {
        text160_ = new QLineEdit(this);
        text160_->setObjectName(QStringLiteral("Text160"));
        text160_->setToolTip(QStringLiteral("Azimuth to turn to, whole degrees"));
        grid->addWidget(new QLabel(QStringLiteral("Azimuth"), this), 0, 0);
        grid->addWidget(text160_, 0, 1);
    }
    text177_ = new QLineEdit(this);
    text177_->setObjectName(QStringLiteral("Text177"));
    text177_->setMaximumWidth(70);
    text177_->setToolTip(QStringLiteral("Second set value; Enter sends it"));
    auto* aziL = button(QStringLiteral("AziL"), QStringLiteral("<- AZI"), this);
    auto* aziR = button(QStringLiteral("AziR"), QStringLiteral("AZI->"), this);
    auto* stop = button(QStringLiteral("RotorStop"), QStringLiteral("Rotor Stop"), this);
    auto* up = button(QStringLiteral("eleup"), QStringLiteral(" Ele  up"), this);
    auto* down = button(QStringLiteral("eleDwn"), QStringLiteral(" Ele dwn"), this);
    eleAuto_ = button(QStringLiteral("EleAuto"), QStringLiteral("Ele Auto"), this);
    eleAuto_->setCheckable(true);

    grid->addWidget(aziL, 1, 0);
    grid->addWidget(stop, 1, 1);
    grid->addWidget(aziR, 1, 2);
    grid->addWidget(up, 2, 0);
    grid->addWidget(eleAuto_, 2, 1);
    grid->addWidget(down, 2, 2);
    grid->addWidget(new QLabel(QStringLiteral("Set value"), this), 3, 0);
    grid->addWidget(text177_, 3, 1);

    connect(text160_, &QLineEdit::returnPressed, this, [this] {
        Antennedrehen();
        if (locator_)
            locator_->setFocus();
    });
    connect(text177_, &QLineEdit::returnPressed, this,
        [this] { rotator_->sendSecondSetValue(text177_->text()); });
    connect(aziL, &QPushButton::clicked, rotator_, &RotatorController::turnLeft);
    connect(aziR, &QPushButton::clicked, rotator_, &RotatorController::turnRight);
    connect(stop, &QPushButton::clicked, rotator_, &RotatorController::Rotorstop_click);
    connect(rotator_, &RotatorController::stopPressed, stop, [stop] { BackColour::set(stop, 255); });

    connect(up, &QPushButton::pressed, rotator_, [this] { rotator_->elevationPressed(true); });
    connect(up, &QPushButton::released, rotator_, [this] { rotator_->elevationReleased(true); });
    connect(down, &QPushButton::pressed, rotator_, [this] { rotator_->elevationPressed(false); });
    connect(down, &QPushButton::released, rotator_, [this] { rotator_->elevationReleased(false); });

    connect(eleAuto_, &QPushButton::toggled, rotator_, &RotatorController::setAuto);
    connect(rotator_, &RotatorController::autoChanged, eleAuto_, [this](bool on) {
        const QSignalBlocker block(eleAuto_);
        eleAuto_->setChecked(on);
    });
    connect(rotator_, &RotatorController::autoDisplayChanged, eleAuto_,
        [this](const QString& caption, int colour) {
            eleAuto_->setText(caption);
            BackColour::set(eleAuto_, colour);
        });
}

void RotatorPanel::Antennedrehen()
{
    text160_->setText(rotator_->Antennedrehen(text160_->text()));
}

void RotatorPanel::autoElevationStep(std::optional<double> elevation)
{
    rotator_->autoElevationStep(elevation);
}
