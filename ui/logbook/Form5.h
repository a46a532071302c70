#pragma once
// The logbook window form5: the entry line that records one contact at a time, the 22 band
// buttons that choose the band of new contacts and of the list, the log grid (a view over the
// database, so large logs scroll without being copied into widgets), the search, the DXCC
// lookup, the map data completion, the GoogleEarth export and the ADIF import and export.
// Decisions live in logbook/ (entry, browse, completion, adif); this window wires them up.
#include "logbook/entry/EntryKeys.h"
#include "logbook/entry/EntryLine.h"
#include "logbook/entry/MapPosition.h"
#include "mapexport/LogMapFields.h"
#include "ui/logbook/Form5Ui.h"

#include <QHash>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

class LogChanges;
class LogGridModel;
class QKeyEvent;
class QLineEdit;
class QTimer;
class Recordset;
class LogMapExport;
class PendingRetry;
struct PendingFlush;
struct SavedField;
class MapViewer;
class SlicedJob;
class Station;
class CheckPartial;
class WorkedBefore;
class WsjtxListener;

class Form5 : public QWidget {
    Q_OBJECT
public:
    // Creating the window sets the database connection (when not set yet) and opens the
    // window's state as the program's start-up expects: captions, band, list.
    explicit Form5(Station& station, QWidget* parent = nullptr);
    ~Form5() override;

    // Shows the live Status of WSJT-X beside the entry line, and counts and lists again when
    // it logs a contact (as a save of the entry line does).
    void attachWsjtx(WsjtxListener& listener);
    // The worked-before and check-partial lists for the call typed (or, with none typed,
    // WSJT-X's DX call).
    void showWorkedBefore();

    // The viewer the GoogleEarth export starts (tests hand in a recording one).
    void setMapViewer(MapViewer* viewer);

    // The actions behind the controls (also called by the controls' signals).
    void OptBand_Click(int index);
    void addnew_Click();
    void Save_Click();
    void Search_Click();
    void gridDEC_Click();
    void GoogleEarth_Click();
    // squares.kml in the current folder for the band shown (every band with "all"), then the viewer.
    void squareMap_Click();
    // Asks " Delete Recordset ?" and deletes the grid's current row on Yes.
    void DataGrid1_BeforeDelete();
    // ADIF import of a file, export to a file (the buttons ask for the file first).
    void importAdif(const QString& path);
    void exportAdif(const QString& path, bool allBands);
    // EDI contest file of the band shown; the report names every contact scored 0.
    void exportEdi(const QString& path);
    // The DXCC lookup and the locator check (run when Ca and Gr lose focus).
    void dxccLookup();
    void locatorCheck();

    EntryLine entryLine() const;
    int bandIndex() const { return bandIndex_; }
    LogGridModel* gridModel() const { return model_; }
    const LogMapFields& mapFields() const { return fields_; }
    MapPosition storedPosition() const;
    // True while a long action (completion, import, export, map) runs.
    bool isBusy() const;
    const Form5Ui& ui() const { return ui_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void openWindow();
    void closeWindow();
    void loadLogList(const QString& procedure);
    void bind(const Recordset& rs);
    void applyColumnWidths();
    void showCounts();
    QLineEdit* box(EntryField field) const;
    void focusField(EntryField field);
    bool entryKey(EntryField field, QKeyEvent* event);
    void entryFocusOut(EntryField field);
    void showError(const QString& numberAndDescription, const QString& procedure);
    void chooseImportFile();
    void chooseExportFile();
    void chooseEdiFile();
    void runJob(SlicedJob* job);
    // The square or entity counts in slices (the window stays usable), then `after`. A new
    // run replaces one still under way.
    void runCounts(const QList<int>& kinds, std::function<void()> after = {});
    void clearEntryLine();
    // On a server log: the journal of contacts the server does not have yet (Form5Pending.cpp).
    void startPending();
    void keepPending(const EntryLine& line, const QList<SavedField>& fields, bool serverAway);
    void pendingFlushed(const PendingFlush& result);
    // Another position's change (a server log): gathered for a moment, then shown; an empty op
    // (a resync) or any change but a new row reads the worked-before list again.
    void logChanged(const QString& op, qint64 id);
    void showHeardChanges();
    LocatorProcedure completionLocator();
    LocatorProcedure importLocator();

    Station& station_;
    Form5Ui ui_;
    LogGridModel* model_ = nullptr;
    LogMapFields fields_;
    int bandIndex_ = -1;
    bool opened_ = false;
    QHash<QObject*, EntryField> fieldOf_;
    std::unique_ptr<MapViewer> ownViewer_;
    MapViewer* viewer_ = nullptr;
    LogMapExport* mapExport_ = nullptr;
    QPointer<SlicedJob> job_;
    QPointer<SlicedJob> countsJob_;
    std::unique_ptr<WorkedBefore> worked_;
    std::unique_ptr<CheckPartial> partial_;
    QPointer<WsjtxListener> wsjtx_;
    std::unique_ptr<PendingRetry> pending_; // none on a file log
    QString heldId_; // the journal entry the entry line holds
    EntryLine heldLine_;
    bool awayTold_ = false; // the server-away message was shown since the journal last emptied
    LogChanges* changes_ = nullptr;
    QTimer* heardTimer_ = nullptr;
    QList<qint64> heard_;
    bool heardAll_ = false;
};
