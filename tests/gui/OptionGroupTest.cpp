// The option-group control: value from 1, change signal, captions, saved state.
#include "ui/widgets/OptionGroup.h"

#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

TEST(OptionGroup, ValueCountsFromOneAndFollowsTheButtons)
{
    OptionGroup g(
        { QStringLiteral("50 lpm"), QStringLiteral("60 lpm"), QStringLiteral("70 lpm") }, Qt::Vertical);
    EXPECT_TRUE(g.count() == 3 && g.value() == 1 && g.button(1)->isChecked() && !g.button(4));
    EXPECT_EQ(g.button(3)->text(), QStringLiteral("70 lpm"));

    QSignalSpy changed(&g, &OptionGroup::valueChanged);
    g.show();
    QTest::mouseClick(g.button(3), Qt::LeftButton);
    EXPECT_EQ(g.value(), 3);
    g.setValue(2);
    EXPECT_TRUE(g.button(2)->isChecked() && !g.button(3)->isChecked());
    g.setValue(2); // no change, no signal
    g.setValue(0);
    g.setValue(4);
    EXPECT_EQ(g.value(), 2);
    EXPECT_EQ(changed, (QList<QVariantList> { { 3 }, { 2 } }));
}

TEST(OptionGroup, NewCaptionsKeepAValueStillInRange)
{
    OptionGroup g({ QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c") }, Qt::Horizontal);
    g.setValue(2);
    g.setCaptions({ QStringLiteral("x"), QStringLiteral("y") });
    EXPECT_TRUE(g.value() == 2 && g.button(2)->text() == QStringLiteral("y"));
    g.setValue(2);
    QSignalSpy changed(&g, &OptionGroup::valueChanged);
    g.setCaptions({ QStringLiteral("only") });
    EXPECT_TRUE(g.value() == 1 && changed.count() == 1);
    g.setCaptions({});
    EXPECT_TRUE(g.value() == 0 && g.count() == 0);
}

TEST(OptionGroup, SavedStateComesBackInAnotherGroup)
{
    OptionGroup a(
        { QStringLiteral("1296"), QStringLiteral("2320"), QStringLiteral("3400"), QStringLiteral("5760") },
        Qt::Vertical);
    a.setValue(4);
    OptionGroup b;
    QSignalSpy changed(&b, &OptionGroup::valueChanged);
    ASSERT_TRUE(b.restoreState(a.saveState()));
    EXPECT_EQ(b.captions(), a.captions());
    EXPECT_TRUE(b.button(4)->isChecked());
    EXPECT_GE(changed.count(), 1);

    EXPECT_FALSE(b.restoreState(QByteArray("not a state")));
    EXPECT_EQ(b.value(), 4);
}
