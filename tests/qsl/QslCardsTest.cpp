// How contacts share cards.
#include "qsl/QslCards.h"
#include "qsl/CardNames.h"

#include <gtest/gtest.h>

TEST(QslCards, ContactsWithOneStationShareACardUpToFourLines)
{
    auto run = std::make_unique<QslRunBuffer>();
    const auto add = [&run](const QString& call, const QString& date, const QString& manager = {}) {
        run->append({ date, "  18:20 ", call, "    144", "SSB", "59", "512", "87", manager });
    };
    for (int i = 1; i <= 5; ++i)
        add("DL1ABC", QStringLiteral(" 0%1.01.2026").arg(i));
    add("dl1abc", " 09.01.2026", "DL0MGR");
    add("OK1XYZ", " 10.01.2026");

    const QList<CardTexts> cards = QslCards::make(*run);
    ASSERT_EQ(cards.size(), 4);
    EXPECT_EQ(cards[0].value(CardName::Callsign).toStdString(), "DL1ABC");
    EXPECT_EQ(
        cards[0].value(CardName::Date).toStdString(), " 01.01.2026\n 02.01.2026\n 03.01.2026\n 04.01.2026");
    EXPECT_EQ(cards[0].value(CardName::Band).toStdString(), "    144\n    144\n    144\n    144");
    EXPECT_EQ(cards[1].value(CardName::Date).toStdString(), " 05.01.2026");
    // Another QSL manager means another card, and Label10 names the manager.
    EXPECT_EQ(cards[2].value(CardName::Manager).toStdString(), "via DL0MGR");
    EXPECT_TRUE(cards[1].value(CardName::Manager).isEmpty());
    EXPECT_EQ(cards[3].value(CardName::Callsign).toStdString(), "OK1XYZ");
    EXPECT_EQ(QslCards::make(*run, 1).size(), 7);
}
