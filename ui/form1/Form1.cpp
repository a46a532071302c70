#include "ui/form1/Form1.h"

#include "core/ExtensionSettings.h"
#include "core/MainPorts.h"
#include "core/SensorFrame.h"
#include "core/SilenceWatch.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "core/Weather.h"
#include "devices/rotator/RotatorController.h"
#include "devices/link/PortText.h"
#include "geo/Bearing.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"
#include "ui/form1/Compass.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>

#include <utility>

Q_LOGGING_CATEGORY(lcForm1, "kestrel.ui")

namespace {

const QString kLogbook = QStringLiteral("mnuARLog");
// What a read-out shows while its device is closed, gone or silent.
const QString UnknownHeading = QStringLiteral("---");
const QString UnknownElevation = QStringLiteral("Ele = ---");
const QString UnknownTemperature = QStringLiteral("Temp = ---");

// Leading digits of the read-back ("123;" -> 123); nothing when it starts with none.
std::optional<int> leadingNumber(const QString& text)
{
    qsizetype n = 0;
    while (n < text.size() && text[n].isDigit())
        ++n;
    if (n == 0)
        return std::nullopt;
    return text.left(n).toInt();
}

} // namespace

Form1::Form1(Station& station, const StationPorts::Factory& makeLink, QWidget* parent)
    : QMainWindow(parent)
    , station_(station)
    , ports_(makeLink)
    , windows_(this)
{
    ui_.setupUi(this);
    const QRect screen = QGuiApplication::primaryScreen()
        ? QGuiApplication::primaryScreen()->availableGeometry()
        : QRect(0, 0, 1400, 900);
    // room for a window manager's title bar and frame
    resize(qMin(1400, screen.width() - 20), qMin(920, screen.height() - 40));

    const std::pair<QAction*, QString> entries[] = { { ui_.mnuARLog, QStringLiteral("Logbook") },
        { ui_.mnuGPS, QStringLiteral("GPS") }, { ui_.mnuInitial, QStringLiteral("Initial") },
        { ui_.mnuQSL, QStringLiteral("QSL print") }, { ui_.mnuPacket, QStringLiteral("DX Cluster") } };
    for (const auto& [action, title] : entries) {
        const QString name = action->objectName();
        windows_.declare(name, title);
        connect(action, &QAction::triggered, this, [this, name] { showWindow(name); });
    }

    timer_.setObjectName(QStringLiteral("Timer"));
    timer_.setInterval(200);
    connect(&timer_, &QTimer::timeout, this, &Form1::tick);

    for (int n = 1; n <= 4; ++n) {
        connect(&ports_.com(n), &SerialLink::errorOccurred, this,
            [this, n](const QString& text) { onPortError(n, text); });
        setLamp(n, QStringLiteral("off"), QString());
    }

    connect(ui_.Locator, &QLineEdit::returnPressed, this, [this] {
        if (showBearingAndDistance())
            ui_.Text160->setFocus();
    });
}

Form1::~Form1()
{
    timer_.stop();
}

void Form1::load()
{
    starting_ = true;
    station_.prompts.beginStartup();
    LoadStationConfig(station_);
    const SettingsTable& table = station_.settings;
    station_.myCall = table.textAt(Setting::MyCall);
    station_.myLocator = table.textAt(Setting::MyLocator);
    station_.lineBeacons = table.intAt(Setting::LineBeacons) != 0;
    station_.lineStations = table.intAt(Setting::LineStations) != 0;
    station_.transparency = table.textAt(Setting::Transparency);
    station_.bandPattern = table.textAt(Setting::LogbookText);

    // the logbook window's object sets the database connection: before any database access
    if (windows_.hasFactory(kLogbook))
        windows_.ensure(kLogbook);
    // its locator procedure, run once with an empty contact box, sets the home coordinates
    // that the beacon map needs before the logbook is ever used
    LogMapFields startFields;
    RichtungQRB(station_, startFields, QString());

    fetchWeather();

    const QString sensorPort = ExtensionSettings::value(ExtensionKey::SensorPort);
    const MainPorts::Setup sensor = MainPorts::fromTable(table, 3, sensorPort);
    openPort(3, sensor.portText, sensor.settings);

    emit restoring();

    for (int n : { 1, 2, 4 }) {
        const MainPorts::Setup s = MainPorts::fromTable(table, n, sensorPort);
        portNumbers_[n] = s.portText;
        if (s.inUse)
            openPort(n, s.portText, s.settings);
        else
            setLamp(n, QStringLiteral("off"), QStringLiteral("Com%1 is switched off in the settings").arg(n));
    }
    for (int n = 1; n <= 4; ++n)
        ui_.lblCom[n]->setText(MainPorts::lampText(n, portNumbers_[n]));

    ui_.Label29->setText(table.textAt(Setting::Label29Caption));

    ui_.Picture1->setHeading(std::nullopt);
    updateOverlay();
    restoreLayout();

    showPortProblems();
    emit loaded();
    // the start-up's one box; a close or a signal while it is open ends the start-up
    station_.prompts.finishStartup();
    starting_ = false;
    if (closeRequested_) {
        abandon();
        return;
    }
    timer_.start();
}

void Form1::activate()
{
    for (int n = 1; n <= 4; ++n)
        ui_.lblCom[n]->setText(MainPorts::lampText(n, portNumbers_[n]));
    emit activated();
}

void Form1::tick()
{
    retryLostPorts();

    // Each step stands alone: a closed port or a short reply leaves the other steps alone.
    SerialLink& rotator = ports_.com(4);
    bool rotatorAnswered = false;
    if (rotator.isOpen()) {
        const std::optional<QString> heading = RotatorController::queryHeading(rotator);
        rotatorAnswered = heading.has_value();
        ui_.Label1->setText(heading.value_or(QString()));
    }

    SerialLink& sensor = ports_.com(3);
    bool sensorAnswered = false;
    if (sensor.isOpen()) {
        sensor.write(SensorFrame::Query);
        const QByteArray reply = sensor.readAll();
        sensorAnswered = !reply.isEmpty();
        if (const auto r = SensorFrame::decode(reply)) {
            ui_.Label31->setText(SensorFrame::temperatureText(*r));
            ui_.Label30->setText(SensorFrame::elevationText(*r));
            elevation_ = r->elevation();
            emit sensorRead(r->elevation(), r->temperature);
        }
    }

    // A closed, vanished or silent device's last values would lie: they are shown as unknown.
    const bool headingKnown = watchReplies(4, rotatorAnswered);
    const bool sensorKnown = watchReplies(3, sensorAnswered);
    if (!headingKnown)
        ui_.Label1->setText(UnknownHeading);
    if (!sensorKnown) {
        ui_.Label30->setText(UnknownElevation);
        ui_.Label31->setText(UnknownTemperature);
        elevation_.reset();
    }
    for (QWidget* w : { static_cast<QWidget*>(ui_.Label1), static_cast<QWidget*>(ui_.Picture1) })
        w->setEnabled(headingKnown);
    for (QWidget* w : { ui_.Label30, ui_.Label31 })
        w->setEnabled(sensorKnown);

    if (!headingKnown)
        ui_.Picture1->setHeading(std::nullopt);
    else if (const auto heading = leadingNumber(ui_.Label1->text()))
        ui_.Picture1->setHeading(heading);
    else
        ui_.Picture1->update();
    updateOverlay();

    emit ticked();
}

bool Form1::watchReplies(int n, bool answered)
{
    SilenceWatch& watch = silence_[n];
    const SilenceWatch::State before = watch.state();
    const SilenceWatch::State now = watch.tick(ports_.com(n).isOpen(), answered);
    if (now != before && now != SilenceWatch::State::Closed) {
        if (now == SilenceWatch::State::Silent) {
            qCWarning(lcForm1) << "Com" << n << "open, but the device does not answer";
            setLamp(n, QStringLiteral("silent"),
                QStringLiteral("%1 open, but the device has not answered for %2 ticks")
                    .arg(portNumbers_[n])
                    .arg(SilenceWatch::SilentTicks));
            portProblems_[n] = QStringLiteral("the device does not answer");
        } else if (before == SilenceWatch::State::Silent) {
            qCInfo(lcForm1) << "Com" << n << "answers again";
            setLamp(n, QStringLiteral("open"),
                QStringLiteral("%1 open, %2").arg(portNumbers_[n], portSettings_[n]));
            portProblems_.remove(n);
        }
        showPortProblems();
    }
    return now == SilenceWatch::State::Answering;
}

void Form1::retryLostPorts()
{
    // A USB adapter pulled out and plugged in again comes back by itself: its device file goes
    // and comes back, looked for at most once a second. A port that failed while its file
    // stayed (busy, no permission) waits for the settings dialog instead of being tried
    // over and over.
    for (int n = 1; n <= 4; ++n) {
        if (!portWanted_[n] || ports_.com(n).isOpen() || !portProblems_.contains(n))
            continue;
        if (portRetry_[n].isValid() && portRetry_[n].elapsed() < 1000)
            continue;
        portRetry_[n].start();
        const QString path = PortText::devicePath(portNumbers_[n]);
        if (path.isEmpty())
            continue;
        if (!QFileInfo::exists(path)) {
            portGone_[n] = true;
            continue;
        }
        if (!std::exchange(portGone_[n], false))
            continue;
        qCInfo(lcForm1) << "Com" << n << "trying" << portNumbers_[n] << "again";
        openPort(n, portNumbers_[n], portSettings_[n]);
    }
}

void Form1::restoreLayout()
{
    const auto saved
        = [](const QString& key) { return QByteArray::fromBase64(ExtensionSettings::value(key).toLatin1()); };
    const QByteArray geometry = saved(ExtensionKey::WindowGeometry);
    if (!geometry.isEmpty())
        restoreGeometry(geometry);
    const QByteArray split = saved(ExtensionKey::WindowSplitter);
    if (!split.isEmpty() && ui_.mainSplitter->restoreState(split))
        return;
    // First start: the beacon list gets room for ten rows besides its search and entry
    // lines (eight and more stay whole once the window has found its final size), the
    // panels above the rest of the height.
    int beacons = ui_.beaconBox->sizeHint().height();
    if (const auto* table = ui_.beaconBox->findChild<QTableView*>()) {
        const int rows = table->horizontalHeader()->sizeHint().height()
            + 10 * table->verticalHeader()->defaultSectionSize() + 2 * table->frameWidth();
        beacons += rows - table->sizeHint().height();
    }
    layout()->activate(); // the splitter's height in this window, before it is first shown
    const int total = ui_.mainSplitter->height();
    ui_.mainSplitter->setSizes({ qMax(total - beacons, 1), beacons });
}

void Form1::updateOverlay()
{
    ui_.VCX->setText(
        QStringLiteral("Az: ") + ui_.Label1->text() + QStringLiteral("     Ele: ") + ui_.Label30->text());
}

void Form1::placePanel(Area area, QWidget* panel)
{
    QGroupBox* box = areaBox(area);
    if (QWidget* old = box->findChild<QWidget*>(QStringLiteral("placeholder"), Qt::FindDirectChildrenOnly))
        delete old;
    box->layout()->addWidget(panel);
}

QGroupBox* Form1::areaBox(Area area) const
{
    switch (area) {
    case Area::Rig:
        return ui_.rigBox;
    case Area::Rotator:
        return ui_.rotatorBox;
    case Area::Keyer:
        return ui_.keyerBox;
    case Area::Spectrum:
        return ui_.spectrumBox;
    case Area::Beacons:
        return ui_.beaconBox;
    case Area::Sensor:
        return ui_.sensorBox;
    }
    return ui_.sensorBox;
}

void Form1::registerWindow(const QString& menuName, WindowFactory factory)
{
    windows_.registerFactory(menuName, std::move(factory));
}

QWidget* Form1::showWindow(const QString& menuName)
{
    return windows_.show(menuName);
}

QWidget* Form1::windowInstance(const QString& menuName) const
{
    return windows_.instance(menuName);
}

bool Form1::openPort(int n, const QString& portText, const QString& settings)
{
    SerialLink& link = ports_.com(n);
    if (link.isOpen())
        return true;
    portNumbers_[n] = portText;
    portSettings_[n] = settings;
    portWanted_[n] = true;
    portGone_[n] = false;
    ui_.lblCom[n]->setText(MainPorts::lampText(n, portText));
    portProblems_.remove(n);
    if (!link.open(portText, settings)) {
        if (!portProblems_.contains(n))
            onPortError(n,
                link.errorText().isEmpty() ? portText + QStringLiteral(": could not be opened")
                                           : link.errorText());
        return false;
    }
    qCInfo(lcForm1) << "Com" << n << "open on" << portText << settings;
    setLamp(n, QStringLiteral("open"), QStringLiteral("%1 open, %2").arg(portText, settings));
    showPortProblems();
    return true;
}

void Form1::closePort(int n)
{
    ports_.com(n).close();
    portWanted_[n] = false;
    portProblems_.remove(n);
    setLamp(n, QStringLiteral("off"), QStringLiteral("closed"));
    showPortProblems();
}

bool Form1::isPortOpen(int n) const
{
    return const_cast<StationPorts&>(ports_).com(n).isOpen();
}

void Form1::onPortError(int n, const QString& text)
{
    qCWarning(lcForm1) << "Com" << n << text;
    portProblems_[n] = text;
    setLamp(n, ports_.com(n).isBusy() ? QStringLiteral("busy") : QStringLiteral("failed"), text);
    showPortProblems();
}

void Form1::setLamp(int n, const QString& state, const QString& tip)
{
    QLabel* lamp = ui_.lblCom[n];
    lamp->setProperty("state", state);
    lamp->setToolTip(QStringLiteral("Com%1, %2: ").arg(n).arg(MainPorts::role(n)) + tip);
    if (state == QLatin1String("open"))
        lamp->setStyleSheet(QStringLiteral("background-color: rgb(0,255,0); color: black;"));
    else if (state == QLatin1String("silent"))
        lamp->setStyleSheet(QStringLiteral("background-color: rgb(255,176,0); color: black;"));
    else if (state == QLatin1String("failed") || state == QLatin1String("busy"))
        lamp->setStyleSheet(QStringLiteral("background-color: rgb(255,0,0); color: white;"));
    else
        lamp->setStyleSheet(QStringLiteral("background-color: #d0d0d0; color: #404040;"));
}

void Form1::showPortProblems()
{
    QStringList parts;
    for (auto it = portProblems_.cbegin(); it != portProblems_.cend(); ++it)
        parts << QString::fromLatin1(isPortOpen(it.key()) ? "Com%1 (%2) open: %3" : "Com%1 (%2) not open: %3")
                     .arg(it.key())
                     .arg(MainPorts::role(it.key()), it.value());
    // a message another part of the window put there stays until ports have news
    if (parts.isEmpty()) {
        if (!portMessage_.isEmpty() && statusBar()->currentMessage() == portMessage_)
            statusBar()->clearMessage();
        portMessage_.clear();
        return;
    }
    portMessage_ = parts.join(QStringLiteral("  |  "));
    statusBar()->showMessage(portMessage_);
}

bool Form1::showBearingAndDistance()
{
    const BearingOutcome out = ShowBearingAndDistance(station_, ui_.Locator->text());
    ui_.Locator->setText(out.targetText);
    if (out.ok) {
        ui_.Richtung->setText(out.line);
        ui_.Text160->setText(QString::number(out.wholeDegrees));
    }
    ui_.Locator->setFocus();
    return out.ok;
}

void Form1::fetchWeather()
{
    const QUrl url = Weather::summaryUrl(ExtensionSettings::value(ExtensionKey::WeatherUrl));
    if (!url.isValid()) {
        ui_.Label28->setText(Weather::NoAddressText);
        return;
    }
    ui_.Label28->setText(QStringLiteral("Weather: fetching ..."));
    if (!network_)
        network_ = new QNetworkAccessManager(this);
    QNetworkRequest request(url);
    request.setTransferTimeout(10000);
    QNetworkReply* reply = network_->get(request);
    connect(reply, &QNetworkReply::finished, this, [this, reply] { onWeatherReply(reply); });
}

void Form1::onWeatherReply(QNetworkReply* reply)
{
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError) {
        qCInfo(lcForm1) << "weather page:" << reply->errorString();
        ui_.Label28->setText(Weather::failedText(reply->errorString()));
        return;
    }
    const QString line = Weather::summaryLine(QString::fromUtf8(reply->readAll()));
    ui_.Label28->setText(
        line.isEmpty() ? Weather::failedText(QStringLiteral("no values on the page")) : line);
}

void Form1::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && timer_.isActive())
        activate();
}

void Form1::closeEvent(QCloseEvent* event)
{
    // no box may hold up the end, whether the operator or a signal asked for it
    station_.prompts.beginClosing();
    if (starting_) {
        // load() is still on the stack; it ends the program when it returns
        closeRequested_ = true;
        event->ignore();
        return;
    }
    if (!unloaded_) {
        emit queryUnload();
        unload();
    }
    event->accept();
}

void Form1::abandon()
{
    // The operator never saw this table: the file keeps what it holds, damaged or not.
    qCInfo(lcForm1) << "closed during start-up; the settings are not saved";
    unloaded_ = true;
    timer_.stop();
    for (int n = 1; n <= 4; ++n)
        closePort(n);
    emit unloaded();
}

void Form1::unload()
{
    unloaded_ = true;
    timer_.stop();
    // The other windows go first: what they write back on closing (the logbook's callsign
    // and locator from its opening) must not overwrite the main window's newer values.
    windows_.closeAll();
    emit writingBack();
    SettingsTable& table = station_.settings;
    table.setText(Setting::MyCall, station_.myCall);
    table.setText(Setting::MyLocator, station_.myLocator);
    table.setText(Setting::Label29Caption, ui_.Label29->text());
    table.setText(Setting::LogbookText, station_.bandPattern);
    SaveStationConfig(station_);
    ExtensionSettings::setValue(ExtensionKey::WindowGeometry, QString::fromLatin1(saveGeometry().toBase64()));
    ExtensionSettings::setValue(
        ExtensionKey::WindowSplitter, QString::fromLatin1(ui_.mainSplitter->saveState().toBase64()));
    for (int n = 1; n <= 4; ++n)
        closePort(n);
    emit unloaded();
}
