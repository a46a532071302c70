#pragma once
// The settings dialog "Initial": own callsign and locator, the four serial ports of the main
// window, the two DX cluster servers, the QSL card lines and the map switches. Shows the
// settings file's values on every opening; "Done" checks the locator, opens or closes the
// main window's ports and saves.
#include <QDialog>

class Form1;
class OptionGroup;
class QCheckBox;
class QLineEdit;
class QPushButton;
class QSlider;
class Station;

class Form2 : public QDialog {
    Q_OBJECT
public:
    Form2(Station& station, Form1& main, QWidget* parent = nullptr);

    // LoadStationConfig, then every control from its index (each opening does this).
    void reload();
    // "Done" (`Command1`).
    void doneClicked();

    static inline const QString DuplicateText = QStringLiteral("PortNr is alredy used Pse change the PortNr");

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildUi();
    void checkUnique(int row);
    void comGuard();

    Station& station_;
    Form1& main_;

    QLineEdit* text3_ = nullptr;
    QLineEdit* text4_ = nullptr;
    QCheckBox* check_[5] = {};
    QLineEdit* number_[5] = {};
    QLineEdit* lineSettings_[5] = {};
    QLineEdit* conHost_ = nullptr;
    QLineEdit* conPort_ = nullptr;
    QLineEdit* conHost1_ = nullptr;
    QLineEdit* conPort1_ = nullptr;
    OptionGroup* cluster_ = nullptr;
    QLineEdit* qsl_[6] = {};
    QCheckBox* check1_ = nullptr;
    QSlider* geColor_ = nullptr;
    QCheckBox* lineB_ = nullptr;
    QCheckBox* lineS_ = nullptr;
    QCheckBox* check2_ = nullptr;
    QCheckBox* check3_ = nullptr;
    QPushButton* command1_ = nullptr;
};
