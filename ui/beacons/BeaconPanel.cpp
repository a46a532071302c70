#include "ui/beacons/BeaconPanel.h"

#include "beacons/BeaconList.h"
#include "beacons/BeaconMapData.h"
#include "beacons/BeaconMapExport.h"
#include "beacons/BeaconTexts.h"
#include "core/Station.h"
#include "geo/Bearing.h"
#include "geo/Locator.h"
#include "logbook/db/RecordsetModel.h"
#include "mapexport/MapViewer.h"
#include "ui/beacons/BeaconGrid.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

QPushButton* button(const QString& name, const QString& caption, QWidget* parent)
{
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    return b;
}

QLineEdit* box(const QString& name, const QString& tip, QWidget* parent)
{
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setToolTip(tip);
    return e;
}

} // namespace

BeaconPanel::BeaconPanel(Station& station, MapViewer* viewer, QWidget* parent)
    : QWidget(parent)
    , station_(station)
    , ownViewer_(viewer ? nullptr : std::make_unique<DesktopMapViewer>())
    , viewer_(viewer ? viewer : ownViewer_.get())
{
    setObjectName(QStringLiteral("beaconPanel"));
    buildUi();
    // The chosen beacon is the cluster window's option-2 spot: frequency, call, its locator.
    connect(this, &BeaconPanel::beaconChosen, this,
        [this](const QString& name, const QString& locator, const QString& qrg) {
            station_.spotQrg = qrg;
            station_.spotCall = name;
            station_.spotRemark = locator;
        });
}

BeaconPanel::~BeaconPanel() = default;

void BeaconPanel::buildUi()
{
    grid_ = new BeaconGrid(this);
    model_ = new RecordsetModel(this);
    grid_->setModel(model_);
    caption_ = new QLabel(this);
    caption_->setObjectName(QStringLiteral("DataGrid1Caption"));
    caption_->setToolTip(QStringLiteral("Entries in the list"));
    beSearch_
        = box(QStringLiteral("BeSearch"), QStringLiteral("Beginning of the name; Enter lists them"), this);
    banCoun_ = button(QStringLiteral("BanCoun"), QStringLiteral("QRG sort"), this);
    banCoun_->setCheckable(true);
    banCoun_->setToolTip(QStringLiteral("Pressed: sorted by frequency; released: by name"));
    auto* bcn = button(QStringLiteral("Bcn"), QStringLiteral("BeaconList "), this);
    auto* beMon = button(QStringLiteral("BeMon"), QStringLiteral("MyMonList"), this);
    auto* gd = button(QStringLiteral("GD"), QStringLiteral("GD"), this);
    gd->setToolTip(QStringLiteral("Prepare the map positions and descriptions of the listed beacons"));
    auto* geb = button(QStringLiteral("GEB"), QStringLiteral("GE"), this);
    geb->setToolTip(QStringLiteral("Show the beacons on the globe (earth.kml)"));
    txtBeacon_ = box(QStringLiteral("txtBeacon"), QStringLiteral("New entry: name or callsign"), this);
    txtQrgB_ = box(QStringLiteral("txtQrgB"), QStringLiteral("New entry: frequency in kHz"), this);
    txtLocB_ = box(QStringLiteral("txtLocB"), QStringLiteral("New entry: locator"), this);
    txtComment_
        = box(QStringLiteral("txtComment"), QStringLiteral("New entry: antenna, power, remarks"), this);
    auto* addNew = button(QStringLiteral("CMDaddnew"), QStringLiteral("Add New "), this);
    auto* save = button(QStringLiteral("CmdSave"), QStringLiteral("Save"), this);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(QStringLiteral("Search"), this), 0, 0);
    layout->addWidget(beSearch_, 0, 1);
    layout->addWidget(banCoun_, 0, 2);
    layout->addWidget(bcn, 0, 3);
    layout->addWidget(beMon, 0, 4);
    layout->addWidget(gd, 0, 5);
    layout->addWidget(geb, 0, 6);
    layout->addWidget(caption_, 0, 7);
    layout->addWidget(grid_, 1, 0, 1, 8);
    const QString heads[] = { QStringLiteral("Beacon"), QStringLiteral("QRG kHz"), QStringLiteral("Locator"),
        QStringLiteral("Comment") };
    QLineEdit* boxes[] = { txtBeacon_, txtQrgB_, txtLocB_, txtComment_ };
    for (int i = 0; i < 4; ++i) {
        layout->addWidget(new QLabel(heads[i], this), 2, 2 * i, 1, 2);
        layout->addWidget(boxes[i], 3, 2 * i, 1, 2);
    }
    layout->addWidget(addNew, 4, 4, 1, 2);
    layout->addWidget(save, 4, 6, 1, 2);
    layout->setRowStretch(1, 1);

    connect(grid_, &BeaconGrid::captionChanged, caption_, &QLabel::setText);
    connect(grid_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
        [this](const QModelIndex& current) {
            if (!quiet_ && current.isValid())
                chooseRow(current.row());
        });
    connect(grid_, &BeaconGrid::deleteRequested, this, &BeaconPanel::deleteRow);
    connect(beSearch_, &QLineEdit::returnPressed, this, &BeaconPanel::LoadBeaconList);
    connect(banCoun_, &QPushButton::toggled, this, [this](bool pressed) {
        station_.settings.setInt16(Setting::BeaconCount, pressed ? -1 : 0);
        LoadBeaconList();
    });
    connect(bcn, &QPushButton::clicked, this, [this] {
        nameFilter_.clear();
        LoadBeaconList();
    });
    connect(beMon, &QPushButton::clicked, this, [this] {
        nameFilter_ = BeaconTexts::BeaconsOnly;
        LoadBeaconList();
    });
    connect(gd, &QPushButton::clicked, this, &BeaconPanel::GD_Click);
    connect(geb, &QPushButton::clicked, this, &BeaconPanel::GeB_Click);
    connect(addNew, &QPushButton::clicked, this, &BeaconPanel::CMDaddnew_Click);
    connect(save, &QPushButton::clicked, this, &BeaconPanel::CmdSave_Click);
    connect(txtBeacon_, &QLineEdit::returnPressed, txtQrgB_, [this] { txtQrgB_->setFocus(); });
    connect(txtQrgB_, &QLineEdit::returnPressed, txtLocB_, [this] { txtLocB_->setFocus(); });
    connect(txtLocB_, &QLineEdit::returnPressed, txtComment_, [this] { txtComment_->setFocus(); });
    txtLocB_->installEventFilter(this);
}

void BeaconPanel::LoadBeaconList()
{
    const SettingsTable& table = station_.settings;
    if ((table.textAt(Setting::MyCall).isEmpty() || table.textAt(Setting::MyLocator).isEmpty())
        && hooks_.openSettings)
        hooks_.openSettings();
    if (hooks_.rigBandHandler)
        hooks_.rigBandHandler();

    BeaconList::Loaded loaded
        = BeaconList::load(station_.dbConnection, beSearch_->text(), banCoun_->isChecked(), nameFilter_);
    if (loaded.error) {
        // the grid keeps what it showed; the list reloads on every activation, the fault is
        // told once
        station_.prompts.reportOnce(
            BeaconTexts::procedureError(loaded.error, QStringLiteral("LoadBeaconList")));
        return;
    }
    const int rows = loaded.rs.recordCount();
    quiet_ = true;
    model_->setRecordset(std::move(loaded.rs));
    quiet_ = false;
    grid_->setCaption(QString::number(rows));
}

void BeaconPanel::activate()
{
    nameFilter_ = BeaconTexts::BeaconsOnly;
    LoadBeaconList();
}

void BeaconPanel::restoreFromSettings()
{
    const QSignalBlocker block(banCoun_);
    banCoun_->setChecked(station_.settings.boolAt(Setting::BeaconCount));
}

void BeaconPanel::writeToSettings()
{
    station_.settings.setInt16(Setting::BeaconCount, banCoun_->isChecked() ? -1 : 0);
}

std::optional<int> BeaconPanel::aimAt(const QString& locator)
{
    if (hooks_.aimAt)
        return hooks_.aimAt(locator);
    const BearingOutcome out = ShowBearingAndDistance(station_, locator);
    return out.ok ? std::optional<int>(out.wholeDegrees) : std::nullopt;
}

void BeaconPanel::chooseRow(int row)
{
    const Recordset& rs = model_->recordset();
    const int nameField = rs.fieldIndex(QStringLiteral("beacon"));
    const int locatorField = rs.fieldIndex(QStringLiteral("Locator"));
    const int qrgField = rs.fieldIndex(QStringLiteral("qrg"));
    if (row < 0 || row >= rs.recordCount() || nameField < 0 || locatorField < 0 || qrgField < 0)
        return;
    // The row's own locator and frequency: one call stands on several bands in a real list.
    const QString name = rs.valueAt(row, nameField).toString();
    const QString locator = rs.valueAt(row, locatorField).toString();
    const QString qrg = rs.valueAt(row, qrgField).toString();
    emit beaconChosen(name, locator, qrg);

    // The window's locator box takes the focus, as after any bearing.
    const std::optional<int> degrees = aimAt(locator);
    if (const std::optional<BeaconTuning> tuning = BeaconTuningFor(qrg); tuning && hooks_.followBand)
        hooks_.followBand(*tuning);
    if (degrees && hooks_.turnTo)
        hooks_.turnTo(*degrees);
}

bool BeaconPanel::deleteRow(int row)
{
    if (row < 0 || row >= model_->rowCount())
        return false;
    if (!station_.prompts.question(BeaconTexts::DeleteQuestion))
        return false;
    quiet_ = true;
    const bool deleted = model_->removeRows(row, 1);
    quiet_ = false;
    if (!deleted)
        station_.prompts.information(BeaconTexts::procedureError(
            model_->recordset().error(), QStringLiteral("DataGrid1_BeforeDelete")));
    return deleted;
}

void BeaconPanel::CMDaddnew_Click()
{
    if (station_.bandPattern.isEmpty()) {
        station_.prompts.information(BeaconTexts::SelectBand);
        return;
    }
    txtBeacon_->setFocus();
    txtQrgB_->setText(BeaconList::presetQrg(station_.bandPattern));
}

void BeaconPanel::CmdSave_Click()
{
    const DbError error = BeaconList::save(station_.dbConnection,
        { txtBeacon_->text(), txtQrgB_->text(), txtLocB_->text(), txtComment_->text() });
    if (error) {
        station_.prompts.information(BeaconTexts::NoNewRecordset);
        return;
    }
    for (QLineEdit* e : { txtBeacon_, txtQrgB_, txtLocB_, txtComment_ })
        e->clear();
}

void BeaconPanel::GD_Click()
{
    GD(station_, nameFilter_);
}

void BeaconPanel::GeB_Click()
{
    ::GeB_Click(station_, nameFilter_, *viewer_);
}

bool BeaconPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == txtLocB_ && event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        // Switching windows or opening a menu is not leaving the box.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason && !locCheckPending_) {
            // After the focus change is complete: a message box must not open inside it.
            locCheckPending_ = true;
            QTimer::singleShot(0, this, &BeaconPanel::checkTxtLocB);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void BeaconPanel::checkTxtLocB()
{
    locCheckPending_ = false;
    station_.locatorInvalid = true;
    const QString text = txtLocB_->text();
    if (!text.isEmpty()) {
        const QString upper = text.toUpper();
        txtLocB_->setText(upper);
        CheckLocator(station_, upper);
    }
    // deliberate: an empty box keeps the flag set and so keeps the focus too.
    if (station_.locatorInvalid)
        txtLocB_->setFocus();
    else
        txtComment_->setFocus();
}
