#include "core/StationConfig.h"
#include "core/Station.h"
#include "tests/support/TempDir.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

QList<QByteArray> linesOf(const QByteArray& bytes)
{
    QList<QByteArray> lines = bytes.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

struct Fixture {
    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
};

} // namespace

TEST(StationConfig, NewFileHoldsTheFortySevenDefaultLines)
{
    Fixture f;
    LoadStationConfig(f.station);
    const QByteArray bytes = f.dir.read("Kestrel.txt");
    const QList<QByteArray> lines = linesOf(bytes);
    ASSERT_EQ(lines.size(), 47);
    for (const QByteArray& l : lines)
        EXPECT_TRUE(l.endsWith('\r')) << l.constData();
    EXPECT_EQ(lines[0], "2\r");
    EXPECT_EQ(lines[1], "-1\r");
    EXPECT_EQ(lines[3], "\"text1\"\r");
    EXPECT_EQ(lines[4], "\"text2\"\r");
    EXPECT_EQ(lines[5], "\"\"\r");
    EXPECT_EQ(lines[9], "\"9600,n,8,1\"\r");
    EXPECT_EQ(lines[13], "1\r");
    EXPECT_EQ(lines[19], "\"3640\"\r");
    EXPECT_EQ(lines[21], "\"8000\"\r");
    EXPECT_EQ(lines[23], "\"7373\"\r");
    EXPECT_EQ(lines[34], "144000\r");
    for (int i = 35; i <= 40; ++i)
        EXPECT_EQ(lines[i], "\"\"\r") << "line " << i + 1;
    EXPECT_EQ(lines[41], "#FALSE#\r");
    EXPECT_EQ(lines[42], "\"\"\r");
    EXPECT_EQ(lines[43], "1\r");
    EXPECT_EQ(lines[46], "0\r");
    EXPECT_TRUE(f.prompts.shown.isEmpty());
    EXPECT_EQ(f.station.settings[34].type(), SettingValue::Type::Int32);
    EXPECT_EQ(f.station.settings[9].toText(), "9600,n,8,1");
}

TEST(StationConfig, ZeroLengthFileIsTreatedAsMissing)
{
    Fixture f;
    f.dir.write("Kestrel.txt", "");
    LoadStationConfig(f.station);
    EXPECT_EQ(linesOf(f.dir.read("Kestrel.txt")).size(), 47);
    EXPECT_EQ(f.station.settings.textAt(4), "text2");
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(StationConfig, ShortFileIsCompletedFromTheFillColumn)
{
    Fixture f;
    f.dir.write("Kestrel.txt", "3\r\n0\r\n-1\r\n\"cq test\"\r\n\"my text\"\r\n");
    LoadStationConfig(f.station);
    const SettingsTable& s = f.station.settings;
    EXPECT_EQ(s.intAt(0), 3);
    EXPECT_EQ(s.textAt(3), "cq test");
    EXPECT_EQ(s.textAt(4), "my text");
    EXPECT_EQ(s.intAt(13), 0);
    EXPECT_EQ(s.textAt(19), "3195");
    EXPECT_TRUE(s.textAt(35).startsWith("DOK: "));
    EXPECT_EQ(s.textAt(38), "Rig:");
    EXPECT_TRUE(s.textAt(39).startsWith("OP: "));
    EXPECT_TRUE(s.textAt(40).startsWith("email: "));
    EXPECT_EQ(s.textAt(42), "128");
    // The file is corrected only at the next save.
    EXPECT_EQ(linesOf(f.dir.read("Kestrel.txt")).size(), 5);
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(StationConfig, EmptyLineEndsReadingAndLaterElementsKeepTheirValues)
{
    Fixture f;
    f.dir.write("Kestrel.txt", "3\r\n\r\n1\r\n\"ignored\"\r\n");
    f.station.settings.setText(3, "from memory");
    LoadStationConfig(f.station);
    EXPECT_EQ(f.station.settings.intAt(0), 3);
    EXPECT_EQ(f.station.settings.intAt(1), -1); // fill value on a first load
    EXPECT_EQ(f.station.settings.textAt(3), "from memory");

    // A reload keeps what memory held after the empty line.
    f.station.settings.setInt16(1, 7);
    LoadStationConfig(f.station);
    EXPECT_EQ(f.station.settings.intAt(1), 7);
}

TEST(StationConfig, RoundTripKeepsEveryType)
{
    Fixture f;
    LoadStationConfig(f.station);
    SettingsTable& s = f.station.settings;
    s.setInt16(0, 3);
    s.setBool(1, true);
    s.setBool(2, false);
    s.setText(3, "CQ \"DX\", de N0CALL");
    s.setText(5, "N0CALL");
    s.setText(6, "JO31HH");
    s.setInt32(34, 10368100);
    s.setBool(41, true);
    s.setText(42, "200");
    s.setText(60, "never saved");
    ASSERT_TRUE(SaveStationConfig(f.station));
    EXPECT_EQ(linesOf(f.dir.read("Kestrel.txt")).size(), 47);

    RecordingPrompts prompts2;
    Station other(prompts2);
    LoadStationConfig(other);
    for (int i = 0; i < 47; ++i)
        EXPECT_EQ(other.settings[i], s[i]) << "index " << i;
    EXPECT_TRUE(other.settings[60].isEmpty());
    EXPECT_TRUE(prompts2.shown.isEmpty());
}

TEST(StationConfig, DamagedFilesGiveOneClearMessageAndAUsableTable)
{
    QByteArray tooMany;
    for (int i = 0; i < 120; ++i)
        tooMany += "1\r\n";
    // Each: its message, and two values read around the fault.
    const struct {
        const char* what;
        QByteArray bytes;
        const char* message;
        std::pair<int, const char*> first, second;
    } cases[] = {
        { "not a number", "fast\r\n-1\r\n0\r\n\"a\"\r\n\"b\"\r\n", "line 1: \"fast\" is not a whole number",
            { 0, "2" }, { 4, "b" } },
        { "unterminated quote", "2\r\n-1\r\n0\r\n\"open text\r\n\"b\"\r\n",
            "line 4: a quoted text is not closed", { 3, "open text" }, { 4, "b" } },
        { "more than 101 values", tooMany, "more than 101 values", { 100, "1" }, { 5, "1" } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Fixture f;
        f.dir.write("Kestrel.txt", c.bytes);
        LoadStationConfig(f.station);
        ASSERT_EQ(f.prompts.shown.size(), 1);
        EXPECT_TRUE(f.prompts.shown[0].contains(c.message)) << f.prompts.shown[0].toStdString();
        for (const auto& [index, value] : { c.first, c.second })
            EXPECT_EQ(f.station.settings[index].toText(), value) << index;
    }
    Fixture f; // binary garbage
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += char((i * 37 + 11) % 256);
    f.dir.write("Kestrel.txt", bytes);
    LoadStationConfig(f.station);
    for (int i = 0; i < 47; ++i)
        EXPECT_FALSE(f.station.settings[i].isEmpty()) << i;
    EXPECT_EQ(f.station.settings[34].type(), SettingValue::Type::Int32);
    EXPECT_LE(f.prompts.shown.size(), 1);
}

TEST(StationConfig, ADamagedFileIsReportedOnceHoweverOftenItIsReadAndNamesItsFolder)
{
    Fixture f;
    f.dir.write("Kestrel.txt", "fast\r\n-1\r\n0\r\n\"a\"\r\n\"b\"\r\n");
    for (int window = 0; window < 5; ++window) // the main window, then each window that reloads it
        LoadStationConfig(f.station);
    ASSERT_EQ(f.prompts.shown.size(), 1);
    const QString folder = QDir::toNativeSeparators(QFileInfo(f.dir.path()).absoluteFilePath());
    EXPECT_TRUE(
        f.prompts.shown[0].startsWith("Kestrel.txt in " + folder + ": some settings could not be read"))
        << f.prompts.shown[0].toStdString();

    // another fault in the same run is told
    f.dir.write("Kestrel.txt", "2\r\nslow\r\n");
    LoadStationConfig(f.station);
    ASSERT_EQ(f.prompts.shown.size(), 2);
    EXPECT_TRUE(f.prompts.shown[1].contains("line 2: \"slow\""));
}

TEST(StationConfig, UnwritableSaveTellsTheUserAndKeepsTheOldFile)
{
    Fixture f;
    LoadStationConfig(f.station);
    const QByteArray before = f.dir.read("Kestrel.txt");
    f.station.settings.setText(5, "CHANGED");
    QFile::setPermissions(f.dir.path(), QFile::ReadOwner | QFile::ExeOwner);
    const bool saved = SaveStationConfig(f.station);
    QFile::setPermissions(f.dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (saved)
        GTEST_SKIP() << "running with permission to write everywhere (root)";
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(f.prompts.shown[0].startsWith("The settings could not be saved to Kestrel.txt in "
        + QDir::toNativeSeparators(QFileInfo(f.dir.path()).absoluteFilePath()) + " ("));
    EXPECT_EQ(f.dir.read("Kestrel.txt"), before);
}

TEST(StationConfig, SaveOverADirectoryNamedLikeTheFileFails)
{
    // Root can write everywhere: a directory in the file's place fails for everybody.
    Fixture f;
    LoadStationConfig(f.station);
    QFile::remove(f.dir.file("Kestrel.txt"));
    QDir(f.dir.path()).mkdir("Kestrel.txt");
    EXPECT_FALSE(SaveStationConfig(f.station));
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(f.prompts.shown[0].contains("The previous file is unchanged."));
    EXPECT_TRUE(QFileInfo(f.dir.file("Kestrel.txt")).isDir());
}

TEST(StationConfig, DirectoryOfKeepsTheTrailingSeparator)
{
    EXPECT_EQ(DirectoryOf("Kestrel.txt"), "");
    EXPECT_EQ(DirectoryOf("C:\\ham\\Kestrel.txt"), "C:\\ham\\");
}
