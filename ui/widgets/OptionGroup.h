#pragma once
// A group of option buttons whose value is the index of the chosen button, counted from 1.
// Used by the settings dialog, the logbook and the cluster window; it keeps its own captions
// and value and can hand them out as a saved state and take them back.
#include <QByteArray>
#include <QGroupBox>
#include <QList>
#include <QStringList>

class QButtonGroup;
class QRadioButton;

class OptionGroup : public QGroupBox {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(QStringList captions READ captions WRITE setCaptions)

public:
    explicit OptionGroup(QWidget* parent = nullptr);
    OptionGroup(const QStringList& captions, Qt::Orientation orientation, QWidget* parent = nullptr);

    // One button per caption, named "option1", "option2", ...; the value is kept when still
    // in range, else it becomes 1.
    void setCaptions(const QStringList& captions);
    QStringList captions() const { return captions_; }
    int count() const { return static_cast<int>(buttons_.size()); }

    // 1 .. count(); 0 only while the group has no buttons.
    int value() const { return value_; }
    // A value outside 1 .. count() is ignored and the group keeps its value.
    void setValue(int value);

    // The button of index i (from 1), or nullptr.
    QRadioButton* button(int index) const;

    // Captions and value; restoreState takes back what saveState gave and refuses anything else.
    QByteArray saveState() const;
    bool restoreState(const QByteArray& state);

signals:
    // Emitted when the value changes, by the operator or by setValue.
    void valueChanged(int value);

private:
    void rebuild();
    void onToggled(int id, bool checked);

    Qt::Orientation orientation_ = Qt::Vertical;
    QStringList captions_;
    QList<QRadioButton*> buttons_;
    QButtonGroup* group_;
    int value_ = 0;
};
