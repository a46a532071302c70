#include "ui/logbook/Form5.h"

#include "core/Station.h"
#include "core/StationConfig.h"
#include "geo/Locator.h"
#include "logbook/browse/CheckPartial.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/browse/GridColumns.h"
#include "logbook/browse/LogGridModel.h"
#include "logbook/browse/LogList.h"
#include "logbook/browse/LogSearch.h"
#include "logbook/browse/WorkedBefore.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/LogChanges.h"
#include "logbook/db/LogDate.h"
#include "logbook/entry/BandTable.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/ContactSummary.h"
#include "logbook/entry/ContestNumbers.h"
#include "logbook/entry/EntryRules.h"
#include "logbook/entry/LogClock.h"
#include "logbook/entry/PendingRetry.h"
#include "mapexport/LogCount.h"
#include "mapexport/LogMapExport.h"
#include "mapexport/MapViewer.h"
#include "mapexport/RichtungQrb.h"
#include "ui/logbook/SlicedJob.h"
#include "ui/widgets/OptionGroup.h"
#include "wsjtx/WsjtxListener.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>

Form5::Form5(Station& station, QWidget* parent)
    : QWidget(parent)
    , station_(station)
    , ownViewer_(std::make_unique<DesktopMapViewer>())
    , viewer_(ownViewer_.get())
    , worked_(std::make_unique<WorkedBefore>())
    , partial_(std::make_unique<CheckPartial>())
{
    ui_.setupUi(this);
    resize(1180, 720);
    model_ = new LogGridModel(this);
    ui_.DataGrid1->setModel(model_);
    ui_.DataGrid1->installEventFilter(this);
    mapExport_ = new LogMapExport(station_, fields_, *viewer_, this);

    const EntryField order[] = { EntryField::DA, EntryField::GM, EntryField::Ca, EntryField::Gr,
        EntryField::Rss, EntryField::Rr, EntryField::Ba, EntryField::mo, EntryField::Na, EntryField::Co,
        EntryField::Qs, EntryField::Pr };
    const QList<QLineEdit*> boxes = ui_.entryBoxes();
    for (int i = 0; i < boxes.size(); ++i) {
        fieldOf_.insert(boxes[i], order[i]);
        boxes[i]->installEventFilter(this);
    }

    connect(ui_.OptBand, &QButtonGroup::idClicked, this, &Form5::OptBand_Click);
    connect(ui_.addnew, &QPushButton::clicked, this, &Form5::addnew_Click);
    connect(ui_.Save, &QPushButton::clicked, this, &Form5::Save_Click);
    connect(ui_.Search, &QPushButton::clicked, this, &Form5::Search_Click);
    connect(ui_.gridDEC, &QPushButton::clicked, this, &Form5::gridDEC_Click);
    connect(ui_.GoogleEarth, &QPushButton::clicked, this, &Form5::GoogleEarth_Click);
    connect(ui_.squareMap, &QPushButton::clicked, this, &Form5::squareMap_Click);
    connect(ui_.adifImport, &QPushButton::clicked, this, &Form5::chooseImportFile);
    connect(ui_.adifExport, &QPushButton::clicked, this, &Form5::chooseExportFile);
    connect(ui_.ediExport, &QPushButton::clicked, this, &Form5::chooseEdiFile);
    connect(ui_.cmdExit, &QPushButton::clicked, this, &QWidget::close);
    connect(
        ui_.DataGrid1->horizontalHeader(), &QHeaderView::sortIndicatorChanged, model_, &LogGridModel::sort);
    connect(model_, &LogGridModel::sortFailed, this,
        [this](const QString& text) { showError(text, QStringLiteral("DataGrid1_HeadClick")); });

    for (QLineEdit* b : { ui_.Ca, ui_.Gr, ui_.Ba })
        connect(b, &QLineEdit::textChanged, this, &Form5::showWorkedBefore);

    changes_ = new LogChanges(this);
    heardTimer_ = new QTimer(this);
    heardTimer_->setSingleShot(true);
    connect(changes_, &LogChanges::changed, this, &Form5::logChanged);
    connect(changes_, &LogChanges::resync, this, [this] { logChanged(QString(), 0); });
    connect(heardTimer_, &QTimer::timeout, this, &Form5::showHeardChanges);

    // The program's start-up creates this window before its first database access.
    if (station_.dbConnection.isEmpty())
        DatabaseFile::connect(station_);
    openWindow();
    startPending();
}

Form5::~Form5() = default;

void Form5::attachWsjtx(WsjtxListener& listener)
{
    wsjtx_ = &listener;
    ui_.wsjtxStatus->setText(listener.statusText());
    connect(&listener, &WsjtxListener::statusChanged, this, [this](const QString& text) {
        ui_.wsjtxStatus->setText(text);
        showWorkedBefore();
    });
    connect(&listener, &WsjtxListener::contactSaved, this, [this](const WorkedContact& contact) {
        worked_->add(contact);
        showWorkedBefore();
        if (!isBusy())
            runCounts({ int(LogCount::Kind::SQNr) }, [this] { loadLogList(QStringLiteral("Save_Click")); });
    });
}

void Form5::showWorkedBefore()
{
    QString call = ui_.Ca->text();
    QString locator = ui_.Gr->text();
    if (call.isEmpty() && wsjtx_ && wsjtx_->hasLiveStatus()) {
        call = wsjtx_->liveStatus().dxCall;
        locator = wsjtx_->liveStatus().dxGrid;
    }
    const QString band = ui_.Ba->text();
    const QStringList lines = WorkedBefore::lines(worked_->check(call, band, locator), band);
    ui_.workedBefore->clear();
    ui_.workedBefore->addItems(lines);
    ui_.checkPartial->clear();
    ui_.checkPartial->addItems(partial_->matches(call));
}

void Form5::setMapViewer(MapViewer* viewer)
{
    viewer_ = viewer ? viewer : ownViewer_.get();
    delete mapExport_;
    mapExport_ = new LogMapExport(station_, fields_, *viewer_, this);
}

void Form5::showError(const QString& numberAndDescription, const QString& procedure)
{
    station_.prompts.information(numberAndDescription + QStringLiteral(" in procedure ") + procedure
        + QStringLiteral(" of Formular form5"));
}

// Window opening: captions and map settings from the station, the band of setting 31 (which
// loads the list), the prefix pattern conversion and the list once more.
void Form5::openWindow()
{
    opened_ = true;
    const QPixmap picture(QCoreApplication::applicationDirPath() + QStringLiteral("/gearth.JPEG"));
    if (!picture.isNull())
        ui_.GoogleEarth->setIcon(QIcon(picture));
    const SettingsTable& s = station_.settings;
    ui_.Callsign->setText(s.textAt(Setting::MyCall));
    ui_.MyGrid->setText(s.textAt(Setting::MyLocator));
    station_.bandPattern = s.textAt(Setting::LogbookText);
    station_.transparency = s.textAt(Setting::Transparency);
    station_.lineBeacons = s.intAt(Setting::LineBeacons) != 0;
    station_.lineStations = s.intAt(Setting::LineStations) != 0;

    int index = s.intAt(Setting::LogbookNumber);
    if (index < 0 || index >= BandTable::Count)
        index = BandTable::AllBands;
    ui_.bandButtons[index]->setChecked(true);
    OptBand_Click(index);

    DbError e;
    if (DxccLookup::convertPatterns(station_.dbConnection, &e) < 0)
        showError(e.text(), QStringLiteral("Form_Load"));
    changes_->watch(station_.dbConnection); // before the reads, so no change falls between
    loadLogList(QStringLiteral("Form_Load"));
    worked_->load(station_.dbConnection); // an unreadable log leaves the list empty
    if (partial_->size() == 0)
        partial_->load(CheckPartial::defaultPath()); // no file: an empty list, no message
}

void Form5::closeWindow()
{
    opened_ = false;
    changes_->stop();
    heardTimer_->stop();
    DbError e;
    if (DxccLookup::convertPatterns(station_.dbConnection, &e) < 0)
        showError(e.text(), QStringLiteral("Form_Unload"));
    SettingsTable& s = station_.settings;
    s.setText(Setting::MyCall, ui_.Callsign->text());
    s.setText(Setting::MyLocator, ui_.MyGrid->text());
    s.setInt16(Setting::LogbookNumber, qint16(bandIndex_));
    s.setText(Setting::LogbookText, station_.bandPattern);
    SaveStationConfig(station_);
    model_->setRecordset(Recordset()); // the window's database objects go
}

void Form5::showEvent(QShowEvent* event)
{
    if (!opened_)
        openWindow(); // shown again after it was closed
    QWidget::showEvent(event);
}

void Form5::closeEvent(QCloseEvent* event)
{
    if (countsJob_)
        countsJob_->abandon(); // counts are redone on the next save or search
    if (isBusy()) {
        event->ignore(); // a long action is running: its dialog offers Cancel
        return;
    }
    if (opened_)
        closeWindow();
    QWidget::closeEvent(event);
}

bool Form5::isBusy() const
{
    return (job_ && job_->isRunning()) || (countsJob_ && countsJob_->isRunning())
        || (mapExport_ && mapExport_->isRunning());
}

void Form5::OptBand_Click(int index)
{
    QElapsedTimer clock;
    clock.start();
    station_.bandPattern.clear();
    station_.bandPattern = BandTable::pattern(index);
    fields_.clearCounts();
    showCounts();
    bandIndex_ = index;
    loadLogList(QStringLiteral("OptBand_Click"));
    ui_.Label1->setText(QString::number(clock.elapsed()) + QStringLiteral(" mS"));
    // The own callsign and locator go back to the system's colours.
    for (QLabel* l : { ui_.Callsign, ui_.MyGrid }) {
        l->setAutoFillBackground(false);
        l->setPalette(QPalette());
    }
}

void Form5::loadLogList(const QString& procedure)
{
    Recordset rs = LogList::open(station_.dbConnection, station_.bandPattern);
    if (rs.hasError() || !rs.isOpen()) {
        if (!procedure.isEmpty()) // empty: a refresh nobody asked for stays quiet
            showError(rs.errorText(), procedure);
        return;
    }
    bind(rs);
    model_->setRecordset(std::move(rs));
    applyColumnWidths();
}

void Form5::bind(const Recordset& rs)
{
    ui_.gridCaption->setText(QString::number(rs.recordCount()));
    ui_.DataGrid1->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

void Form5::applyColumnWidths()
{
    const double dpi = ui_.DataGrid1->logicalDpiX();
    QHeaderView* header = ui_.DataGrid1->horizontalHeader();
    for (const ColumnWidth& c : GridColumns::steps()) {
        if (c.column < model_->columnCount())
            header->resizeSection(c.column, GridColumns::toPixels(c.twips, dpi));
    }
}

void Form5::showCounts()
{
    ui_.Sqw->setText(fields_.sqw);
    ui_.SQc->setText(fields_.sqc);
    ui_.dxw->setText(fields_.dxw);
    ui_.DXc->setText(fields_.dxc);
}

EntryLine Form5::entryLine() const
{
    EntryLine l;
    l.DA = ui_.DA->text();
    l.GM = ui_.GM->text();
    l.Ca = ui_.Ca->text();
    l.Gr = ui_.Gr->text();
    l.Rss = ui_.Rss->text();
    l.Rr = ui_.Rr->text();
    l.Ba = ui_.Ba->text();
    l.mo = ui_.mo->text();
    l.Na = ui_.Na->text();
    l.Co = ui_.Co->text();
    l.Qs = ui_.Qs->text();
    l.Pr = ui_.Pr->text();
    l.cou = ui_.cou->text();
    l.Ns = ui_.Ns->text();
    l.Nr = ui_.Nr->text();
    return l;
}

MapPosition Form5::storedPosition() const
{
    return { station_.coordText, fields_.distanceKm, fields_.bearing };
}

void Form5::addnew_Click()
{
    EntryLine l = entryLine();
    const bool ok = EntryRules::NewContact(l, station_.bandPattern, LogClock::now(LogClock::configured()));
    for (auto [box, text] : { std::pair { ui_.GM, l.GM }, { ui_.DA, l.DA }, { ui_.Rss, l.Rss },
             { ui_.Rr, l.Rr }, { ui_.mo, l.mo }, { ui_.Qs, l.Qs }, { ui_.Pr, l.Pr }, { ui_.Ba, l.Ba } })
        box->setText(text);
    if (!ok) {
        station_.prompts.information(EntryRules::SelectBand);
        return;
    }
    ui_.Ns->setText(ContestNumbers::nextSent(station_.dbConnection, station_.bandPattern));
    ui_.Nr->clear();
    ui_.Ca->setFocus();
}

void Form5::Save_Click()
{
    const EntryLine l = entryLine();
    const QList<SavedField> fields = ContactSave::fields(l, storedPosition());
    if (pending_ && pending_->waiting()) { // in order, behind the contacts kept before
        keepPending(l, fields, false);
        return;
    }
    qint64 id = 0;
    const DbError e = ContactSave::save(station_.dbConnection, fields, &id);
    if (pending_ && e.number == DbErrorNumber::ServerGone) {
        keepPending(l, fields, true);
        return;
    }
    if (e) {
        station_.prompts.information(
            e.number == DbErrorNumber::AlreadyLogged ? e.description : ContactSave::NoNewRecordset);
        return;
    }
    worked_->add({ l.Ca, LogDate::toStored(l.DA), l.Ba, l.mo, l.Gr, l.Qs, l.cou, id });
    clearEntryLine();
    runCounts({ int(LogCount::Kind::SQNr) }, [this] { loadLogList(QStringLiteral("Save_Click")); });
}

void Form5::clearEntryLine()
{
    for (QLineEdit* b : { ui_.DA, ui_.GM, ui_.Ca, ui_.Gr, ui_.Rss, ui_.Rr, ui_.Ba, ui_.mo, ui_.Na, ui_.Qs,
             ui_.Co, ui_.Pr, ui_.Ns, ui_.Nr })
        b->clear();
}

void Form5::logChanged(const QString& op, qint64 id)
{
    if (op == QLatin1String("INSERT"))
        heard_ << id;
    else
        heardAll_ = true;
    if (!heardTimer_->isActive())
        heardTimer_->start(50); // a burst (an import at another position) is read once
}

void Form5::showHeardChanges()
{
    const bool all = heardAll_ || heard_.size() > 1000;
    const int read
        = all ? int(worked_->load(station_.dbConnection)) : worked_->addRows(station_.dbConnection, heard_);
    heard_.clear();
    heardAll_ = false;
    if (read == 0)
        return; // this position's own saves, shown already
    showWorkedBefore();
    if (!isBusy())
        loadLogList(QString());
}

void Form5::Search_Click()
{
    const SearchPlan plan
        = LogSearch::plan(ui_.txtStr->text(), ui_.uSc_MultiOption1->value(), station_.bandPattern);
    if (!plan.rebind) {
        if (plan.counts == SearchPlan::Counts::Squares)
            runCounts({ int(LogCount::Kind::SQNr), int(LogCount::Kind::SQNQr) });
        else if (plan.counts == SearchPlan::Counts::Entities)
            runCounts({ int(LogCount::Kind::DXNr), int(LogCount::Kind::DXNQr) });
        return;
    }
    Recordset rs = LogSearch::open(station_.dbConnection, plan);
    if (rs.hasError() || !rs.isOpen()) {
        showError(rs.errorText(), QStringLiteral("Search_Click"));
        return;
    }
    bind(rs);
    model_->setRecordset(std::move(rs));
    applyColumnWidths();
}

void Form5::DataGrid1_BeforeDelete()
{
    const QModelIndex current = ui_.DataGrid1->currentIndex();
    if (!current.isValid())
        return;
    if (!station_.prompts.question(QStringLiteral(" Delete Recordset ?")))
        return;
    if (!model_->removeRows(current.row(), 1)) {
        showError(model_->recordset().errorText(), QStringLiteral("DataGrid1_BeforeDelete"));
        return;
    }
    ui_.gridCaption->setText(QString::number(model_->rowCount()));
}

void Form5::dxccLookup()
{
    const DxccLookupResult r = DxccLookup::lookup(station_.dbConnection, ui_.Ca->text());
    if (r.found)
        ui_.cou->setText(r.entity.name);
    // No match or a failed lookup ends here: the caption and the focus stay, without a message.
    if (r.found && !r.error.isError())
        ui_.Gr->setFocus();
}

void Form5::locatorCheck()
{
    QString text = ui_.Gr->text();
    if (text.isEmpty())
        return;
    const bool ok = EntryRules::CheckEntryLocator(text);
    ui_.Gr->setText(text);
    if (!ok) {
        ui_.Gr->clear();
        station_.prompts.information(EntryRules::LocatorIncorrect);
        ui_.Ca->setFocus();
    }
    if (ui_.Gr->text().isEmpty())
        return;
    if (RichtungQRB(station_, fields_, ui_.Gr->text())) {
        // without an own locator the contact is kept with distance and bearing 0, and said why
        const QString own = station_.settings.textAt(Setting::MyLocator);
        if (!Locator::own(own)) {
            ui_.qrbInfo->clear();
            station_.prompts.information(Locator::ownProblem(own));
        } else {
            ui_.qrbInfo->setText(QStringLiteral("QRB: %1 km  QTF: %2\u00b0")
                                     .arg(ContactSummary::numberText(fields_.distanceKm),
                                         ContactSummary::numberText(fields_.bearing)));
        }
    }
    ui_.Rss->setFocus();
}

QLineEdit* Form5::box(EntryField field) const
{
    for (auto it = fieldOf_.cbegin(); it != fieldOf_.cend(); ++it) {
        if (it.value() == field)
            return static_cast<QLineEdit*>(it.key());
    }
    return nullptr;
}

void Form5::focusField(EntryField field)
{
    if (field == EntryField::Save) {
        ui_.Save->setFocus();
        return;
    }
    if (QLineEdit* b = box(field))
        b->setFocus();
}

bool Form5::entryKey(EntryField field, QKeyEvent* event)
{
    EntryKey key = EntryKey::Other;
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        key = EntryKey::Enter;
    else if (event->key() == Qt::Key_Left)
        key = EntryKey::Left;
    else if (event->key() == Qt::Key_Right)
        key = EntryKey::Right;
    if (field == EntryField::Rr)
        ui_.mo->setText(EntryRules::ModePreset(ui_.Rr->text())); // before the key takes effect
    if (!EntryKeys::moves(field, key))
        return false;
    focusField(EntryKeys::next(field, key));
    return true;
}

void Form5::entryFocusOut(EntryField field)
{
    if (field == EntryField::Ca) {
        if (!ui_.Ca->text().isEmpty())
            dxccLookup();
        else
            ui_.Ca->setFocus();
    } else if (field == EntryField::Gr) {
        locatorCheck();
    }
}

bool Form5::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui_.DataGrid1 && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        DataGrid1_BeforeDelete();
        return true;
    }
    const auto it = fieldOf_.constFind(watched);
    if (it == fieldOf_.cend())
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress)
        return entryKey(*it, static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::FocusOut) {
        // Switching windows or opening a menu is not leaving the field.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            entryFocusOut(*it);
    }
    return QWidget::eventFilter(watched, event);
}
