#include "ui/keyer/KeyerPanel.h"

#include "core/Station.h"
#include "devices/keyer/KeyerController.h"
#include "devices/keyer/MorseCode.h"
#include "ui/rig/BackColour.h"
#include "ui/widgets/OptionGroup.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {
constexpr int Red = 255;
constexpr int Green = 65280;
constexpr int White = 16777215;

QPushButton* button(const QString& name, const QString& caption, bool checkable, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setCheckable(checkable);
    return b;
}

QLineEdit* edit(const QString& name, const QString& text, QWidget* parent)
{
    auto* e = new QLineEdit(text, parent);
    e->setObjectName(name);
    return e;
}

qint16 toggleValue(bool on)
{
    return on ? -1 : 0;
}
} // namespace

KeyerPanel::KeyerPanel(Station& station, RigController& rig, OutputLines& lines, QWidget* parent)
    : QWidget(parent)
    , station_(station)
    , keyer_(new KeyerController(station, rig, lines, this))
{
    setObjectName(QStringLiteral("keyerPanel"));
    text6_ = edit(QStringLiteral("Text6"), QStringLiteral("cq cq de n0call n0call"), this);
    text1_ = edit(QStringLiteral("Text1"), QStringLiteral("Text1"), this);
    txtSel_ = button(QStringLiteral("TXTSel"), QStringLiteral("TXT Sel"), true, this);
    txtSel_->setToolTip(QStringLiteral("Pressed: send the upper text; released: the lower"));
    txtSel_->setChecked(true);
    cmdSend_ = button(QStringLiteral("cmdsend"), QStringLiteral("TX Start"), false, this);
    auto* cmdRX = button(QStringLiteral("cmdRX"), QStringLiteral("RX "), false, this);
    cwLoop_ = button(QStringLiteral("CWloop"), QStringLiteral("CW Loop"), true, this);
    auto* loopStop = button(QStringLiteral("LoopStop"), QStringLiteral("Loop Stop"), false, this);
    optSpeed_ = new OptionGroup({ "50 lpm", "60 lpm", "70 lpm" }, Qt::Horizontal, this);
    optSpeed_->setObjectName(QStringLiteral("OptSpeed"));
    optSpeed_->setTitle(QStringLiteral("CW speed"));
    optSpeed_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    optSpeed_->setValue(keyer_->speedIndex());

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(text6_, 0, 0, 1, 4);
    grid->addWidget(text1_, 1, 0, 1, 4);
    grid->addWidget(txtSel_, 2, 0);
    grid->addWidget(cmdSend_, 2, 1);
    grid->addWidget(cmdRX, 2, 2);
    grid->addWidget(cwLoop_, 3, 0);
    grid->addWidget(loopStop, 3, 1);
    grid->addWidget(optSpeed_, 4, 0, 1, 4);
    grid->setRowStretch(5, 1);

    for (int i = 1; i <= optSpeed_->count(); ++i)
        connect(
            optSpeed_->button(i), &QRadioButton::clicked, keyer_, [this, i] { keyer_->setSpeedIndex(i); });
    connect(cmdSend_, &QPushButton::clicked, keyer_, [this] { keyer_->cmdSend_Click(selectedText()); });
    connect(cmdRX, &QPushButton::clicked, keyer_, &KeyerController::cmdRX_Click);
    connect(cwLoop_, &QPushButton::toggled, keyer_, &KeyerController::setLoop);
    connect(loopStop, &QPushButton::clicked, keyer_, &KeyerController::LoopStop_Click);

    // An edit or a new selection while sending: the next character comes from it.
    auto follow = [this] { keyer_->setText(selectedText()); };
    connect(text6_, &QLineEdit::textChanged, keyer_, follow);
    connect(text1_, &QLineEdit::textChanged, keyer_, follow);
    connect(txtSel_, &QPushButton::toggled, this, [this, follow] {
        showSelection();
        follow();
    });
    connect(keyer_, &KeyerController::sendingChanged, cmdSend_, [this](bool on) {
        if (on)
            BackColour::set(cmdSend_, Red);
        else
            cmdSend_->setStyleSheet(QString());
    });
    showSelection();
}

QString KeyerPanel::selectedText() const
{
    return Morse::selectedText(txtSel_->isChecked(), text6_->text(), text1_->text());
}

void KeyerPanel::showSelection()
{
    BackColour::set(text6_, txtSel_->isChecked() ? Green : White);
    BackColour::set(text1_, txtSel_->isChecked() ? White : Green);
}

void KeyerPanel::restoreFromSettings()
{
    const SettingsTable& t = station_.settings;
    optSpeed_->setValue(t.intAt(Setting::CwSpeed));
    keyer_->setSpeedIndex(optSpeed_->value());
    txtSel_->setChecked(t.boolAt(Setting::TxtSel));
    cwLoop_->setChecked(t.boolAt(Setting::CwLoop));
    text1_->setText(t.textAt(Setting::CwText1));
    text6_->setText(t.textAt(Setting::CwText2));
    showSelection();
}

void KeyerPanel::writeToSettings()
{
    SettingsTable& t = station_.settings;
    t.setInt16(Setting::CwSpeed, static_cast<qint16>(optSpeed_->value()));
    t.setInt16(Setting::TxtSel, toggleValue(txtSel_->isChecked()));
    t.setInt16(Setting::CwLoop, toggleValue(cwLoop_->isChecked()));
    t.setText(Setting::CwText1, text1_->text());
    t.setText(Setting::CwText2, text6_->text());
}
