// The logbook window's long actions: map data completion, GoogleEarth export, ADIF import and
// export, each running in slices while the window stays live.
#include "Form5Fixture.h"
#include "logbook/browse/LogGridModel.h"

#include <QFileInfo>

namespace {

Row imported(const QVariant& grid, const QString& band, const QString& call)
{
    return contact(call, grid, band, { { "GMT", "18:20:00" }, { "QSL", "Q" }, { "Prop", "Tr" } });
}

} // namespace

// Which records pass is shown in CompletionTest; here the window's band filter and messages.
TEST(Form5Jobs, CompletionReportsTheCountOfTheBandsRecords)
{
    Form5Fixture f(10,
        { imported("JO62QM", "144", "DL1ABC"), imported(QVariant(), "144", "DL2ABC"),
            imported("JN48", "144", "DL3ABC"), imported("IO91", "", "G4ABC") });
    f.edit("Gr")->setText("JO31");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown, QStringList { "3 Dataset from Tarnwick backup.mdB imported" });
    EXPECT_EQ(f.texts({ "Gr", "Sqw" }), (QStringList { "", "2" }));
    EXPECT_TRUE(f.child<QWidget>("content")->isEnabled());
    f.click("OptBand21");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.last(), "1 Dataset from Tarnwick backup.mdB imported");
    f.click("OptBand11"); // 432: no records, so nothing passes through Gr
    f.edit("Gr")->setText("JO31");
    f.click("gridDEC");
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.last(), "0 Dataset from Tarnwick backup.mdB imported");
    EXPECT_EQ(f.text("Gr"), "JO31");
}

TEST(Form5Jobs, GoogleEarthWritesTheBandAndStartsTheViewer)
{
    Form5Fixture f(10, { imported("JO62QM", "144", "DL1ABC"), imported("JN48", "144", "DL3ABC") });
    f.click("GoogleEarth");
    ASSERT_TRUE(f.waitIdle());
    ASSERT_EQ(f.viewer.opened.size(), 1) << f.db.prompts.shown.join('|').toStdString();
    EXPECT_EQ(QFileInfo(f.viewer.opened[0]).fileName(), "earth.kml");
    EXPECT_EQ(f.texts({ "Sqw", "SQc" }), (QStringList { "2", "2" }));
    EXPECT_TRUE(f.db.dir.read("earth.kml").contains("N0CALL 144 MHz wkd/cfd 2/2"));
}

TEST(Form5Jobs, AdifImportReportsAndExportWritesTheBand)
{
    Form5Fixture f(10);
    f.db.dir.write("in.adi",
        "<EOH>\n<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:4>JO62 <EOR>\n"
        "<CALL:6>DL2ABC <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
        "<CALL:5>G4ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:3>20m <EOR>\n");
    f.form->importAdif(f.db.dir.file("in.adi"));
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown,
        QStringList { "2 records imported from in.adi, 1 refused:\nline 3 (DL2ABC): no QSO_DATE" });
    EXPECT_EQ(f.text("DataGrid1Caption"), "1"); // the 144 MHz list
    f.form->exportAdif(f.db.dir.file("out.adi"), false);
    ASSERT_TRUE(f.waitIdle());
    EXPECT_EQ(f.db.prompts.shown.last(), "1 records written to out.adi.");
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
