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
            calls
                << QStringLiteral("band %1 %2").arg(t.band ? t.band->value : "-").arg(t.counter.value_or(-1));
        };
        h.turnTo = [this](int degrees) { calls << "turn " + QString::number(degrees); };
        panel.resize(700, 400);
    }
    QLineEdit* edit(const char* name) { return panel.findChild<QLineEdit*>(QString::fromLatin1(name)); }
    QPushButton* button(const char* name) { return panel.findChild<QPushButton*>(QString::fromLatin1(name)); }
    BeaconGrid* grid() { return panel.grid(); }
    QString caption() { return grid()->property("caption").toString(); }
    QStringList column(int field)
    {
        QStringList out;
        for (int row = 0; row < panel.model().rowCount(); ++row)
            out << panel.model().index(row, field).data().toString();
        return out;
    }
    void type(const char* box, const char* text, Qt::Key key = Qt::Key_Return)
    {
        QTest::keyClicks(edit(box), text);
        QTest::keyClick(edit(box), key);
    }
    void search(const char* text)
    {
        edit("BeSearch")->clear();
        type("BeSearch", text);
    }
    // Makes the beacon's row current as the keyboard would, and returns the hooks that ran.
    QStringList choose(const QString& name)
    {
        calls.clear();
        grid()->setCurrentIndex(panel.model().index(int(column(0).indexOf(name)), 0));
        return calls;
    }
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

TEST(BeaconPanel, LoadRunsItsStepsInOrderAndSetsTheCaption)
{
    PanelFixture f;
    const std::pair<const char*, const char*> captions[]
        = { { "Bcn", "BeaconList " }, { "BeMon", "MyMonList" }, { "CMDaddnew", "Add New " },
              { "CmdSave", "Save" }, { "GD", "GD" }, { "GEB", "GE" } };
    for (const auto& [name, caption] : captions)
        EXPECT_EQ(f.button(name)->text(), caption) << name;

    f.panel.LoadBeaconList();
    EXPECT_EQ(f.calls, QStringList({ "band handler" })); // callsign and locator are set
    EXPECT_EQ(f.panel.findChild<QLabel*>("DataGrid1Caption")->text(), "6");
    EXPECT_EQ(f.column(0), QStringList({ "D_1X", "DB0ABC/B", "DL0XY/B", "DM2AB", "G4ABC", "OK1KIR/B" }));

    f.calls.clear();
    f.station.settings.setText(Setting::MyLocator, "");
    f.panel.LoadBeaconList();
    EXPECT_EQ(f.calls, QStringList({ "settings", "band handler" }));

    // A database failure is reported and the grid stays.
    f.station.dbConnection = f.dir.file("missing.db");
    f.panel.LoadBeaconList();
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(f.prompts.shown[0].startsWith("Error ")
        && f.prompts.shown[0].endsWith(" in procedure LoadBeaconList of Formular form1"));
    EXPECT_EQ(f.caption(), "6");
}

TEST(BeaconPanel, BanCounSortsByQrgAlphabeticallyAndKeepsItsState)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.button("BanCoun")->click();
    EXPECT_EQ(f.column(2), QStringList({ "10368050", "1296900", "14400", "144430", "50050", "70021" }));
    EXPECT_EQ(f.station.settings.intAt(Setting::BeaconCount), -1);
    f.button("BanCoun")->click();
    EXPECT_EQ(f.column(0).first(), "D_1X");
    EXPECT_EQ(f.station.settings.intAt(Setting::BeaconCount), 0);

    f.station.settings.setInt16(Setting::BeaconCount, -1);
    f.panel.restoreFromSettings();
    EXPECT_TRUE(f.button("BanCoun")->isChecked());
    EXPECT_EQ(f.caption(), "6"); // restoring loads nothing
}

TEST(BeaconPanel, SearchTextIsALikePatternAndBeMonThenBcnKeepsIt)
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

    f.search("D");
    f.button("BeMon")->click();
    EXPECT_EQ(f.panel.nameFilter(), "%/b%");
    EXPECT_EQ(f.column(0), QStringList({ "DB0ABC/B", "DL0XY/B" }));
    f.button("Bcn")->click();
    EXPECT_EQ(f.panel.nameFilter(), "");
    EXPECT_EQ(f.column(0), QStringList({ "D_1X", "DB0ABC/B", "DL0XY/B", "DM2AB" }));
    f.edit("BeSearch")->clear();
    f.panel.activate(); // every activation: beacons only
    EXPECT_EQ(f.caption(), "3");
}

TEST(BeaconPanel, ChoosingARowAimsTunesAndTurnsInThatOrder)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    // The window's locator box takes the focus with the bearing, and keeps it.
    auto* locator = new QLineEdit(&f.panel);
    locator->show();
    const auto aim = f.panel.hooks().aimAt;
    f.panel.hooks().aimAt = [&](const QString& l) {
        locator->setFocus();
        return aim(l);
    };
    f.panel.LoadBeaconList();
    f.calls.clear();
    f.clickRow(int(f.column(0).indexOf("OK1KIR/B")));
    EXPECT_EQ(f.calls, QStringList({ "aim JO70FD", "band 144 14443000", "turn 42" }));
    EXPECT_TRUE(locator->hasFocus());

    EXPECT_EQ(f.choose("D_1X"), QStringList({ "aim JN58TD", "band 144 1440000", "turn 42" })); // 1440: 144
    // 70021: no band button, the band stays and the rig takes the frequency.
    EXPECT_EQ(f.choose("G4ABC"), QStringList({ "aim IO91WM", "band - 7002100", "turn 42" }));
}

TEST(BeaconPanel, NewEntryNeedsABandEnterMovesOnAndABadLocatorKeepsTheFocus)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    f.button("CMDaddnew")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "Please select Band" }));
    f.station.bandPattern = "144%";
    f.button("CMDaddnew")->click();
    EXPECT_EQ(f.edit("txtQrgB")->text(), "144");
    EXPECT_TRUE(f.edit("txtBeacon")->hasFocus());
    f.type("txtBeacon", "PI7ALK/B");
    ASSERT_TRUE(f.edit("txtQrgB")->hasFocus());
    f.type("txtQrgB", "455");
    ASSERT_TRUE(f.edit("txtLocB")->hasFocus());
    QLineEdit* loc = f.edit("txtLocB");
    f.type("txtLocB", "jo22");
    EXPECT_TRUE(QTest::qWaitFor([&] { return loc->text() == "JO22"; }, 1000));
    EXPECT_TRUE(f.edit("txtComment")->hasFocus());
    EXPECT_FALSE(f.station.locatorInvalid);

    loc->clear();
    loc->setFocus();
    f.type("txtLocB", "JO2", Qt::Key_Tab);
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.prompts.shown.size() == 2 && loc->hasFocus(); }, 1000));
    EXPECT_EQ(f.prompts.shown.last(), "Invalid Gridlocator:");
    EXPECT_TRUE(f.station.locatorInvalid);
    // Clicking the grid is leaving the box too.
    f.panel.LoadBeaconList();
    f.clickRow(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.prompts.shown.size() == 3 && loc->hasFocus(); }, 1000));
    // An empty box sets the flag and, without a message, keeps the focus as well.
    loc->clear();
    f.station.locatorInvalid = false;
    f.edit("txtComment")->setFocus();
    EXPECT_TRUE(QTest::qWaitFor([&] { return loc->hasFocus(); }, 1000));
    EXPECT_TRUE(f.station.locatorInvalid);
    EXPECT_EQ(f.prompts.shown.size(), 3);
}

TEST(BeaconPanel, SaveStoresTheFourBoxesEvenWithAnEmptyNameAndDoesNotReload)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.edit("txtQrgB")->setText("432");
    f.edit("txtLocB")->setText("JO22");
    f.edit("txtComment")->setText("Alkmaar");
    f.button("CmdSave")->click();
    EXPECT_TRUE(f.prompts.shown.isEmpty());
    EXPECT_EQ(f.db.column("beacon").size(), 7);
    EXPECT_EQ(f.db.column("beacon || '|' || qrg || '|' || Locator || '|' || Equipment").last(),
        "|432|JO22|Alkmaar"); // an empty name is stored as empty text: Null would make the row Null
    EXPECT_EQ(f.edit("txtQrgB")->text(), "");
    EXPECT_EQ(f.caption(), "6");

    f.edit("txtBeacon")->setText("PA0X/B");
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    f.button("CmdSave")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "No new Recorset available" }));
    EXPECT_EQ(f.edit("txtBeacon")->text(), "PA0X/B"); // nothing lost
}

TEST(BeaconPanel, DeleteAsksFirst)
{
    PanelFixture f;
    ASSERT_TRUE(f.showActive());
    f.panel.LoadBeaconList();
    f.choose("DM2AB");
    f.grid()->setFocus();
    f.calls.clear();
    f.prompts.answers = { false, true };
    QTest::keyClick(f.grid(), Qt::Key_Delete);
    EXPECT_EQ(f.prompts.asked, QStringList({ " Delete Recordset ?" }));
    EXPECT_EQ(f.db.column("beacon").size(), 6);
    QTest::keyClick(f.grid(), Qt::Key_Delete);
    EXPECT_FALSE(f.db.column("beacon").contains("DM2AB"));
    EXPECT_EQ(f.panel.model().rowCount(), 5);
    EXPECT_TRUE(f.calls.isEmpty()); // the row that moves up is not aimed at
}

TEST(BeaconPanel, MapButtonsUseTheNameFilter)
{
    PanelFixture f;
    f.panel.LoadBeaconList();
    f.button("BeMon")->click();
    f.button("GD")->click();
    EXPECT_EQ(f.prompts.shown, QStringList({ "3 Dataset from Tarnwick backup.mdB imported" }));
    f.station.homeCoords = QStringLiteral("9.16666666666667,48.9166666666667"); // as the start-up leaves it
    f.button("GEB")->click();
    EXPECT_EQ(f.viewer.opened, QStringList({ "earth.kml" }));
    EXPECT_EQ(f.dir.read("earth.kml").count("<Placemark><name>"), 1 + 3);
}
