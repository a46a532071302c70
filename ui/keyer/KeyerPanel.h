#pragma once
// The CW keyer controls of the main window: the two texts, the text selector, start, receive,
// the loop switch and its stop, and the speed. A thin face on KeyerController, which keys on
// a thread of its own; transmit switching goes through the rig's controller.
#include <QWidget>

class KeyerController;
class OptionGroup;
class OutputLines;
class QLineEdit;
class QPushButton;
class RigController;
class Station;

class KeyerPanel : public QWidget {
    Q_OBJECT
public:
    KeyerPanel(Station& station, RigController& rig, OutputLines& lines, QWidget* parent = nullptr);

    KeyerController& controller() { return *keyer_; }

    // Start-up: speed (setting 0), TXTSel (1), CWloop (2), Text1 (3), Text6 (4), the colours.
    void restoreFromSettings();
    // Shutdown: the same settings back into the table.
    void writeToSettings();
    // The text "TX Start" sends now.
    QString selectedText() const;

private:
    void showSelection();

    Station& station_;
    KeyerController* keyer_;
    QLineEdit* text6_;
    QLineEdit* text1_;
    QPushButton* txtSel_;
    QPushButton* cmdSend_;
    QPushButton* cwLoop_;
    OptionGroup* optSpeed_;
};
