// The nine run arrays and their bound, and how contacts share cards.
#include "qsl/QslCards.h"
#include "qsl/CardNames.h"

#include <gtest/gtest.h>

namespace {

QslContact contact(const QString& call, const QString& date, const QString& manager = QString())
{
    return { date, QStringLiteral("  18:20 "), call, QStringLiteral("    144"), QStringLiteral("SSB"),
        QStringLiteral("59"), QStringLiteral("512"), QStringLiteral("87"), manager };
}

} // namespace

TEST(QslRunBuffer, NineArraysOf1001EntriesRefuseTheNextOne)
{
    auto run = std::make_unique<QslRunBuffer>();
    EXPECT_EQ(QslRunBuffer::Capacity, 1001);
    EXPECT_EQ(run->date.size(), 1001u);
    for (int i = 0; i < 1001; ++i)
        ASSERT_TRUE(run->append(contact(QStringLiteral("DL%1").arg(i), QStringLiteral(" 01.01.2026"))));
    EXPECT_TRUE(run->isFull());
    EXPECT_FALSE(run->append(contact(QStringLiteral("ONEMORE"), QStringLiteral(" 01.01.2026"))));
    EXPECT_EQ(run->count(), 1001);
    EXPECT_EQ(run->callsign[1000].toStdString(), "DL1000");
    EXPECT_EQ(run->at(1000).callsign.toStdString(), "DL1000");
    EXPECT_EQ(run->qrb[0].toStdString(), "512");
    EXPECT_EQ(run->time[0].toStdString(), "  18:20 ");

    run->clear();
    EXPECT_EQ(run->count(), 0);
    EXPECT_TRUE(run->callsign[1000].isEmpty());
}

TEST(QslCards, ContactsWithOneStationShareACardUpToFourLines)
{
    auto run = std::make_unique<QslRunBuffer>();
    for (int i = 1; i <= 5; ++i)
        run->append(contact(QStringLiteral("DL1ABC"), QStringLiteral(" 0%1.01.2026").arg(i)));
    run->append(contact(QStringLiteral("dl1abc"), QStringLiteral(" 09.01.2026"), QStringLiteral("DL0MGR")));
    run->append(contact(QStringLiteral("OK1XYZ"), QStringLiteral(" 10.01.2026")));

    const QList<CardTexts> cards = QslCards::make(*run);
    ASSERT_EQ(cards.size(), 4);
    EXPECT_EQ(cards[0].value(CardName::Callsign).toStdString(), "DL1ABC");
    EXPECT_EQ(
        cards[0].value(CardName::Date).toStdString(), " 01.01.2026\n 02.01.2026\n 03.01.2026\n 04.01.2026");
    EXPECT_EQ(cards[0].value(CardName::Time).count(QLatin1Char('\n')), 3);
    EXPECT_EQ(cards[0].value(CardName::Band).toStdString(), "    144\n    144\n    144\n    144");
    EXPECT_EQ(cards[1].value(CardName::Date).toStdString(), " 05.01.2026");
    // Another QSL manager means another card, and Label10 names the manager.
    EXPECT_EQ(cards[2].value(CardName::Manager).toStdString(), "via DL0MGR");
    EXPECT_TRUE(cards[1].value(CardName::Manager).isEmpty());
    EXPECT_EQ(cards[3].value(CardName::Callsign).toStdString(), "OK1XYZ");
    for (const QString& name : { CardName::Mode, CardName::Report, CardName::Distance, CardName::Bearing })
        EXPECT_TRUE(cards[3].contains(name)) << name.toStdString();

    EXPECT_EQ(QslCards::make(*run, 1).size(), 7);
    EXPECT_TRUE(QslCards::make(QslRunBuffer()).isEmpty());
}

TEST(QslCards, ClearedEmptiesEveryTextBoxAndLabel10)
{
    const CardTexts t = QslCards::cleared();
    EXPECT_EQ(t.size(), 9);
    for (auto it = t.cbegin(); it != t.cend(); ++it)
        EXPECT_TRUE(it.value().isEmpty()) << it.key().toStdString();
    EXPECT_TRUE(t.contains(CardName::Manager));
}
