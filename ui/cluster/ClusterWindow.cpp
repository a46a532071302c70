#include "ui/cluster/ClusterWindow.h"

#include "cluster/ClusterClient.h"
#include "cluster/SpotFilterModel.h"
#include "cluster/SpotLines.h"
#include "cluster/SpotTableModel.h"
#include "core/ExtensionSettings.h"
#include "core/AdifBandPlan.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "ui/cluster/UpperCaseValidator.h"
#include "ui_ClusterWindow.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextCursor>

ClusterWindow::ClusterWindow(Station& station, QWidget* parent)
    : QWidget(parent, Qt::Window)
    , station_(station)
    , ui_(std::make_unique<Ui::ClusterWindow>())
    , client_(new ClusterClient(this))
    , filter_(new SpotFilterModel(this))
{
    ui_->setupUi(this);
    client_->setObjectName(QStringLiteral("clusterClient"));

    ui_->TXTterm->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ui_->TXTterm->setMaximumBlockCount(client_->terminal().maxLines());
    ui_->TXTinput->setValidator(new UpperCaseValidator(ui_->TXTinput));

    filter_->setSourceModel(client_->spots());
    ui_->tblSpots->setModel(filter_);
    // Widths from the font, not from the contents: measuring 1000 rows on every batch is slow.
    QHeaderView* header = ui_->tblSpots->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Interactive);
    const QFontMetrics fm = ui_->tblSpots->fontMetrics();
    const char* const widest[]
        = { "0000Z", "10368100.0", "OZ7IGY/B/P", "OK1XYZ-#", "JO90KA<TR>JO70FD 559", "1.25m" };
    for (int column = 0; column < SpotTableModel::ColumnCount; ++column)
        header->resizeSection(column, fm.horizontalAdvance(QString::fromLatin1(widest[column])) + 16);
    ui_->tblSpots->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    ui_->cboBand->addItem(QStringLiteral("All bands"), QString());
    for (const QString& band : AdifBandPlan::names())
        ui_->cboBand->addItem(band, band);
    ui_->splitter->setStretchFactor(0, 3);
    ui_->splitter->setStretchFactor(1, 2);

    connect(client_, &ClusterClient::terminalChanged, this, &ClusterWindow::showTerminal);
    connect(client_, &ClusterClient::connectionChanged, this, &ClusterWindow::showConnection);
    connect(ui_->TXTinput, &QLineEdit::returnPressed, this, &ClusterWindow::sendTyped);
    connect(ui_->cmdConnect, &QPushButton::clicked, this, [this] {
        sendText_.clear();
        sendRoutine();
    });
    connect(ui_->cmdDisconnect, &QPushButton::clicked, this, [this] {
        sendText_ = QStringLiteral("bye");
        sendRoutine();
    });
    connect(ui_->cmdSendmessage, &QPushButton::clicked, this, &ClusterWindow::sendSpot);
    connect(ui_->cmdTCP, &QPushButton::clicked, this, &ClusterWindow::reconnect);
    connect(ui_->Cmdrefresh, &QPushButton::clicked, this, &ClusterWindow::buildSpotLines);
    connect(ui_->Initial, &QPushButton::clicked, this, [this] {
        if (openSettings_)
            openSettings_();
    });
    connect(ui_->cmdExit, &QPushButton::clicked, this, &QWidget::close);
    connect(ui_->uSc_MultiOption1, &OptionGroup::valueChanged, this, &ClusterWindow::optionSpotChanged);
    connect(ui_->uSc_MultiOption2, &OptionGroup::valueChanged, this, &ClusterWindow::optionTagChanged);
    connect(ui_->cboBand, &QComboBox::currentIndexChanged, this,
        [this] { filter_->setBand(ui_->cboBand->currentData().toString()); });
    connect(ui_->tblSpots, &QTableView::doubleClicked, this, &ClusterWindow::spotActivated);
}

ClusterWindow::~ClusterWindow() = default;

void ClusterWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!loaded_)
        formLoad();
}

void ClusterWindow::closeEvent(QCloseEvent* event)
{
    client_->close();
    loaded_ = false;
    QWidget::closeEvent(event);
}

void ClusterWindow::formLoad()
{
    loaded_ = true;
    // The entry box is upper case from the start (its validator); the socket is reset here.
    client_->close();
    const ClusterServer server = chooseClusterServer(station_.settings);
    LoadStationConfig(station_);
    myCall_ = station_.settings.textAt(Setting::MyCall);
    myLocator_ = station_.settings.textAt(Setting::MyLocator);
    {
        const QSignalBlocker b1(ui_->uSc_MultiOption1);
        const QSignalBlocker b2(ui_->uSc_MultiOption2);
        ui_->uSc_MultiOption1->setValue(station_.settings.intAt(Setting::ClusterOption1));
        ui_->uSc_MultiOption2->setValue(station_.settings.intAt(Setting::ClusterOption2));
    }
    const QString autoLogin = ExtensionSettings::value(ExtensionKey::ClusterAutoLogin).trimmed().toLower();
    client_->setAutoLogin(autoLogin == u"true" || autoLogin == u"1" ? myCall_.trimmed() : QString());
    client_->connectTo(server);
    sendText_.clear();
    ui_->QrgD->setText(SpotLines::qrgFromFrequencyText(station_.frequencyText));
    buildSpotLines();
}

void ClusterWindow::buildSpotLines()
{
    const int tag = ui_->uSc_MultiOption2->value();
    ui_->txtMessageB->setText(
        SpotLines::fromSpot(station_.spotQrg, station_.spotCall, station_.spotRemark, tag, myLocator_));
    ui_->txtmessageD->setText(SpotLines::fromBoxes(ui_->QrgD->text(), ui_->CallD->text(), tag, myLocator_));
}

void ClusterWindow::sendRoutine()
{
    client_->send(sendText_);
}

void ClusterWindow::sendTyped()
{
    sendText_ = ui_->TXTinput->text();
    sendRoutine();
    // A line that could not go out stays in the box to be sent again.
    if (client_->isConnected())
        ui_->TXTinput->clear();
}

void ClusterWindow::sendSpot()
{
    sendText_ = ui_->uSc_MultiOption1->value() == 2 ? ui_->txtMessageB->text() : ui_->txtmessageD->text();
    sendRoutine();
}

void ClusterWindow::reconnect()
{
    client_->connectTo(chooseClusterServer(station_.settings));
}

void ClusterWindow::optionSpotChanged(int value)
{
    station_.settings.setInt16(Setting::ClusterOption1, static_cast<qint16>(value));
    SaveStationConfig(station_);
}

void ClusterWindow::optionTagChanged(int value)
{
    station_.settings.setInt16(Setting::ClusterOption2, static_cast<qint16>(value));
    SaveStationConfig(station_);
    buildSpotLines();
}

void ClusterWindow::showTerminal()
{
    TerminalText::Update u = client_->terminal().takeUpdate();
    if (!u.changed && u.finished.isEmpty())
        return;
    QPlainTextEdit* term = ui_->TXTterm;
    QScrollBar* bar = term->verticalScrollBar();
    const bool atEnd = bar->value() >= bar->maximum();
    if (u.reset) {
        term->setPlainText(client_->terminal().lines().join(QLatin1Char('\n')));
    } else {
        // The view's last line is the open line of the previous update: replace it.
        QTextCursor c(term->document());
        c.movePosition(QTextCursor::End);
        c.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
        if (u.finished.isEmpty())
            c.insertText(u.open);
        else
            c.insertText(u.finished.join(QLatin1Char('\n')) + QLatin1Char('\n') + u.open);
    }
    // The caret goes after the new text; the view follows it unless the operator scrolled back.
    QTextCursor end(term->document());
    end.movePosition(QTextCursor::End);
    const int keep = bar->value();
    term->setTextCursor(end);
    if (atEnd)
        bar->setValue(bar->maximum());
    else
        bar->setValue(keep);
}

void ClusterWindow::showConnection(bool connected)
{
    const ClusterServer& s = client_->server();
    ui_->lblState->setText(connected ? QStringLiteral("Connected to %1:%2").arg(s.host).arg(s.port)
                                     : QStringLiteral("Not connected"));
}

void ClusterWindow::spotActivated(const QModelIndex& index)
{
    const QModelIndex source = filter_->mapToSource(index);
    if (!source.isValid())
        return;
    const Spot spot = client_->spots()->spotAt(source.row());
    ui_->QrgD->setText(spot.frequency);
    ui_->CallD->setText(spot.call);
    station_.spotQrg = spot.frequency;
    station_.spotCall = spot.call;
    buildSpotLines();
    const QString frequencyText = SpotLines::frequencyTextFromQrg(spot.frequency);
    if (tuneTo_ && !frequencyText.isEmpty())
        tuneTo_(frequencyText);
}
