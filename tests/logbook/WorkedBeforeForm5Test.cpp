// The worked-before and check-partial lists of the logbook window, typed letter by letter
// into the call box.
#include "Form5Fixture.h"
#include "logbook/browse/CheckPartial.h"

#include <QListWidget>

#include <gtest/gtest.h>

namespace {

QStringList items(const QListWidget* list)
{
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

TEST(WorkedBeforeForm5, ListFollowsEveryLetterTypedAndEverySave)
{
    Form5Fixture f(10, // 144 MHz
        { contact("OH6AB", "KP22CD", "144",
              { { "Date", "2025-08-12" }, { "mode", "MSK144" }, { "DXCC", "Finland" } }),
            contact("OH6ABC", "KP22CD", "432",
                { { "Date", "2024-06-01" }, { "mode", "Q65" }, { "DXCC", "Finland" } }) });
    ASSERT_TRUE(f.active);
    auto* list = f.child<QListWidget>("workedBefore");
    f.edit("Ba")->setText(QStringLiteral("144"));
    f.edit("Gr")->setText(QStringLiteral("KP22"));
    const QStringList expected[] = {
        {},
        {},
        {},
        {},
        { "DUPE on 144", "12.08.2025  144  MSK144  KP22CD" },
        { "01.06.2024  432  Q65  KP22CD" },
    };
    auto* partial = f.child<QListWidget>("checkPartial");
    CheckPartial scp; // Debian's file when installed; without it the list stays empty
    scp.load(CheckPartial::defaultPath());
    QLineEdit* ca = f.edit("Ca");
    ca->setFocus();
    const QString typed = QStringLiteral("oh6abc"); // the box makes it upper case
    for (int n = 0; n < typed.size(); ++n) {
        QTest::keyClick(ca, typed[n].toLatin1());
        EXPECT_EQ(ca->text(), typed.left(n + 1).toUpper());
        EXPECT_EQ(items(list), expected[n]) << n;
        EXPECT_EQ(items(partial), scp.matches(ca->text())) << n;
    }
    // Saved on 144: the next time the call is a dupe there.
    f.edit("DA")->setText(QStringLiteral("15.11.2026"));
    f.edit("mo")->setText(QStringLiteral("FT8"));
    f.form->Save_Click();
    ASSERT_TRUE(f.waitIdle());
    f.type("Ca", QStringLiteral("OH6ABC"));
    f.edit("Ba")->setText(QStringLiteral("144"));
    EXPECT_EQ(items(list),
        QStringList({ "DUPE on 144", "15.11.2026  144  FT8  KP22", "01.06.2024  432  Q65  KP22CD" }));
}

} // namespace
