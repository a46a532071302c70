#pragma once
// The QSL print window: the card itself (own lines from the settings, greeting, confirmation,
// the other station's callsign and the contact boxes, signature pictures) with the buttons
// that print the cards of every contact with a chosen QSL letter, or one card as shown.
// Printing goes to the chosen printer or PDF file; a preview shows the card as it stands.
#include "qsl/SignaturePictures.h"

#include <QPrinter>
#include <QString>
#include <QWidget>

class CardFace;
class QLabel;
class QPushButton;
class Station;

class Form6 : public QWidget {
    Q_OBJECT
public:
    // Reads the settings file again, shows the station's lines and loads the signature
    // pictures from the program's folder.
    explicit Form6(Station& station, QWidget* parent = nullptr);
    ~Form6() override;

    // Where "/Sign.bmp" and "/ClubSign.bmp" are looked for (tests; another install layout).
    void setPictureDirectory(const QString& directory);
    QString pictureDirectory() const { return pictureDir_; }
    // The printer the cards go to; a PDF file when its output format says so.
    QPrinter& printer() { return printer_; }
    // The selection letter of the last run ("Y", "S", "T", "B", "X"; empty before the first).
    const QString& letter() const { return letter_; }
    CardFace& card() { return *card_; }

    // `Command1` "Y", `Command3` "S", `Command4` "T", `BeaconPrint` "B".
    void printRun(const QString& letter);
    // `Empty`: one card with the window's contents, selection letter "X".
    void printWindowCard();
    // `StopPrint`: the run again with the selection letter as it stands.
    void stopPrintClicked();
    // `cmdPrinter`, `cmdPreview`: the print dialog and the print preview (window-modal, no
    // nested event loop).
    void openPrintDialog();
    void openPreview();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildUi();
    void loadStationLines();
    bool printerReady();
    void note(const QString& text);
    void showPrinter();

    Station& station_;
    QString pictureDir_;
    SignaturePictures pictures_;
    QPrinter printer_ { QPrinter::HighResolution };
    QString letter_;
    CardFace* card_ = nullptr;
    QLabel* noteLine_ = nullptr;
    QLabel* printerLine_ = nullptr;
};
