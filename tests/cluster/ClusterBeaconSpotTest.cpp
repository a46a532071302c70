// The main window's beacon choice sets the spot values the cluster window's option-2 line
// is built from.
#include "cluster/SpotLines.h"
#include "core/StationConfig.h"
#include "logbook/db/RecordsetModel.h"
#include "tests/beacons/BeaconDb.h"
#include "ui/beacons/BeaconGrid.h"
#include "ui/beacons/BeaconPanel.h"
#include "ui/cluster/ClusterWindow.h"
#include "ui/widgets/OptionGroup.h"

#include <QLineEdit>
#include <gtest/gtest.h>

TEST(ClusterBeaconSpot, TheChosenBeaconIsTheOptionTwoSpotLine)
{
    BeaconFixture b;
    ASSERT_TRUE(
        b.db.add({ { "OK1KIR/B", "JO70FD", "144430", "Prague" }, { "DB0ABC/B", "JO40FF", "10368050", "" } }));
    ASSERT_TRUE(SaveStationConfig(b.station)); // the cluster window reloads it
    BeaconPanel panel(b.station);
    panel.LoadBeaconList();
    ASSERT_EQ(panel.model().rowCount(), 2);
    for (int row = 0; row < 2; ++row) {
        panel.grid()->setCurrentIndex(panel.model().index(row, 0));
        const QString name = panel.model().index(row, 0).data().toString();
        SCOPED_TRACE(name.toStdString());

        ClusterWindow window(b.station);
        window.show();
        const int tag = window.findChild<OptionGroup*>(QStringLiteral("uSc_MultiOption2"))->value();
        const QString expected
            = name == u"OK1KIR/B" ? "dx 144430 OK1KIR/B JO70FD" : "dx 10368050 DB0ABC/B JO40FF";
        EXPECT_EQ(window.findChild<QLineEdit*>(QStringLiteral("txtMessageB"))->text(),
            expected + SpotLines::propagationTag(tag) + "JN48OW");
    }
}
