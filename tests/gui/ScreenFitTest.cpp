// The assembled main window on a real X server (Xvfb) with a 1366 x 768 screen, as a laptop
// shows it: it fits, the status bar and the beacon entry's Save are on the screen, the beacon
// list shows at least 8 rows and grows with the window, and size and splitter are remembered.
// Run through xvfb-run (see CMakeLists.txt); KESTREL_SCREENSHOT=file.png keeps a picture.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Rows of the table that can be seen whole.
int visibleRows(const QTableView* table)
{
    return table->viewport()->height() / table->verticalHeader()->defaultSectionSize();
}

QRect onScreen(const QWidget* w)
{
    return QRect(w->mapToGlobal(QPoint(0, 0)), w->size());
}

struct Window {
    Window(TempDir& dir)
        : station(prompts)
    {
        ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file("backup.db"));
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        assembly = std::make_unique<StationAssembly>(*form, station);
        form->load();
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(form.get()));
        table = form->findChild<QTableView*>(QStringLiteral("DataGrid1"));
        save = form->findChild<QPushButton*>(QStringLiteral("CmdSave"));
    }

    RecordingPrompts prompts;
    Station station;
    std::unique_ptr<Form1> form;
    std::unique_ptr<StationAssembly> assembly;
    QTableView* table = nullptr;
    QPushButton* save = nullptr;
};

} // namespace

TEST(ScreenFit, TheMainWindowFitsALaptopScreenWithEverythingReachable)
{
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("xcb")) << "run under xvfb-run";
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    ASSERT_EQ(screen.size(), QSize(1366, 768));

    TempDir dir;
    SimProcess sim(dir.path());
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    Window w(dir);
    ASSERT_TRUE(w.table && w.save);
    QTRY_VERIFY_WITH_TIMEOUT(w.table->model() && w.table->model()->rowCount() >= 8, 5000);
    QTest::qWait(300); // a few ticks: the lamps and read-outs at their working width

    if (const QByteArray shot = qgetenv("KESTREL_SCREENSHOT"); !shot.isEmpty())
        QGuiApplication::primaryScreen()->grabWindow(0).save(QString::fromLocal8Bit(shot));

    EXPECT_TRUE(screen.contains(w.form->frameGeometry()))
        << w.form->frameGeometry().width() << "x" << w.form->frameGeometry().height();
    QStatusBar* status = w.form->statusBar();
    EXPECT_TRUE(status->isVisible());
    EXPECT_TRUE(screen.contains(onScreen(status)));
    EXPECT_TRUE(w.save->isVisible());
    EXPECT_TRUE(screen.contains(onScreen(w.save)));
    for (const char* entry : { "txtBeacon", "txtQrgB", "txtLocB", "txtComment", "CMDaddnew" }) {
        const auto* widget = w.form->findChild<QWidget*>(QLatin1String(entry));
        ASSERT_NE(widget, nullptr) << entry;
        EXPECT_TRUE(widget->isVisible() && screen.contains(onScreen(widget))) << entry;
    }
    EXPECT_GE(visibleRows(w.table), 8);
    // every menu entry on the menu bar itself, none behind its overflow arrow
    const QMenuBar* bar = w.form->menuBar();
    for (QAction* entry : bar->actions())
        EXPECT_TRUE(bar->rect().contains(bar->actionGeometry(entry))) << entry->text().toStdString();

    // The lamps have a row of their own, not in the status bar: its whole width is for the text.
    for (int n = 1; n <= 4; ++n) {
        const QLabel* lamp = w.form->portLamp(n);
        EXPECT_TRUE(lamp->isVisible() && screen.contains(onScreen(lamp))) << n;
        EXPECT_FALSE(status->isAncestorOf(lamp)) << n;
    }
    const QString message
        = QStringLiteral("Com1 (rig) not open: /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A"
                         "B0CDEFG-if00-port0: the port is busy (another program has it open)");
    status->showMessage(message);
    EXPECT_GE(status->contentsRect().width() - 12, status->fontMetrics().horizontalAdvance(message));
    EXPECT_TRUE(w.prompts.shown.isEmpty()) << w.prompts.shown.join(u'\n').toStdString();

    // A larger window: the beacon list grows, the panels above keep their height.
    const int rows = visibleRows(w.table);
    const int panels = w.form->findChild<QSplitter*>(QStringLiteral("mainSplitter"))->sizes().at(0);
    w.form->resize(1366, 900);
    QTRY_VERIFY_WITH_TIMEOUT(visibleRows(w.table) > rows, 2000);
    EXPECT_EQ(w.form->findChild<QSplitter*>(QStringLiteral("mainSplitter"))->sizes().at(0), panels);

    // Size and splitter are remembered in Kestrel.ini.
    w.form->resize(1200, 700);
    QSplitter* splitter = w.form->findChild<QSplitter*>(QStringLiteral("mainSplitter"));
    splitter->setSizes({ 200, 400 });
    QTest::qWait(100);
    const QList<int> sizes = splitter->sizes();
    w.form->close();
    EXPECT_FALSE(ExtensionSettings::value(ExtensionKey::WindowGeometry).isEmpty());
    Window again(dir);
    EXPECT_EQ(again.form->size(), QSize(1200, 700));
    EXPECT_EQ(again.form->findChild<QSplitter*>(QStringLiteral("mainSplitter"))->sizes(), sizes);
    again.form->close();
}
