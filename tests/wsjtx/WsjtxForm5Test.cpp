// The logbook window with the WSJT-X listener attached, on real UDP: the live Status shows
// beside the entry line and goes when its sender closes; a logged contact appears in the list.
#include "tests/logbook/Form5Fixture.h"
#include "tests/wsjtx/WsjtxDatagram.h"
#include "ui/logbook/Form5.h"
#include "wsjtx/WsjtxListener.h"

#include <QListWidget>
#include <QTableView>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace {

TEST(WsjtxForm5, StatusShowsTheDxCallInTheEntryLineWhileLive)
{
    Form5Fixture f(10,
        { contact("DL1ABC", "JO62QM", "144", { { "mode", "FT8" }, { "DXCC", "Fed. Rep. of Germany" } }) });
    WsjtxListener listener(
        std::make_unique<WsjtxContactLog>(f.db.path(), f.db.locator(), LogClock::Base::Utc));
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost, 0));
    f.form->attachWsjtx(listener);
    EXPECT_EQ(f.text("wsjtxStatus"), "");
    f.edit("Ba")->setText(QStringLiteral("144"));
    auto* worked = f.child<QListWidget>("workedBefore");
    EXPECT_EQ(worked->count(), 0);

    QUdpSocket wsjtx;
    wsjtx.writeDatagram(
        WsjtxDatagram::status(QStringLiteral("WSJT-X"), wsjtxStatus(144174000, "FT8", "DL1ABC", "JO62")),
        QHostAddress::LocalHost, listener.port());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !f.text("wsjtxStatus").isEmpty(); }, 3000));
    EXPECT_EQ(f.text("wsjtxStatus"), "WSJT-X: DL1ABC JO62  144.174 MHz FT8");
    // The entry line itself is the operator's: nothing typed there is overwritten.
    EXPECT_EQ(f.text("Ca"), "");
    // Its DX call gets the worked-before check of a typed one.
    ASSERT_EQ(worked->count(), 2);
    EXPECT_EQ(worked->item(0)->text(), "DUPE on 144");
    EXPECT_EQ(worked->item(1)->text(), "15.11.2026  144  FT8  JO62QM");

    wsjtx.writeDatagram(
        WsjtxDatagram::close(QStringLiteral("WSJT-X")), QHostAddress::LocalHost, listener.port());
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.text("wsjtxStatus").isEmpty(); }, 3000));
}

TEST(WsjtxForm5, LoggedContactAppearsInTheList)
{
    Form5Fixture f(21); // all bands
    WsjtxListener listener(
        std::make_unique<WsjtxContactLog>(f.db.path(), f.db.locator(), LogClock::Base::Utc));
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost, 0));
    f.form->attachWsjtx(listener);
    auto* grid = f.child<QTableView>("DataGrid1");
    const int before = grid->model()->rowCount();
    QUdpSocket wsjtx;
    wsjtx.writeDatagram(WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact()),
        QHostAddress::LocalHost, listener.port());
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return grid->model()->rowCount() == before + 1 && !f.form->isBusy(); }, 5000));
    EXPECT_EQ(f.logCount(), 1);
}

} // namespace
