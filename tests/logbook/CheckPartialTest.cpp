// Check partial on a MASTER.SCP file: calls containing the characters typed, comments and
// blanks skipped, a missing file an empty list.
#include "logbook/browse/CheckPartial.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

namespace {

TEST(CheckPartial, CallsContainingTheTypedCharacters)
{
    TempDir dir;
    dir.write("MASTER.SCP", "#\n# Release 2026.11.01\n#\nDL1ABC\r\nDL1ABD\n\nOH6ABC\nsm5abc\nG4ABC/P\n");
    CheckPartial scp;
    ASSERT_TRUE(scp.load(dir.file("MASTER.SCP")));
    EXPECT_EQ(scp.size(), 5);
    const struct {
        const char* typed;
        QStringList calls;
    } cases[] = {
        { "", {} },
        { "A", {} }, // one character: everything would match
        { "ab", { "DL1ABC", "DL1ABD", "OH6ABC", "SM5ABC", "G4ABC/P" } },
        { "ABC", { "DL1ABC", "OH6ABC", "SM5ABC", "G4ABC/P" } },
        { "1AB", { "DL1ABC", "DL1ABD" } },
        { "/P", { "G4ABC/P" } },
        { "XYZ", {} },
    };
    for (const auto& c : cases)
        EXPECT_EQ(scp.matches(QLatin1String(c.typed)), c.calls) << c.typed;
    EXPECT_EQ(scp.matches("AB", 2), QStringList({ "DL1ABC", "DL1ABD" }));
}

TEST(CheckPartial, MissingFileLeavesTheListEmpty)
{
    TempDir dir;
    CheckPartial scp;
    EXPECT_FALSE(scp.load(dir.file("MASTER.SCP")));
    EXPECT_TRUE(scp.matches("DL1").isEmpty());
}

TEST(CheckPartial, DebiansFileIsTheDefault)
{
    TempDir dir; // no Kestrel.ini here
    EXPECT_EQ(CheckPartial::defaultPath(), "/usr/share/hamradio-files/MASTER.SCP");
    CheckPartial scp;
    if (!scp.load(CheckPartial::defaultPath()))
        GTEST_SKIP() << "hamradio-files is not installed";
    EXPECT_GT(scp.size(), 10000);
}

} // namespace
