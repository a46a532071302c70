// The logbook window driven by objectName: entry line, band buttons, save, DXCC lookup,
// search, deletion, grid and closing, on a real database file.
#include "Form5Fixture.h"
#include "geo/Locator.h"
#include "logbook/browse/GridColumns.h"
#include "logbook/browse/LogGridModel.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSummary.h"
#include "ui/widgets/OptionGroup.h"

#include <QFile>
#include <QHeaderView>
#include <QRegularExpression>
#include <QTableView>

namespace {

Row logged(const QString& call, const QString& grid, const QString& band, const QString& qsl = "Y")
{
    return contact(
        call, grid, band, { { "GMT", "18:20:00" }, { "QSL", qsl }, { "DXCC", "Fed. Rep. of Germany" } });
}

} // namespace

TEST(Form5Entry, NewContactWithoutBandAsksForOneWithThirtyMetresFillsTheDefaults)
{
    Form5Fixture f(21);
    for (const char* name : { "DA", "GM", "Ca", "Gr", "Rss", "Rr", "Ba", "mo", "Na", "Co", "Qs", "Pr" })
        f.edit(name)->setText(QStringLiteral("x") + QLatin1String(name));
    f.click("addnew");
    EXPECT_EQ(f.db.prompts.shown, QStringList { "Please select Band" });
    EXPECT_EQ(f.texts({ "GM", "DA", "Rss", "Rr", "mo", "Qs", "Pr" }), QStringList(7, ""));
    EXPECT_EQ(f.texts({ "Ba", "Na", "Co", "Ca", "Gr" }), (QStringList { "xBa", "xNa", "xCo", "XCA", "XGR" }));

    f.db.prompts.shown.clear();
    f.click("OptBand3");
    EXPECT_EQ(f.db.station.bandPattern, "10140");
    EXPECT_TRUE(f.text("Label1").endsWith(" mS"));
    f.click("addnew");
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
    EXPECT_EQ(f.texts({ "Ba", "Rss", "Rr", "mo", "Qs", "Pr" }),
        (QStringList { "1014", "59", "59", "SSB", "Y", "Tr" }));
    EXPECT_EQ(f.text("DA"), QDate::currentDate().toString("dd.MM.yyyy"));
    EXPECT_EQ(f.focused(), "Ca");
}

TEST(Form5Entry, LocatorCheckAndModePreset)
{
    Form5Fixture f(10);
    ASSERT_TRUE(f.active);
    f.edit("Ca")->setText("DL1ABC");
    f.type("Gr", "jo62");
    EXPECT_EQ(f.text("Gr"), "JO62");
    f.key(Qt::Key_Return);
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
    EXPECT_EQ(f.focused(), "Rss");
    EXPECT_TRUE(f.text("qrbInfo").startsWith("QRB: "));

    for (const char* bad : { "JO6", "JO62Q", "SO62" }) {
        f.db.prompts.shown.clear();
        f.type("Gr", QLatin1String(bad));
        f.key(Qt::Key_Return);
        EXPECT_EQ(f.db.prompts.shown, QStringList { "Locator input incorrect" }) << bad;
        EXPECT_EQ(f.text("Gr"), "") << bad;
        EXPECT_EQ(f.focused(), "Ca") << bad;
    }
    f.db.prompts.shown.clear();
    f.edit("Gr")->setFocus();
    QTest::mouseClick(f.edit("Na"), Qt::LeftButton);
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
    EXPECT_EQ(f.focused(), "Na");

    // The mode follows the length of the received report as it stood before the key.
    f.edit("Rr")->setText("599");
    f.edit("Rr")->setFocus();
    f.key(Qt::Key_0);
    EXPECT_EQ(f.text("mo"), "CW");
    EXPECT_EQ(f.text("Rr"), "5990");
    f.key(Qt::Key_Backspace);
    EXPECT_EQ(f.text("mo"), "SSB");
    f.edit("Rr")->setText("59");
    f.key(Qt::Key_1);
    EXPECT_EQ(f.text("mo"), "SSB");
}

TEST(Form5Entry, EnterWalksTheLineAndSavesOnTheButton)
{
    Form5Fixture f(10);
    ASSERT_TRUE(f.active);
    f.click("addnew");
    f.type("Ca", "dl1abc");
    EXPECT_EQ(f.text("Ca"), "DL1ABC");
    f.key(Qt::Key_Return); // DXCC lookup, focus to Gr
    EXPECT_EQ(f.focused(), "Gr");
    EXPECT_EQ(f.text("cou"), "Fed. Rep. of Germany");
    QTest::keyClicks(f.edit("Gr"), "jo62qm");
    QStringList walk;
    for (int i = 0; i < 9; ++i) {
        f.key(Qt::Key_Return);
        walk << f.focused();
    }
    EXPECT_EQ(walk, (QStringList { "Rss", "Rr", "Ba", "mo", "Na", "Co", "Qs", "Pr", "Save" }));
    f.key(Qt::Key_Return);
    EXPECT_EQ(f.logCount(), 1);
    ASSERT_TRUE(f.waitIdle());
}

TEST(Form5Save, EveryColumnReadsBackAndTheLineIsCleared)
{
    Form5Fixture f(10);
    ASSERT_TRUE(f.active);
    f.edit("Ca")->setText("DL1ABC");
    f.form->dxccLookup();
    f.edit("Gr")->setText("JO62QM");
    f.form->locatorCheck();
    const LogMapFields m = f.form->mapFields();
    const QList<std::pair<const char*, const char*>> values
        = { { "DA", "15.11.2026" }, { "GM", "18:20:00" }, { "Rss", "59" }, { "Rr", "57" }, { "Ba", "144" },
              { "mo", "SSB" }, { "Na", "Hans" }, { "Co", "tnx" }, { "Qs", "Y" }, { "Pr", "Tr" } };
    for (const auto& [name, value] : values)
        f.edit(name)->setText(QLatin1String(value));
    f.click("Save");
    ASSERT_TRUE(f.db.prompts.shown.isEmpty()) << f.db.prompts.shown.join('|').toStdString();
    ASSERT_TRUE(f.waitIdle());

    const QString qrb = ContactSummary::numberText(m.distanceKm);
    const QString qtf = ContactSummary::numberText(m.bearing);
    const QList<std::pair<QString, QString>> expected = { { "Date", "2026-11-15" }, { "GMT", "18:20:00" },
        { "Callsign", "DL1ABC" }, { "Grid", "JO62QM" }, { "rsts", "59" }, { "rstr", "57" }, { "Band", "144" },
        { "mode", "SSB" }, { "Nam", "Hans" }, { "Comment", "tnx" }, { "QSL", "Y" }, { "Prop", "Tr" },
        { "DXCC", "Fed. Rep. of Germany" }, { "QRB", qrb }, { "QTF", qtf },
        { "GEdata",
            "Log: DL1ABC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:" + qrb + "km  QTF:" + qtf
                + " QSL: Y Prop:Tr tnx" },
        { "GEgridXY", CoordText(LocatorToDegrees("JO62QM")) } };
    QStringList columns { "QSLman", "GEpoly" };
    for (const auto& e : expected)
        columns << e.first;
    const QList<Row> rows = f.db.rows(columns);
    ASSERT_EQ(rows.size(), 1);
    for (const auto& [column, value] : expected)
        EXPECT_EQ(rows[0][column].toString(), value) << column.toStdString();
    EXPECT_TRUE(rows[0]["QSLman"].isNull());
    EXPECT_FALSE(rows[0]["GEpoly"].toString().isEmpty()); // SQNr ran after the save
    EXPECT_EQ(f.texts({ "DA", "GM", "Ca", "Gr", "Rss", "Rr", "Ba", "mo", "Na", "Qs", "Co", "Pr" }),
        QStringList(12, ""));
    EXPECT_EQ(
        f.texts({ "cou", "Sqw", "DataGrid1Caption" }), (QStringList { "Fed. Rep. of Germany", "1", "1" }));
}

TEST(Form5Dxcc, UnknownPrefixLeavesTheCaptionSilently)
{
    Form5Fixture f(10);
    ASSERT_TRUE(f.active);
    f.type("Ca", "DL1ABC");
    f.key(Qt::Key_Tab);
    EXPECT_EQ(f.text("cou"), "Fed. Rep. of Germany");
    f.type("Ca", "0ABC");
    f.key(Qt::Key_Return);
    EXPECT_EQ(f.text("cou"), "Fed. Rep. of Germany");
    EXPECT_EQ(f.focused(), "Gr");
    f.type("Ca", "0ABC");
    f.edit("Na")->setFocus(); // no match: the focus stays where it went
    EXPECT_EQ(f.focused(), "Na");
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
}

TEST(Form5Search, EmptyTextCountsSquaresAndLeavesTheGrid)
{
    Form5Fixture f(10,
        { logged("DL1ABC", "JO62QM", "144", "Q"), logged("DL2ABC", "JO62AA", "144"),
            logged("DL3ABC", "JN48", "144"), logged("G4ABC", "IO91", "14200") });
    EXPECT_EQ(f.text("DataGrid1Caption"), "3");
    f.child<OptionGroup>("uSc_MultiOption1")->setValue(2);
    const QString before = f.form->gridModel()->recordset().source();
    f.click("Search");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.texts({ "Sqw", "SQc", "DataGrid1Caption" }), (QStringList { "2", "1", "3" }));
    EXPECT_EQ(f.form->gridModel()->recordset().source(), before);

    f.child<OptionGroup>("uSc_MultiOption1")->setValue(1);
    f.click("Search");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.texts({ "dxw", "DXc" }), (QStringList { "1", "1" }));
}

TEST(Form5Search, TextSearchNothingFoundAndAQuote)
{
    Form5Fixture f(21, { logged("DL1ABC", "JO62QM", "144"), logged("O'NEILL", "IO91", "14200") });
    f.edit("txtStr")->setText("ZZ9");
    f.click("Search");
    EXPECT_EQ(f.text("DataGrid1Caption"), "0");
    f.edit("txtStr")->setText("O'NE");
    f.click("Search");
    EXPECT_EQ(f.text("DataGrid1Caption"), "1");
    f.child<OptionGroup>("uSc_MultiOption1")->setValue(2);
    f.edit("txtStr")->setText("jo6");
    f.click("Search");
    EXPECT_EQ(f.text("DataGrid1Caption"), "1");
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
}

TEST(Form5Grid, ColumnWidthsHeaderSortAndDeleteAfterAQuestion)
{
    Form5Fixture f(21, { logged("DL1ABC", "JO62QM", "144"), logged("AA1AA", "FN31", "14200") });
    auto* grid = f.child<QTableView>("DataGrid1");
    const QList<int> twips = GridColumns::finalTwips();
    for (int c = 0; c < twips.size(); ++c)
        EXPECT_EQ(
            grid->horizontalHeader()->sectionSize(c), GridColumns::toPixels(twips[c], grid->logicalDpiX()))
            << c;
    const int call = f.form->gridModel()->recordset().fieldIndex("Callsign");
    LogGridModel* model = f.form->gridModel();
    grid->horizontalHeader()->setSortIndicator(call, Qt::AscendingOrder);
    EXPECT_EQ(model->recordset().sort(), "\"Callsign\" asc");
    EXPECT_EQ(model->data(model->index(0, call)).toString(), "AA1AA");
    EXPECT_EQ(model->data(model->index(0, model->recordset().fieldIndex("Date"))).toString(), "15.11.2026");

    grid->setFocus();
    grid->setCurrentIndex(model->index(0, call));
    f.db.prompts.answers = { false, true };
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(f.db.prompts.asked, QStringList { " Delete Recordset ?" });
    EXPECT_EQ(f.logCount(), 2);
    QTest::keyClick(grid, Qt::Key_Delete);
    EXPECT_EQ(f.text("DataGrid1Caption"), "1");
    EXPECT_EQ(f.db.rows({ "Callsign" })[0]["Callsign"].toString(), "DL1ABC");
}

TEST(Form5Window, OpeningShowsTheStationAndClosingWritesTheSettings)
{
    Form5Fixture f(21);
    EXPECT_EQ(f.form->objectName(), "form5");
    EXPECT_EQ(f.texts({ "Callsign", "MyGrid" }), (QStringList { "N0CALL", "JN48OW" }));
    EXPECT_EQ(f.child<QPushButton>("GoogleEarth")->text(), "Show Recordsets/Band on GoogleEarth");
    EXPECT_EQ(f.child<OptionGroup>("uSc_MultiOption1")->value(), 1);
    EXPECT_TRUE(f.child<QRadioButton>("OptBand21")->isChecked());
    EXPECT_EQ(f.form->findChildren<QRadioButton*>(QRegularExpression("^OptBand\\d+$")).size(), 22);

    ASSERT_TRUE(f.db.add({ { { "dxcccode", "QQ*" }, { "Country", "Testland" } } }, "dxccdata"));
    f.click("OptBand10");
    f.click("cmdExit");
    Recordset rs(f.db.path()); // the "*" pattern was rewritten at closing
    ASSERT_TRUE(rs.open(SqlText::dxccLookup("QQ1AB")));
    EXPECT_EQ(rs.text(2), "Testland");
    EXPECT_EQ(f.db.station.settings.intAt(Setting::LogbookNumber), 10);
    EXPECT_EQ(f.db.station.settings.textAt(Setting::LogbookText), "144%");
    EXPECT_EQ(f.db.station.settings.textAt(Setting::MyCall), "N0CALL");
    EXPECT_TRUE(QFile::exists(f.db.dir.file("Kestrel.txt")));
    EXPECT_EQ(f.form->gridModel()->rowCount(), 0); // database objects released

    f.db.station.settings.setInt16(Setting::LogbookNumber, 4);
    f.form->show(); // opened again
    EXPECT_TRUE(f.child<QRadioButton>("OptBand4")->isChecked());
    EXPECT_EQ(f.db.station.bandPattern, "14200%");
    Form5Fixture other(99); // a band index out of range opens on all bands
    EXPECT_EQ(other.form->bandIndex(), 21);
}

TEST(Form5Save, TwoQuickSavesBothCountAndTheWindowClosesMidCount)
{
    Form5Fixture f(10);
    f.edit("Ca")->setText("DL1ABC");
    f.edit("Gr")->setText("JO62QM");
    f.edit("Ba")->setText("144");
    f.form->locatorCheck();
    f.click("Save");
    f.edit("Ba")->setText("144");
    f.edit("Ca")->setText("DL2ABC");
    f.edit("Gr")->setText("JN48");
    f.form->locatorCheck();
    f.click("Save"); // the first count is still under way: it is replaced
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.texts({ "Sqw", "DataGrid1Caption" }), (QStringList { "2", "2" }));
    f.edit("Ca")->setText("DL3ABC");
    f.click("Save");
    f.form->close(); // a count in slices does not keep the window open
    EXPECT_FALSE(f.form->isBusy());
    EXPECT_EQ(f.logCount(), 3);
}

TEST(Form5Window, AMissingDatabaseGivesMessagesAndLosesNothing)
{
    Form5Fixture f(10);
    f.db.station.dbConnection = f.db.dir.file("gone/backup.db");
    f.edit("Ca")->setText("DL1ABC");
    f.click("Save");
    EXPECT_EQ(f.db.prompts.shown, QStringList { "No new Recorset available" });
    EXPECT_EQ(f.text("Ca"), "DL1ABC");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.value(1), "No new Recorset available");

    f.db.prompts.shown.clear();
    f.click("OptBand4");
    ASSERT_EQ(f.db.prompts.shown.size(), 1);
    EXPECT_TRUE(
        f.db.prompts.shown[0].startsWith("Error 3024 (The folder of the database file does not exist"));
    f.edit("txtStr")->setText("DL");
    f.click("Search");
    EXPECT_TRUE(f.db.prompts.shown.last().endsWith(") in procedure Search_Click of Formular form5"));
}
