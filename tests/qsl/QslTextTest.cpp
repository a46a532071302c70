// Card texts by selection letter, the status letters that follow printing, and the text forms
// of band, date, time, distance and the own locator.
#include "qsl/QslText.h"

#include <gtest/gtest.h>

namespace {
std::string s(const QString& t)
{
    return t.toStdString();
}
} // namespace

TEST(QslText, GreetingConfirmationAndClosingFollowTheLetter)
{
    EXPECT_EQ(s(QslText::greeting("T")), "TNX QSL");
    for (const char* l : { "Y", "S", "B", "X", "" })
        EXPECT_EQ(s(QslText::greeting(l)), "PSE QSL") << l;

    EXPECT_EQ(s(QslText::confirmation("B")), "Confirming heard Beacon:");
    EXPECT_EQ(s(QslText::closing("B")), "Best 73 de");
    for (const char* l : { "T", "Y", "S", "X" }) {
        EXPECT_EQ(s(QslText::confirmation(l)), "Confirming 2-way QSO with:") << l;
        EXPECT_EQ(s(QslText::closing(l)), "tnx fer QSO Best 73 de") << l;
    }
    EXPECT_EQ(s(QslText::NoRecordset), "No new Recorset available");
}

TEST(QslText, StatusMovesOnFromTheSelectionLettersOnly)
{
    EXPECT_EQ(s(QslText::nextStatus("T")), "Q");
    EXPECT_EQ(s(QslText::nextStatus("S")), "D");
    EXPECT_EQ(s(QslText::nextStatus("Y")), "N");
    EXPECT_EQ(s(QslText::nextStatus("B")), "N");
    // The query's LIKE selects without case, so a lower-case letter moves on as well.
    EXPECT_EQ(s(QslText::nextStatus("t")), "Q");
    EXPECT_EQ(s(QslText::nextStatus("b")), "N");
    for (const char* l : { "Q", "q", "N", "D", "X", "", "TT" })
        EXPECT_EQ(s(QslText::nextStatus(l)), l) << l;
}

TEST(QslText, BandKeepsItsFourBlanksAndGroupsThousands)
{
    EXPECT_EQ(s(QslText::formatBand("144")), "    144");
    EXPECT_EQ(s(QslText::formatBand("1840")), "    1,840");
    EXPECT_EQ(s(QslText::formatBand("14200")), "    14,200");
    EXPECT_EQ(s(QslText::formatBand("122250")), "    122,250");
    EXPECT_EQ(s(QslText::formatBand("1234567")), "    1,234,567");
    EXPECT_EQ(s(QslText::formatBand("1014")), "    1,014");
    EXPECT_EQ(s(QslText::formatBand("144.6")), "    145"); // no decimal places in the format
    EXPECT_EQ(s(QslText::formatBand("0")), "    "); // "#" shows nothing for zero
    EXPECT_EQ(s(QslText::formatBand("")), "");
    EXPECT_EQ(s(QslText::formatBand("2m")), "2m");
}

TEST(QslText, DateAndTimeCarryTheirBlanks)
{
    EXPECT_EQ(s(QslText::formatDate("2026-11-15")), " 15.11.2026");
    EXPECT_EQ(s(QslText::formatDate("15.11.2026")), " 15.11.2026");
    EXPECT_EQ(s(QslText::formatDate("5.1.2024")), " 05.01.2024");
    EXPECT_EQ(s(QslText::formatDate("yesterday")), "yesterday");
    EXPECT_EQ(s(QslText::formatDate("")), "");

    EXPECT_EQ(s(QslText::formatTime("18:20:05")), "  18:20 ");
    EXPECT_EQ(s(QslText::formatTime("18:20")), "  18:20 ");
    EXPECT_EQ(s(QslText::formatTime("7:05")), "  07:05 ");
    EXPECT_EQ(s(QslText::formatTime("0930")), "  09:30 ");
    EXPECT_EQ(s(QslText::formatTime("25:70")), "25:70");
    EXPECT_EQ(s(QslText::formatTime("")), "");
}

TEST(QslText, DistanceAndBearingAsWholeNumbers)
{
    EXPECT_EQ(s(QslText::formatWhole(QVariant(512.4))), "512");
    EXPECT_EQ(s(QslText::formatWhole(QVariant(87.5))), "88");
    EXPECT_EQ(s(QslText::formatWhole(QVariant(0.0))), "0");
    EXPECT_EQ(s(QslText::formatWhole(QVariant(QStringLiteral("1234.9")))), "1235");
    EXPECT_EQ(s(QslText::formatWhole(QVariant())), "");
    EXPECT_EQ(s(QslText::formatWhole(QVariant(QString()))), "");
    EXPECT_EQ(s(QslText::formatWhole(QVariant(QStringLiteral("far")))), "far");
}

TEST(QslText, OwnLocatorLineAndManagerLine)
{
    EXPECT_EQ(s(QslText::ownLocatorLine("jo62qm")), "Loc: JO62QM");
    EXPECT_EQ(s(QslText::ownLocatorLine("JO62")), "Loc: JO62");
    EXPECT_EQ(s(QslText::ownLocatorLine("jo62qm48")), "Loc: JO62QM48");
    EXPECT_EQ(s(QslText::ownLocatorLine("JO62QM48AB")), "Loc: JO62QM48ab");
    EXPECT_EQ(s(QslText::ownLocatorLine(" jo62qm48ab ")), "Loc: JO62QM48ab");
    EXPECT_EQ(s(QslText::ownLocatorLine("")), "");

    EXPECT_EQ(s(QslText::managerLine("dl0mgr")), "via DL0MGR");
    EXPECT_EQ(s(QslText::managerLine("  ")), "");
}
