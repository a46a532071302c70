// The logbook window's long actions: map data completion, GoogleEarth export, ADIF import and
// export, each running in slices while the window stays live.
#include "Form5Fixture.h"
#include "logbook/browse/LogGridModel.h"

#include <QFile>
#include <QFileInfo>

namespace {

Row imported(const QVariant& grid, const QString& band, const QString& call)
{
    return contact(call, grid, band, { { "GMT", "18:20:00" }, { "QSL", "Q" }, { "Prop", "Tr" } });
}

} // namespace

TEST(Form5Jobs, CompletionReportsTheFilteredCount)
{
    Form5Fixture f(10,
        { imported("JO62QM", "144", "DL1ABC"), imported(QVariant(), "144", "DL2ABC"),
            imported("JN48", "144", "DL3ABC"), imported("IO91", "14200", "G4ABC") });
    f.edit("Gr")->setText("JO31");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown, QStringList { "3 Dataset from Tarnwick backup.mdB imported" });
    EXPECT_EQ(f.text("Gr"), "");
    EXPECT_EQ(f.text("Sqw"), "2");
    const QList<Row> rows = f.db.rows({ "GEdata" });
    EXPECT_TRUE(
        rows[0]["GEdata"].toString().startsWith("Log: DL1ABC 144 kHz  15.11.2026 18:20 rsts: rstr: QRB:"));
    EXPECT_TRUE(rows[3]["GEdata"].isNull()); // another band
    EXPECT_TRUE(f.child<QWidget>("content")->isEnabled());
}

TEST(Form5Jobs, CompletionWithoutBandTakesOnlyEmptyBandTexts)
{
    Form5Fixture f(21, { imported("JO62QM", "144", "DL1ABC"), imported("JN48", "", "DL2ABC") });
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown, QStringList { "1 Dataset from Tarnwick backup.mdB imported" });
    f.click("OptBand11"); // 432: no records, so nothing passes through Gr
    f.edit("Gr")->setText("JO31");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.last(), "0 Dataset from Tarnwick backup.mdB imported");
    EXPECT_EQ(f.text("Gr"), "JO31");
    const QList<Row> rows = f.db.rows({ "GEdata" });
    EXPECT_TRUE(rows[0]["GEdata"].isNull());
    EXPECT_FALSE(rows[1]["GEdata"].isNull());
}

TEST(Form5Jobs, GoogleEarthWritesTheBandAndStartsTheViewer)
{
    Form5Fixture f(10, { imported("JO62QM", "144", "DL1ABC"), imported("JN48", "144", "DL3ABC") });
    f.click("GoogleEarth");
    ASSERT_TRUE(f.waitIdle());
    ASSERT_EQ(f.viewer.opened.size(), 1) << f.db.prompts.shown.join('|').toStdString();
    EXPECT_EQ(QFileInfo(f.viewer.opened[0]).fileName(), "earth.kml");
    EXPECT_TRUE(QFile::exists(f.db.dir.file("earth.kml")));
    EXPECT_EQ(f.text("Sqw"), "2");
    EXPECT_EQ(f.text("SQc"), "2");
    EXPECT_TRUE(f.db.dir.read("earth.kml").contains("N0CALL 144 MHz wkd/cfd 2/2"));
}

TEST(Form5Jobs, AdifImportReportsAndExportWritesTheBand)
{
    Form5Fixture f(10);
    f.db.dir.write("in.adi",
        "<EOH>\n<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:4>JO62 <EOR>\n"
        "<CALL:6>DL2ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <EOR>\n"
        "<CALL:5>G4ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:3>20m <EOR>\n");
    f.form->importAdif(f.db.dir.file("in.adi"));
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown,
        QStringList { "2 records imported from in.adi, 1 refused:\nline 3 (DL2ABC): no BAND and no FREQ" });
    EXPECT_EQ(f.text("DataGrid1Caption"), "1"); // the 144 MHz list
    f.form->exportAdif(f.db.dir.file("out.adi"), false);
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.last(), "1 records written to out.adi.");
    EXPECT_TRUE(f.db.dir.read("out.adi").contains("<CALL:6>DL1ABC "));
    EXPECT_FALSE(f.db.dir.read("out.adi").contains("G4ABC"));
    f.form->exportAdif(f.db.dir.file("all.adi"), true);
    ASSERT_TRUE(f.waitIdle());
    EXPECT_TRUE(f.db.dir.read("all.adi").contains("<CALL:5>G4ABC "));
}

TEST(Form5Jobs, ManyRefusalsAreListedBesideTheFile)
{
    Form5Fixture f(10);
    QByteArray file = "<EOH>\n";
    for (int i = 0; i < 40; ++i)
        file += "<CALL:6>DL1ABC <QSO_DATE:8>20261399 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n";
    f.db.dir.write("bad.adi", file);
    f.form->importAdif(f.db.dir.file("bad.adi"));
    ASSERT_TRUE(f.waitIdle());
    ASSERT_EQ(f.db.prompts.shown.size(), 1);
    EXPECT_TRUE(f.db.prompts.shown[0].contains("... and 10 more."));
    EXPECT_TRUE(f.db.prompts.shown[0].contains("bad.adi.refused.txt"));
    EXPECT_EQ(f.db.dir.read("bad.adi.refused.txt").count('\n'), 40);
}
