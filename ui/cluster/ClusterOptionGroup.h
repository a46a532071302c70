#pragma once
// A small group of option buttons valued from 1, with a change signal: stands in for the
// shared option-group control (same calls) until the cluster window is moved onto it.
#include <QGroupBox>
#include <QList>
#include <QStringList>

class QButtonGroup;
class QRadioButton;

class ClusterOptionGroup : public QGroupBox {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(QStringList captions READ captions WRITE setCaptions)

public:
    explicit ClusterOptionGroup(QWidget* parent = nullptr);

    // One button per caption, named "option1", "option2", ...
    void setCaptions(const QStringList& captions);
    QStringList captions() const { return captions_; }
    int count() const { return static_cast<int>(buttons_.size()); }

    int value() const { return value_; }
    // A value outside 1 .. count() is ignored.
    void setValue(int value);
    QRadioButton* button(int index) const;

signals:
    void valueChanged(int value);

private:
    void onToggled(int id, bool checked);

    QStringList captions_;
    QList<QRadioButton*> buttons_;
    QButtonGroup* group_;
    int value_ = 0;
};
