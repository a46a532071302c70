#pragma once
// The controls of the logbook window form5, each with its name as objectName: the entry line,
// the 22 band buttons, the log grid and the search, statistics and map controls.
#include <QList>

class OptionGroup;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QListWidget;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableView;
class QWidget;

struct Form5Ui {
    QWidget* content = nullptr; // everything; disabled while a long action runs

    // Entry line.
    QLineEdit *DA = nullptr, *GM = nullptr, *Ca = nullptr, *Gr = nullptr, *Rss = nullptr, *Rr = nullptr;
    QLineEdit *Ba = nullptr, *mo = nullptr, *Na = nullptr, *Co = nullptr, *Qs = nullptr, *Pr = nullptr;
    QLabel* cou = nullptr;
    QLineEdit *Ns = nullptr, *Nr = nullptr; // contest serial numbers sent and received
    QLabel* qrbInfo = nullptr; // distance and bearing of the locator entered
    QLabel* wsjtxStatus = nullptr; // WSJT-X's live Status: DX call, grid, frequency, mode
    QListWidget* workedBefore = nullptr; // earlier contacts with the call, dupe and new flags
    QListWidget* checkPartial = nullptr; // known calls containing the characters typed
    QPushButton* Save = nullptr;
    QPushButton* addnew = nullptr;

    // Band buttons "OptBand0" .. "OptBand21" in the group box "OptBand"; ids are the indices.
    QButtonGroup* OptBand = nullptr;
    QList<QRadioButton*> bandButtons;

    // Own station, statistics and the band-change time.
    QLabel *Callsign = nullptr, *MyGrid = nullptr;
    QLabel *Sqw = nullptr, *SQc = nullptr, *dxw = nullptr, *DXc = nullptr;
    QLabel* Label1 = nullptr;

    // Log grid and its caption (the number of rows).
    QTableView* DataGrid1 = nullptr;
    QLabel* gridCaption = nullptr;

    // Search, map and file actions.
    QLineEdit* txtStr = nullptr;
    OptionGroup* uSc_MultiOption1 = nullptr;
    QPushButton* Search = nullptr;
    QPushButton* GoogleEarth = nullptr;
    QPushButton* gridDEC = nullptr;
    QPushButton* squareMap = nullptr; // award map of worked and confirmed squares
    QPushButton* adifImport = nullptr;
    QPushButton* adifExport = nullptr;
    QCheckBox* adifAllBands = nullptr;
    QPushButton* ediExport = nullptr; // the band shown, as an EDI contest file
    QPushButton* cmdExit = nullptr;

    void setupUi(QWidget* window);
    // Entry boxes in the order of the line (DA .. Pr).
    QList<QLineEdit*> entryBoxes() const;
};
