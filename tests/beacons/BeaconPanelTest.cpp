// The beacon panel on the offscreen platform, driven by objectName, on a real database file.
#include "ui/beacons/BeaconPanel.h"
#include "logbook/db/RecordsetModel.h"
#include "mapexport/MapViewer.h"
#include "tests/beacons/BeaconDb.h"
#include "ui/beacons/BeaconGrid.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct PanelFixture : BeaconFixture {
    RecordingMapViewer viewer;
    BeaconPanel panel { station, &viewer };
    QStringList calls; // the hooks in the order they ran

    PanelFixture()
    {
        EXPECT_TRUE(
            db.add({ { "OK1KIR/B", "JO70FD", "144430", "Prague" }, { "DB0ABC/B", "JO40FF", "10368050", "" },
                { "DL0XY/B", "JN49RV", "1296900", "" }, { "DM2AB", "JO62QM", "50050", "my friend" },
                { "G4ABC", "IO91WM", "70021", "" }, { "D_1X", "JN58TD", "14400", "" } }));
        BeaconHooks& h = panel.hooks();
        h.openSettings = [this] { calls << "settings"; };
        h.rigBandHandler = [this] { calls << "band handler"; };
        h.aimAt = [this](const QString& locator) -> std::optional<int> {
            calls << "aim " + locator;
            return 42;
        };
        h.followBand = [this](const BeaconTuning& t) {
            calls << QStringLiteral("band %1 V%2 R%3 %4")
                         .arg(t.band.value)
                         .arg(t.band.vhfOption)
                         .arg(t.band.microwaveOption)
                         .arg(t.counter.value_or(-1));
        };
        h.turnTo = [this](int degrees) { calls << "turn " + QString::number(degrees); };
        panel.resize(700, 400);
    }
    template <typename T> T* child(const char* name)
    {
        return panel.findChild<T*>(QString::fromLatin1(name));
    }
    BeaconGrid* grid() { return child<BeaconGrid>("DataGrid1"); }
    QString caption() { return grid()->property("caption").toString(); }
    QStringList column(int field)
    {
        QStringList out;
        for (int row = 0; row < panel.model().rowCount(); ++row)
            out << panel.model().index(row, field).data().toString();
        return out;
    }
    void search(const char* text)
    {
        child<QLineEdit>("BeSearch")->clear();
        QTest::keyClicks(child<QLineEdit>("BeSearch"), text);
        QTest::keyClick(child<QLineEdit>("BeSearch"), Qt::Key_Return);
    }
    int rowOf(const QString& name) { return int(column(0).indexOf(name)); }
    void clickRow(int row)
    {
        const QRect r = grid()->visualRect(panel.model().index(row, 0));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, r.center());
    }
    bool showActive()
    {
        panel.show();
        panel.activateWindow();
        return QTest::qWaitForWindowActive(&panel);
    }
};

} // namespace

TEST(BeaconPanel, ControlsCarryTheirNamesAndCaptions)
{
    PanelFixture f;
    EXPECT_EQ(f.child<QPushButton>("Bcn")->text(), "BeaconList ");
    EXPECT_EQ(f.child<QPushButton>("BeMon")->text(), "MyMonList");
    EXPECT_EQ(f.child<QPushButton>("CMDaddnew")->text(), "Add New ");
    EXPECT_EQ(f.child<QPushButton>("CmdSave")->text(), "Save");
    EXPECT_EQ(f.child<QPushButton>("GD")->text(), "GD");
    EXPECT_EQ(f.child<QPushButton>("GEB")->text(), "GE");
    EXPECT_TRUE(f.child<QPushButton>("BanCoun")->isCheckable());
    for (const char* name : { "BeSearch", "txtBeacon", "txtQrgB", "txtLocB", "txtComment" })
        EXPECT_NE(f.child<QLineEdit>(name), nullptr) << name;
}

TEST(BeaconPanel, LoadRunsItsStepsInOrderAndSetsTheCaption)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    EXPECT_EQ(f.calls, QStringList({ "band handler" })); // callsign and locator are set
    EXPECT_EQ(f.caption(), "6");
    EXPECT_EQ(f.panel.findChild<QLabel*>("DataGrid1Caption")->text(), "6");
    EXPECT_EQ(f.column(0), QStringList({ "D_1X", "DB0ABC/B", "DL0XY/B", "DM2AB", "G4ABC", "OK1KIR/B" }));

    f.calls.clear();
    f.station.settings.setText(Setting::MyLocator, "");
    f.panel.LoadBeaconList();
    EXPECT_EQ(f.calls, QStringList({ "settings", "band handler" }));
}

TEST(BeaconPanel, BanCounSortsByQrgAlphabeticallyAndKeepsItsState)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.child<QPushButton>("BanCoun")->click();
    EXPECT_EQ(f.column(2), QStringList({ "10368050", "1296900", "14400", "144430", "50050", "70021" }));
    EXPECT_EQ(f.station.settings.intAt(Setting::BeaconCount), -1);
    f.child<QPushButton>("BanCoun")->click();
    EXPECT_EQ(f.column(0).first(), "D_1X");
    EXPECT_EQ(f.station.settings.intAt(Setting::BeaconCount), 0);

    f.station.settings.setInt16(Setting::BeaconCount, -1);
    f.panel.restoreFromSettings();
    EXPECT_TRUE(f.child<QPushButton>("BanCoun")->isChecked());
    EXPECT_EQ(f.caption(), "6"); // restoring loads nothing
    f.child<QPushButton>("BanCoun")->setChecked(false);
    f.station.settings.setInt16(Setting::BeaconCount, 7);
    f.panel.writeToSettings();
    EXPECT_EQ(f.station.settings.intAt(Setting::BeaconCount), 0);
}

TEST(BeaconPanel, SearchTextIsALikePattern)
{
    PanelFixture f;
    f.search("d_");
    EXPECT_EQ(f.column(0), QStringList({ "D_1X", "DB0ABC/B", "DL0XY/B", "DM2AB" }));
    EXPECT_EQ(f.caption(), "4");
    f.search("%/b");
    EXPECT_EQ(f.column(0), QStringList({ "DB0ABC/B", "DL0XY/B", "OK1KIR/B" }));
    f.search("O'NEILL");
    EXPECT_EQ(f.caption(), "0");
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(BeaconPanel, BeMonThenBcnShowsAllAgainWithTheSearchStillApplied)
{
    PanelFixture f;
    f.search("D");
    EXPECT_EQ(f.caption(), "4");
    f.child<QPushButton>("BeMon")->click();
    EXPECT_EQ(f.panel.nameFilter(), "%/b%");
    EXPECT_EQ(f.column(0), QStringList({ "DB0ABC/B", "DL0XY/B" }));
    f.child<QPushButton>("Bcn")->click();
    EXPECT_EQ(f.panel.nameFilter(), "");
    EXPECT_EQ(f.column(0), QStringList({ "D_1X", "DB0ABC/B", "DL0XY/B", "DM2AB" }));
    f.child<QLineEdit>("BeSearch")->clear();
    f.panel.activate(); // every activation: beacons only
    EXPECT_EQ(f.caption(), "3");
}

TEST(BeaconPanel, ChoosingARowAimsTunesAndTurnsInThatOrder)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    f.panel.LoadBeaconList();
    f.calls.clear();
    f.clickRow(f.rowOf("OK1KIR/B"));
    EXPECT_EQ(f.calls, QStringList({ "aim JO70FD", "band 144 V2 R0 14443000", "turn 42" }));
    EXPECT_TRUE(f.grid()->hasFocus());

    f.calls.clear();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("D_1X"), 1));
    EXPECT_EQ(f.calls, QStringList({ "aim JN58TD", "band 144 V2 R0 1440000", "turn 42" })); // 1440... is 144
    f.calls.clear();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("DB0ABC/B"), 0));
    EXPECT_EQ(f.calls, QStringList({ "aim JO40FF", "band 10368 V0 R5 1036805000", "turn 42" }));
}

TEST(BeaconPanel, QrgWithoutAListedBandLeavesTheBandAlone)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.calls.clear();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("G4ABC"), 0));
    EXPECT_EQ(f.calls, QStringList({ "aim IO91WM", "turn 42" }));
}

TEST(BeaconPanel, InvalidBeaconLocatorTurnsNothingAndWithoutHookTheHeadingIsComputed)
{
    PanelFixture f;
    ASSERT_TRUE(f.db.add({ { "BAD/B", "XY12", "432100", "" } }));
    f.panel.hooks().aimAt = nullptr; // the panel works out the heading itself
    f.panel.LoadBeaconList();
    f.calls.clear();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("BAD/B"), 0));
    EXPECT_EQ(f.calls, QStringList({ "band 432 V3 R0 43210000" }));
    EXPECT_EQ(f.prompts.shown, QStringList({ "Invalid Gridlocator:" }));

    f.calls.clear();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("DM2AB"), 0)); // JO62 lies north-east of JN48
    ASSERT_EQ(f.calls.size(), 2);
    const int degrees = f.calls[1].mid(5).toInt();
    EXPECT_GT(degrees, 20);
    EXPECT_LT(degrees, 60);
}

TEST(BeaconPanel, AddNewNeedsABandAndPresetsTheQrg)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    f.child<QPushButton>("CMDaddnew")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "Please select Band" }));
    f.station.bandPattern = "144%";
    f.child<QPushButton>("CMDaddnew")->click();
    EXPECT_EQ(f.child<QLineEdit>("txtQrgB")->text(), "144");
    EXPECT_TRUE(f.child<QLineEdit>("txtBeacon")->hasFocus());

    QTest::keyClicks(f.child<QLineEdit>("txtBeacon"), "PI7ALK/B");
    QTest::keyClick(f.child<QLineEdit>("txtBeacon"), Qt::Key_Return);
    ASSERT_TRUE(f.child<QLineEdit>("txtQrgB")->hasFocus());
    QTest::keyClicks(f.child<QLineEdit>("txtQrgB"), "455");
    QTest::keyClick(f.child<QLineEdit>("txtQrgB"), Qt::Key_Return);
    ASSERT_TRUE(f.child<QLineEdit>("txtLocB")->hasFocus());
    QTest::keyClicks(f.child<QLineEdit>("txtLocB"), "jo22");
    QTest::keyClick(f.child<QLineEdit>("txtLocB"), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.child<QLineEdit>("txtLocB")->text() == "JO22"; }, 1000));
    EXPECT_TRUE(f.child<QLineEdit>("txtComment")->hasFocus());
    EXPECT_FALSE(f.station.locatorInvalid);
    EXPECT_EQ(f.prompts.shown.size(), 1);
}

TEST(BeaconPanel, BadLocatorShowsTheMessageAndKeepsTheFocus)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    auto* loc = f.child<QLineEdit>("txtLocB");
    loc->setFocus();
    QTest::keyClicks(loc, "JO2");
    QTest::keyClick(loc, Qt::Key_Tab);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !f.prompts.shown.isEmpty(); }, 1000));
    EXPECT_EQ(f.prompts.shown, QStringList({ "Invalid Gridlocator:" }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return loc->hasFocus(); }, 1000));
    EXPECT_TRUE(f.station.locatorInvalid);

    // Clicking the grid is leaving the box too.
    f.panel.LoadBeaconList();
    f.calls.clear();
    f.clickRow(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.prompts.shown.size() == 2 && loc->hasFocus(); }, 1000));

    // An empty box sets the flag but lets the operator go.
    loc->clear();
    f.station.locatorInvalid = false;
    f.child<QLineEdit>("txtComment")->setFocus();
    QTest::qWait(20);
    EXPECT_TRUE(f.station.locatorInvalid);
    EXPECT_TRUE(f.child<QLineEdit>("txtComment")->hasFocus());
    EXPECT_EQ(f.prompts.shown.size(), 2);
}

TEST(BeaconPanel, SaveStoresEvenAnEmptyNameAndDoesNotReload)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.child<QLineEdit>("txtQrgB")->setText("432");
    f.child<QPushButton>("CmdSave")->click();
    EXPECT_TRUE(f.prompts.shown.isEmpty());
    EXPECT_EQ(f.db.count(), 7);
    EXPECT_EQ(f.db.column("beacon").last(), "");
    EXPECT_EQ(f.db.column("qrg").last(), "432");
    EXPECT_EQ(f.child<QLineEdit>("txtQrgB")->text(), "");
    EXPECT_EQ(f.caption(), "6");

    f.child<QLineEdit>("txtBeacon")->setText("PA0X/B");
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    f.child<QPushButton>("CmdSave")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "No new Recorset available" }));
    EXPECT_EQ(f.child<QLineEdit>("txtBeacon")->text(), "PA0X/B"); // nothing lost
}

TEST(BeaconPanel, DeleteAsksFirst)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    f.panel.LoadBeaconList();
    f.grid()->setCurrentIndex(f.panel.model().index(f.rowOf("DM2AB"), 0));
    f.grid()->setFocus();
    f.calls.clear();
    f.prompts.answers = { false, true };
    QTest::keyClick(f.grid(), Qt::Key_Delete);
    EXPECT_EQ(f.prompts.asked, QStringList({ " Delete Recordset ?" }));
    EXPECT_EQ(f.db.count(), 6);
    QTest::keyClick(f.grid(), Qt::Key_Delete);
    EXPECT_EQ(f.db.count(), 5);
    EXPECT_FALSE(f.db.column("beacon").contains("DM2AB"));
    EXPECT_EQ(f.panel.model().rowCount(), 5);
    EXPECT_TRUE(f.calls.isEmpty()); // the row that moves up is not aimed at
}

TEST(BeaconPanel, MapButtonsUseTheNameFilter)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.child<QPushButton>("BeMon")->click();
    f.child<QPushButton>("GD")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "3 Dataset from Tarnwick backup.mdB imported" }));
    f.child<QPushButton>("GEB")->click();
    EXPECT_EQ(f.viewer.opened, QStringList({ "earth.kml" }));
    const QByteArray kml = f.dir.read("earth.kml");
    EXPECT_EQ(kml.count("<Placemark><name>"), 1 + 3);
    EXPECT_TRUE(kml.contains("<name>OK1KIR</name>"));
}

TEST(BeaconPanel, DatabaseFailureIsReportedAndTheGridStays)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.station.dbConnection = f.dir.file("missing.db");
    f.panel.LoadBeaconList();
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(f.prompts.shown[0].startsWith("Error "));
    EXPECT_TRUE(f.prompts.shown[0].endsWith(" in procedure LoadBeaconList of Formular form1"));
    EXPECT_EQ(f.caption(), "6");
}
