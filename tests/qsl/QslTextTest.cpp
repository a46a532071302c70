// Card texts by selection letter, the status letters that follow printing, and the text forms
// of band, date, time, distance and the own locator.
#include "qsl/QslText.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>

TEST(QslText, CardLinesAndNextStatusFollowTheLetter)
{
    const char* qso = "Confirming 2-way QSO with:";
    const char* tnx = "tnx fer QSO Best 73 de";
    const std::array<const char*, 4> lines[]
        = { { "T", "TNX QSL", qso, tnx }, { "S", "PSE QSL", qso, tnx }, { "Y", "PSE QSL", qso, tnx },
              { "X", "PSE QSL", qso, tnx }, { "B", "PSE QSL", "Confirming heard Beacon:", "Best 73 de" } };
    for (const auto& [letter, greeting, confirmation, closing] : lines) {
        EXPECT_EQ(QslText::greeting(letter).toStdString(), greeting) << letter;
        EXPECT_EQ(QslText::confirmation(letter).toStdString(), confirmation) << letter;
        EXPECT_EQ(QslText::closing(letter).toStdString(), closing) << letter;
    }
    // The query's LIKE selects without case, so a lower-case letter moves on as well.
    const std::pair<const char*, const char*> next[]
        = { { "T", "Q" }, { "S", "D" }, { "Y", "N" }, { "B", "N" }, { "t", "Q" }, { "b", "N" }, { "Q", "Q" },
              { "N", "N" }, { "X", "X" }, { "", "" }, { "TT", "TT" } };
    for (const auto& [letter, status] : next)
        EXPECT_EQ(QslText::nextStatus(letter).toStdString(), status) << letter;
}

TEST(QslText, CardFormsKeepTheirBlanks)
{
    using Format = std::function<QString(const QString&)>;
    const Format band = QslText::formatBand, date = QslText::formatDate, time = QslText::formatTime;
    const Format number = [](const QString& t) { return QslText::formatNumber(QVariant(t)); };
    const struct {
        Format format;
        const char* in;
        const char* out;
    } cases[] = { { band, "144", "    144" }, { band, "1840", "    1,840" },
        { band, "122250", "    122,250" }, { band, "1234567", "    1,234,567" },
        { band, "144.6", "    145" }, // no decimal places
        { band, "0", "    " }, // "#" shows nothing for zero
        { band, "", "" }, { band, "2m", "2m" }, { date, "2026-11-15", " 15.11.2026" },
        { date, "5.1.2024", " 05.01.2024" }, { date, "yesterday", "yesterday" }, { date, "", "" },
        { time, "18:20:05", "  18:20 " }, { time, "7:05", "  07:05 " }, { time, "0930", "  09:30 " },
        { time, "25:70", "25:70" }, { time, "", "" }, { number, "1234.9", "1234.9" }, { number, "87", "87" },
        { number, "", "" }, { number, "far", "far" }, { QslText::ownLocatorLine, "jo62qm", "Loc: JO62QM" },
        { QslText::ownLocatorLine, "JO62", "Loc: JO62" },
        { QslText::ownLocatorLine, "jo62qm48", "Loc: JO62QM48" },
        { QslText::ownLocatorLine, " JO62QM48AB ", "Loc: JO62QM48ab" }, { QslText::ownLocatorLine, "", "" },
        { QslText::managerLine, "dl0mgr", "via DL0MGR" }, { QslText::managerLine, "  ", "" } };
    for (const auto& c : cases)
        EXPECT_EQ(c.format(QString::fromLatin1(c.in)).toStdString(), c.out) << c.in;
    // Distance and bearing are printed as stored, not rounded.
    EXPECT_EQ(QslText::formatNumber(QVariant(512.4)).toStdString(), "512.4");
    EXPECT_EQ(QslText::formatNumber(QVariant()).toStdString(), "");
}
