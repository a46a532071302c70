#include "cluster/SpotTableModel.h"
#include "cluster/SpotFilterModel.h"

#include <gtest/gtest.h>

namespace {

Spot spot(const QString& call, double kHz, const QString& band)
{
    Spot s;
    s.call = call;
    s.kHz = kHz;
    s.frequency = QString::number(kHz, 'f', 1);
    s.band = band;
    s.time = "1200Z";
    return s;
}

QStringList calls(const QAbstractItemModel& m)
{
    QStringList out;
    for (int r = 0; r < m.rowCount(); ++r)
        out << m.index(r, SpotTableModel::Call).data().toString();
    return out;
}

} // namespace

TEST(SpotTableModel, NewestOnTopAndBounded)
{
    SpotTableModel m(3);
    m.addSpots({ spot("A1A", 14000, "20m"), spot("B1B", 7000, "40m") });
    EXPECT_EQ(calls(m), QStringList({ "B1B", "A1A" }));
    m.addSpots({ spot("C1C", 144300, "2m"), spot("D1D", 50100, "6m") });
    EXPECT_EQ(calls(m), QStringList({ "D1D", "C1C", "B1B" }));
    // A batch larger than the table keeps only its newest spots.
    m.addSpots({ spot("E1E", 1, ""), spot("F1F", 2, ""), spot("G1G", 3, ""), spot("H1H", 4, ""),
        spot("I1I", 5, "") });
    EXPECT_EQ(calls(m), QStringList({ "I1I", "H1H", "G1G" }));
    EXPECT_EQ(m.columnCount(), 6);
    EXPECT_EQ(m.headerData(SpotTableModel::Band, Qt::Horizontal).toString(), "Band");
    EXPECT_EQ(m.index(0, SpotTableModel::Frequency).data().toString(), "5.0");
    m.clear();
    EXPECT_EQ(m.rowCount(), 0);
}

TEST(SpotTableModel, FilterShowsOneBand)
{
    SpotTableModel m;
    SpotFilterModel f;
    f.setSourceModel(&m);
    m.addSpots({ spot("A1A", 14000, "20m"), spot("B1B", 144300, "2m"), spot("C1C", 14010, "20m") });
    f.setBand("20m");
    EXPECT_EQ(calls(f), QStringList({ "C1C", "A1A" }));
    m.addSpots({ spot("D1D", 14020, "20m"), spot("E1E", 144400, "2m") });
    EXPECT_EQ(calls(f), QStringList({ "D1D", "C1C", "A1A" }));
    f.setBand("2m");
    EXPECT_EQ(calls(f), QStringList({ "E1E", "B1B" }));
    f.setBand("");
    EXPECT_EQ(f.rowCount(), 5);
}
