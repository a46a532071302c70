#pragma once
// The beacon list of the main window: the grid DataGrid1 with its row count, the name search
// BeSearch, the sort toggle BanCoun, the BeaconList/MyMonList buttons, the new-entry boxes
// with "Add New " and "Save", and the map buttons GD and GE. A thin face on beacons/; the
// rest of the window (locator box, rig, rotator, settings dialog) is reached through hooks.
#include "ui/beacons/BeaconHooks.h"

#include <QWidget>

#include <memory>

class BeaconGrid;
class MapViewer;
class QLabel;
class QLineEdit;
class QPushButton;
class RecordsetModel;
class Station;

class BeaconPanel : public QWidget {
    Q_OBJECT
public:
    // viewer: what GE hands "earth.kml" to; nullptr: the desktop's viewer.
    explicit BeaconPanel(Station& station, MapViewer* viewer = nullptr, QWidget* parent = nullptr);
    ~BeaconPanel() override;

    BeaconHooks& hooks() { return hooks_; }
    void setHooks(BeaconHooks hooks) { hooks_ = std::move(hooks); }

    // Rebuilds the grid: settings dialog when callsign or locator is empty, the rig band
    // handler, the schema check, the query with search text, sort and name filter, the caption.
    void LoadBeaconList();
    // Every activation of the main window: beacons only ("%/b%"), then the list load.
    void activate();
    // BanCoun from and to setting 29 (start-up and shutdown of the main window).
    void restoreFromSettings();
    void writeToSettings();

    QString nameFilter() const { return nameFilter_; }
    void setNameFilter(const QString& filter) { nameFilter_ = filter; }

    // The grid's row change: aims the station at the beacon of that row.
    void chooseRow(int row);
    // Asks " Delete Recordset ?" and deletes the row from the table on Yes.
    bool deleteRow(int row);
    void CMDaddnew_Click();
    void CmdSave_Click();
    void GD_Click();
    void GeB_Click();

    BeaconGrid* grid() const { return grid_; }
    RecordsetModel& model() const { return *model_; }

signals:
    void beaconChosen(const QString& name, const QString& locator, const QString& qrg);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildUi();
    void checkTxtLocB();
    std::optional<int> aimAt(const QString& locator);

    Station& station_;
    std::unique_ptr<MapViewer> ownViewer_;
    MapViewer* viewer_;
    BeaconHooks hooks_;
    QString nameFilter_;
    bool quiet_ = false; // no row choice while the grid is reloaded or a row deleted
    bool locCheckPending_ = false;

    BeaconGrid* grid_ = nullptr;
    RecordsetModel* model_ = nullptr;
    QLabel* caption_ = nullptr;
    QLineEdit* beSearch_ = nullptr;
    QPushButton* banCoun_ = nullptr;
    QLineEdit* txtBeacon_ = nullptr;
    QLineEdit* txtQrgB_ = nullptr;
    QLineEdit* txtLocB_ = nullptr;
    QLineEdit* txtComment_ = nullptr;
};
