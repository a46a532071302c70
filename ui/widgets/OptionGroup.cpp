#include "ui/widgets/OptionGroup.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QDataStream>
#include <QIODevice>
#include <QRadioButton>

namespace {
constexpr quint32 StateMagic = 0x4f505447; // "OPTG"
constexpr quint8 StateVersion = 1;
} // namespace

OptionGroup::OptionGroup(QWidget* parent)
    : QGroupBox(parent)
    , group_(new QButtonGroup(this))
{
    connect(group_, &QButtonGroup::idToggled, this, &OptionGroup::onToggled);
}

OptionGroup::OptionGroup(const QStringList& captions, Qt::Orientation orientation, QWidget* parent)
    : OptionGroup(parent)
{
    orientation_ = orientation;
    setCaptions(captions);
}

void OptionGroup::setCaptions(const QStringList& captions)
{
    captions_ = captions;
    rebuild();
}

void OptionGroup::rebuild()
{
    const int previous = value_;
    for (QRadioButton* b : buttons_) {
        group_->removeButton(b);
        delete b;
    }
    buttons_.clear();
    delete layout();
    auto* box = new QBoxLayout(
        orientation_ == Qt::Vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, this);
    box->setContentsMargins(6, 4, 6, 4);
    box->setSpacing(orientation_ == Qt::Vertical ? 2 : 10);
    for (int i = 0; i < captions_.size(); ++i) {
        auto* b = new QRadioButton(captions_[i], this);
        b->setObjectName(QStringLiteral("option%1").arg(i + 1));
        group_->addButton(b, i + 1);
        box->addWidget(b);
        buttons_ << b;
    }
    box->addStretch(1);

    value_ = 0;
    if (buttons_.isEmpty()) {
        if (previous != 0)
            emit valueChanged(0);
        return;
    }
    const int wanted = (previous >= 1 && previous <= count()) ? previous : 1;
    const QSignalBlocker block(group_);
    buttons_[wanted - 1]->setChecked(true);
    value_ = wanted;
    if (value_ != previous)
        emit valueChanged(value_);
}

void OptionGroup::setValue(int value)
{
    if (value < 1 || value > count() || value == value_)
        return;
    buttons_[value - 1]->setChecked(true); // onToggled records it and signals
}

QRadioButton* OptionGroup::button(int index) const
{
    return (index >= 1 && index <= count()) ? buttons_[index - 1] : nullptr;
}

void OptionGroup::onToggled(int id, bool checked)
{
    if (!checked || id == value_)
        return;
    value_ = id;
    emit valueChanged(value_);
}

QByteArray OptionGroup::saveState() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << StateMagic << StateVersion << captions_ << qint32(value_);
    return bytes;
}

bool OptionGroup::restoreState(const QByteArray& state)
{
    QDataStream in(state);
    in.setVersion(QDataStream::Qt_6_4);
    quint32 magic = 0;
    quint8 version = 0;
    QStringList captions;
    qint32 value = 0;
    in >> magic >> version >> captions >> value;
    if (in.status() != QDataStream::Ok || magic != StateMagic || version != StateVersion)
        return false;
    setCaptions(captions);
    setValue(value);
    return true;
}
