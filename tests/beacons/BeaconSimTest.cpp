// End to end with kestrel-sim: the main window with the rig, rotator and beacon panels on the
// simulated station's pseudo-terminals; choosing a beacon must leave the simulated rotator on
// the bearing the window shows and the simulated rig on the beacon's frequency.
#include "devices/lines/OutputLines.h"
#include "devices/link/QtSerialLink.h"
#include "devices/rig/RigController.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/RecordsetModel.h"
#include "logbook/db/SeedData.h"
#include "mapexport/MapViewer.h"
#include "tests/beacons/BeaconDb.h"
#include "tests/support/SimProcess.h"
#include "ui/beacons/BeaconGrid.h"
#include "ui/beacons/BeaconPanel.h"
#include "ui/beacons/BeaconStation.h"
#include "ui/form1/Form1.h"
#include "ui/rig/RigPanel.h"
#include "ui/rig/StationPanels.h"
#include "ui/widgets/OptionGroup.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>

namespace {

// The whole QTF shown in Richtung ("JN48TH -> JO55WM QTF: 31.4° / ..."), cut to whole degrees.
int shownDegrees(const QString& richtung)
{
    const QRegularExpressionMatch m = QRegularExpression(QStringLiteral("QTF: *([0-9]+)")).match(richtung);
    return m.hasMatch() ? m.captured(1).toInt() : -1;
}

// The main window with its rig, rotator and beacon panels on the database `path`, shown and
// active, its ports those of the kestrel-sim that wrote the current folder's settings.
struct SimWindow {
    explicit SimWindow(const QString& path)
    {
        station.dbConnection = path;
        form->load();
        form->show();
    }
    ~SimWindow() { form->close(); }
    BeaconPanel& panel() { return beacons->panel(); }
    RigController& rig() { return panels->rig().controller(); }

    RecordingPrompts prompts;
    Station station { prompts };
    RecordingMapViewer viewer;
    std::unique_ptr<Form1> form = std::make_unique<Form1>(station, makeQtSerialLink);
    StationPanels* panels = new StationPanels(*form, std::make_unique<OutputLines>());
    BeaconStation* beacons = new BeaconStation(*form, *panels, &viewer);
};

} // namespace

TEST(BeaconSim, ChosenBeaconTurnsTheRotatorToTheShownBearingAndTunesTheRig)
{
    TempDir dir;
    SimProcess sim(dir.path(), { "--rotator-rate", "90" });
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    BeaconDb db(dir.path());
    ASSERT_TRUE(db.ok());
    ASSERT_TRUE(db.add({ { "OZ7IGY/B", "JO55WM", "144471", "Jystrup" },
        { "DB0XYZ/B", "JO40FF", "1296930", "" }, { "DL1ABC", "JO31", "144300", "not a beacon" } }));

    SimWindow w(db.path());
    Form1* form = w.form.get();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    ASSERT_TRUE(form->isPortOpen(4));

    BeaconPanel& panel = w.panel();
    BeaconGrid* grid = form->findChild<BeaconGrid*>(QStringLiteral("DataGrid1"));
    EXPECT_EQ(grid->caption(), "2"); // activation: beacons only
    const auto click = [&](int row) {
        QTest::mouseClick(
            grid->viewport(), Qt::LeftButton, {}, grid->visualRect(panel.model().index(row, 0)).center());
    };
    const int row = panel.model().index(0, 0).data().toString() == "OZ7IGY/B" ? 0 : 1;
    click(row);

    const auto text
        = [&](const char* name) { return form->findChild<QLineEdit*>(QLatin1String(name))->text(); };
    EXPECT_EQ(text("Locator"), "JO55WM");
    const int degrees = shownDegrees(text("Richtung"));
    EXPECT_GE(degrees, 5) << text("Richtung").toStdString(); // Jystrup lies north-north-east of JN48
    EXPECT_LE(degrees, 30);
    EXPECT_EQ(text("Text160").toInt(), degrees);
    EXPECT_TRUE(w.prompts.shown.isEmpty()) << w.prompts.shown.join(" | ").toStdString();

    const QString want = QStringLiteral("heading=%1.0 target=%1 motion=stopped").arg(degrees);
    const QString rotator = sim.waitFor("rotator", want, 8000);
    EXPECT_TRUE(rotator.startsWith(want)) << rotator.toStdString();

    // The rig took over the beacon's frequency on 144 MHz, and the next band click keeps it.
    const QString rig = sim.waitFor("rig", "frequency=144471000 ");
    EXPECT_TRUE(rig.startsWith("frequency=144471000 ")) << rig.toStdString();
    EXPECT_TRUE(form->findChild<OptionGroup*>(QStringLiteral("OptBandV"))->button(2)->isChecked());
    EXPECT_FALSE(w.rig().presetFlag());

    // A microwave beacon with no transverter for its band is refused before anything moves:
    // the display and the band buttons keep what the rig is on.
    const int microwaveBand = w.rig().microwaveBand();
    click(1 - row);
    EXPECT_EQ(w.prompts.shown, QStringList { RigController::refusalText(129693000) });
    EXPECT_EQ(w.rig().counter(), 14447100);
    EXPECT_EQ(w.rig().microwaveBand(), microwaveBand);
}

// Every row of a new database's starter list, chosen in turn, leaves the simulated rig on that
// row's own frequency (one call stands on ten bands there); the microwave rows reach it through
// the station's transverters, on their IF, while the display keeps the row's frequency.
TEST(BeaconSim, EveryStarterRowTunesTheRigToThatRow)
{
    TempDir dir;
    SimProcess sim(dir.path());
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    // RF start (MHz) -> IF start on the rig.
    const QList<std::pair<int, int>> transverters
        = { { 1296, 144 }, { 2320, 144 }, { 3400, 432 }, { 5760, 144 }, { 10368, 144 }, { 24048, 432 } };
    QByteArray table = "\n[transverters]\n";
    for (const auto& [rf, ifStart] : transverters)
        table += QByteArray::number(rf) + '=' + QByteArray::number(ifStart) + '\n';
    dir.write(QStringLiteral("Kestrel.ini"), dir.read(QStringLiteral("Kestrel.ini")) + table);
    const QString path = dir.file("starter.db");
    ASSERT_TRUE(DatabaseFile::create(path));
    SimWindow w(path);
    ASSERT_TRUE(QTest::qWaitForWindowActive(w.form.get()));
    BeaconPanel& panel = w.panel();
    const int rows = panel.model().rowCount();
    ASSERT_EQ(rows, int(SeedData::beacons().size()));

    for (const bool text : { true, false }) {
        w.station.settings.setBool(Setting::Check2, text);
        for (int row = 0; row < rows; ++row) {
            const QString qrg = panel.model().index(row, 2).data().toString();
            const QString name = panel.model().index(row, 0).data().toString() + " " + qrg;
            const qint64 hz = std::llround(qrg.toDouble() * 1000.0);
            const int bandBefore = w.rig().bandIndex();
            panel.grid()->setCurrentIndex(panel.model().index(row, 0));
            EXPECT_EQ(w.rig().counter(), hz / 10) << name.toStdString();
            if (qrg.startsWith("70"))
                EXPECT_EQ(w.rig().bandIndex(), bandBefore) << "4 m keeps the band";
            qint64 onRig = hz;
            for (const auto& [rf, ifStart] : transverters)
                if (hz >= rf * 1000000LL && hz < (rf + 2) * 1000000LL)
                    onRig = hz - (rf - ifStart) * 1000000LL;
            const QString want = QStringLiteral("frequency=%1 ").arg(onRig);
            const QString rig = sim.waitFor("rig", want);
            EXPECT_TRUE(rig.startsWith(want)) << name.toStdString() << ": " << rig.toStdString();
        }
    }
    EXPECT_TRUE(w.prompts.shown.isEmpty()) << w.prompts.shown.join(" | ").toStdString();
}
