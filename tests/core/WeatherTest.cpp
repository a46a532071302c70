#include "core/Weather.h"

#include <gtest/gtest.h>

TEST(Weather, SummaryQueryIsAddedToTheAddress)
{
    EXPECT_EQ(Weather::summaryUrl(QStringLiteral("http://wx.example.org/user/st1")).toString(),
        QStringLiteral("http://wx.example.org/user/st1?view=summary&headers=0"));
    EXPECT_EQ(Weather::summaryUrl(QStringLiteral("https://wx.example.org/p.php?id=7")).toString(),
        QStringLiteral("https://wx.example.org/p.php?id=7&view=summary&headers=0"));
    EXPECT_FALSE(Weather::summaryUrl(QString()).isValid());
    EXPECT_FALSE(Weather::summaryUrl(QStringLiteral("   ")).isValid());
}

TEST(Weather, ValuesFollowTheirCaptionsInATable)
{
    const QString page
        = QStringLiteral("<tr><td>Outside Temp</td><td>12.0 C</td></tr>\n"
                         "<tr><td><b>Outside Humidity</b></td>\n<td align=right>85%</td></tr>\n"
                         "<tr><td>Dew Point</td><td>10.2&nbsp;&deg;C</td></tr>\n"
                         "<tr><td>Barometer</td><td> 1013.2 hPa </td></tr>\n"
                         "<tr><td>Wind Speed</td><td>9 km/h</td></tr>\n"
                         "<tr><td>Average Wind Speed</td><td>3 km/h</td></tr>\n");
    EXPECT_EQ(Weather::summaryLine(page), QStringLiteral("85% : 10.2 \u00b0C : 1013.2 hPa : 3 km/h"));
}

TEST(Weather, PlainTextPagesAndMissingCaptions)
{
    EXPECT_EQ(Weather::summaryLine(
                  QStringLiteral("Outside Humidity: 70 %\nDew Point = 4.1 C\nBarometer: 998 hPa\n")),
        QStringLiteral("70 % : 4.1 C : 998 hPa : "));
    EXPECT_EQ(Weather::summaryLine(QStringLiteral("<html>Service unavailable</html>")), QString());
    EXPECT_EQ(Weather::valueAfter(QStringLiteral("Barometer"), QStringLiteral("Barometer")), QString());
}
