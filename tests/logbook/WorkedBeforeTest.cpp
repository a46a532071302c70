// Worked-before on a real log file: the list for every prefix of a call typed letter by
// letter, the dupe on the entry line's band, new entities and squares per band, and contacts
// saved later counted at once.
#include "logbook/browse/WorkedBefore.h"
#include "EntryTestDb.h"

#include <gtest/gtest.h>

namespace {

struct WorkedLog {
    WorkedLog()
    {
        db.add({ contact("OH6AB", "KP22CD", "144",
                     { { "Date", "2025-08-12" }, { "mode", "MSK144" }, { "QSL", "Y" },
                         { "DXCC", "Finland" } }),
            contact("OH6ABC", "KP22CD", "432",
                { { "Date", "2024-06-01" }, { "mode", "Q65" }, { "DXCC", "Finland" } }),
            contact("oh6abc", QVariant(), "144",
                { { "Date", "2026-01-03" }, { "mode", "FT8" }, { "QSL", "N" }, { "DXCC", "Finland" } }),
            contact("DL1ABC", "JO62QM", "1296", { { "mode", "CW" }, { "DXCC", "Fed. Rep. of Germany" } }) });
        loaded = worked.load(db.path());
    }
    EntryTestDb db;
    WorkedBefore worked;
    bool loaded = false;
};

TEST(WorkedBefore, EveryPrefixOfATypedCallShowsThatCallsContacts)
{
    WorkedLog l;
    ASSERT_TRUE(l.loaded);
    EXPECT_EQ(l.worked.size(), 4);
    const QString typed = QStringLiteral("OH6ABC");
    const QStringList expected[] = {
        {},
        {},
        {},
        {}, // Finland is worked on 144: no flag until a call of the log is complete
        { "DUPE on 144", "12.08.2025  144  MSK144  KP22CD  QSL Y" },
        { "DUPE on 144", "03.01.2026  144  FT8  QSL N", "01.06.2024  432  Q65  KP22CD" },
    };
    for (int n = 1; n <= typed.size(); ++n) {
        const QString call = typed.left(n);
        EXPECT_EQ(WorkedBefore::lines(l.worked.check(call, QStringLiteral("144")), QStringLiteral("144")),
            expected[n - 1])
            << call.toStdString();
    }
}

TEST(WorkedBefore, DupeNewEntityAndNewSquareAreFlaggedPerBand)
{
    WorkedLog l;
    const struct {
        const char* call;
        const char* band;
        const char* locator;
        bool dupe, newEntity, newSquare;
    } cases[] = {
        { "OH6ABC", "144", "KP22", true, false, false }, { "oh6abc", "432", "", true, false, false },
        { "OH6ABC", "1296", "KP22", false, true, true }, { "OH6ABC", "144", "KP33AA", true, false, true },
        { "OH1XYZ", "144", "KP20", false, false, true }, { "DL7XX", "144", "JO62", false, true, true },
        { "DL7XX", "1296", "JO62", false, false, false },
        { "DL7XX", "", "JO62", false, false, false }, // no band: nothing to flag
    };
    for (const auto& c : cases) {
        const WorkedCheck w
            = l.worked.check(QLatin1String(c.call), QLatin1String(c.band), QLatin1String(c.locator));
        EXPECT_EQ(w.dupe, c.dupe) << c.call << " " << c.band;
        EXPECT_EQ(w.newEntity, c.newEntity) << c.call << " " << c.band;
        EXPECT_EQ(w.newSquare, c.newSquare) << c.call << " " << c.band;
    }
    EXPECT_EQ(WorkedBefore::lines(l.worked.check("DL7XX", "144", "JO62"), "144"),
        QStringList({ "New DXCC on 144: Fed. Rep. of Germany", "New square on 144: JO62" }));
}

// Rows saved at another position are read by their IDs alone; one known already is not read
// or counted again, whether loaded, added by its own save or heard before.
TEST(WorkedBefore, RowsSavedElsewhereAreAddedByTheirIds)
{
    WorkedLog l;
    ASSERT_TRUE(l.db.add({ contact("SM5XYZ", "JO89", "1296", { { "mode", "Q65" }, { "DXCC", "Sweden" } }),
        contact("SM5XYZ", "JO89", "144", { { "mode", "CW" }, { "DXCC", "Sweden" } }),
        contact("G4ABC", "IO91", "144", { { "mode", "CW" } }) }));
    QList<qint64> ids;
    for (const Row& r : l.db.rows({ "ID" }))
        ids << r.value("ID").toLongLong();
    ASSERT_EQ(ids.size(), 7);
    l.worked.add({ "G4ABC", "2026-11-15", "144", "CW", "IO91", "", "", ids[6] }); // saved here
    DbError error;
    const struct {
        QList<qint64> ids;
        int read;
        qsizetype size;
    } steps[] = {
        { { ids[0], ids[3] }, 0, 5 }, // loaded already
        { { ids[4] }, 1, 6 },
        { { ids[4], ids[5], ids[6] }, 1, 7 },
        { { 99999 }, 0, 7 }, // deleted meanwhile
        { {}, 0, 7 },
    };
    for (const auto& s : steps) {
        EXPECT_EQ(l.worked.addRows(l.db.path(), s.ids, &error), s.read) << error.text().toStdString();
        EXPECT_EQ(l.worked.size(), s.size);
    }
    EXPECT_EQ(WorkedBefore::lines(l.worked.check("sm5xyz", "144"), "144"),
        QStringList({ "DUPE on 144", "15.11.2026  144  CW  JO89", "15.11.2026  1296  Q65  JO89" }));
}

} // namespace
