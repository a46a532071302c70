#include "ui/cluster/ClusterOptionGroup.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QRadioButton>

ClusterOptionGroup::ClusterOptionGroup(QWidget* parent)
    : QGroupBox(parent)
    , group_(new QButtonGroup(this))
{
    auto* box = new QHBoxLayout(this);
    box->setContentsMargins(6, 2, 6, 2);
    connect(group_, &QButtonGroup::idToggled, this, &ClusterOptionGroup::onToggled);
}

void ClusterOptionGroup::setCaptions(const QStringList& captions)
{
    qDeleteAll(buttons_);
    buttons_.clear();
    captions_ = captions;
    for (int i = 0; i < captions.size(); ++i) {
        auto* b = new QRadioButton(captions[i], this);
        b->setObjectName(QStringLiteral("option%1").arg(i + 1));
        group_->addButton(b, i + 1);
        layout()->addWidget(b);
        buttons_ << b;
    }
    const int previous = value_;
    value_ = 0;
    if (!buttons_.isEmpty()) {
        const QSignalBlocker block(group_);
        const int wanted = previous >= 1 && previous <= count() ? previous : 1;
        buttons_[wanted - 1]->setChecked(true);
        value_ = wanted;
    }
    if (value_ != previous)
        emit valueChanged(value_);
}

void ClusterOptionGroup::setValue(int value)
{
    if (value < 1 || value > count() || value == value_)
        return;
    buttons_[value - 1]->setChecked(true);
}

QRadioButton* ClusterOptionGroup::button(int index) const
{
    return index >= 1 && index <= count() ? buttons_[index - 1] : nullptr;
}

void ClusterOptionGroup::onToggled(int id, bool checked)
{
    if (!checked || id == value_)
        return;
    value_ = id;
    emit valueChanged(value_);
}
