// The worked-before and check-partial lists of the logbook window, typed letter by letter
// into the call box.
#include "Form5Fixture.h"
#include "logbook/browse/CheckPartial.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogChanges.h"
#include "logbook/entry/ContactSave.h"

#include <QElapsedTimer>

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

// Another position saving into the same server log: its contact shows in the list and the
// worked-before check within a second; this position's own save is not counted twice.
TEST(WorkedBeforeForm5, ContactSavedAtAnotherPositionShowsWithinASecond)
{
    Form5Fixture f(10, // 144 MHz
        { contact("OH6AB", "KP22CD", "144",
            { { "Date", "2025-08-12" }, { "mode", "MSK144" }, { "DXCC", "Finland" } }) });
    ASSERT_TRUE(f.active);
    if (!DbConnection::isServer(f.db.path()))
        GTEST_SKIP() << "positions share a log on a server only";
    auto* changes = f.form->findChild<LogChanges*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return changes->isListening(); }, 5000));
    auto* list = f.child<QListWidget>("workedBefore");
    f.edit("Ba")->setText(QStringLiteral("144"));
    f.type("Ca", QStringLiteral("OH6XYZ"));
    EXPECT_EQ(items(list), QStringList());
    EXPECT_EQ(f.form->ui().gridCaption->text(), "1");

    EntryLine other;
    other.DA = QStringLiteral("15.11.2026");
    other.GM = QStringLiteral("12:34");
    other.Ca = QStringLiteral("OH6XYZ");
    other.Ba = QStringLiteral("144");
    other.mo = QStringLiteral("FT8");
    QElapsedTimer clock;
    clock.start();
    ASSERT_FALSE(ContactSave::save(f.db.path(), ContactSave::fields(other, MapPosition())).isError());
    const QStringList dupe { "DUPE on 144", "15.11.2026  144  FT8" };
    EXPECT_TRUE(QTest::qWaitFor([&] { return items(list) == dupe; }, 1000))
        << items(list).join('/').toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.form->ui().gridCaption->text() == "2"; }, 1000));
    EXPECT_LT(clock.elapsed(), 1000);

    // Saved here on another band: heard back from the server, yet listed once.
    f.edit("Ba")->setText(QStringLiteral("432"));
    f.edit("DA")->setText(QStringLiteral("15.11.2026"));
    f.edit("GM")->setText(QStringLiteral("12:40"));
    f.edit("mo")->setText(QStringLiteral("FT8"));
    f.form->Save_Click();
    ASSERT_TRUE(f.waitIdle());
    QTest::qWait(300);
    f.type("Ca", QStringLiteral("OH6XYZ"));
    f.edit("Ba")->setText(QStringLiteral("144"));
    EXPECT_EQ(items(list), QStringList({ "DUPE on 144", "15.11.2026  432  FT8", "15.11.2026  144  FT8" }));

    // The same contact typed again after the other position saved it: refused with the reason.
    f.type("Ca", QStringLiteral("OH6XYZ"));
    for (auto [box, text] :
        { std::pair { "DA", "15.11.2026" }, { "GM", "12:34" }, { "Ba", "144" }, { "mo", "FT8" } })
        f.edit(box)->setText(QLatin1String(text));
    f.form->Save_Click();
    EXPECT_EQ(f.db.prompts.shown.value(f.db.prompts.shown.size() - 1),
        "OH6XYZ on 144 at 15.11.2026 12:34 (FT8) is already in the log: saved at another position or earlier "
        "here, so it was not saved again.");
    EXPECT_EQ(f.edit("Ca")->text(), "OH6XYZ"); // kept in the entry line
}

} // namespace
