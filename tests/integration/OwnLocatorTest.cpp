// A bad own locator where the program uses it: the main window's locator box, the beacon list,
// a logbook save and an exported map each give the one message, and no NaN, heading or home
// point made up from it shows up anywhere. The program as main() builds it, on a real database.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "geo/Locator.h"
#include "logbook/db/RecordsetModel.h"
#include "mapexport/MapViewer.h"
#include "tests/support/TempDir.h"
#include "ui/StationAssembly.h"
#include "ui/beacons/BeaconGrid.h"
#include "ui/beacons/BeaconPanel.h"
#include "ui/beacons/BeaconStation.h"
#include "ui/form1/Form1.h"
#include "ui/logbook/Form5.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QRegularExpression kNan(QStringLiteral("\\bnan\\b"), QRegularExpression::CaseInsensitiveOption);

// Every text the program's windows show.
QStringList shownTexts()
{
    QStringList out;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        for (QLineEdit* e : top->findChildren<QLineEdit*>())
            out << e->text();
        for (QLabel* l : top->findChildren<QLabel*>())
            out << l->text();
        for (QAbstractItemView* v : top->findChildren<QAbstractItemView*>()) {
            QAbstractItemModel* m = v->model();
            for (int r = 0; m && r < m->rowCount(); ++r)
                for (int c = 0; c < m->columnCount(); ++c)
                    out << m->index(r, c).data().toString();
        }
    }
    return out;
}

QStringList savedContact(const QString& path)
{
    QStringList out;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("check"));
        db.setDatabaseName(path);
        EXPECT_TRUE(db.open());
        QSqlQuery q(QStringLiteral("SELECT QRB, QTF, GEdata, GEgridXY FROM logtab"), db);
        while (q.next())
            for (int i = 0; i < 4; ++i)
                out << q.value(i).toString();
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("check"));
    return out;
}

} // namespace

TEST(OwnLocator, ABadOneGivesItsMessageAndNoNanInWindowBeaconsLogbookOrMap)
{
    for (const char* own : { "", "JO31H", "JO31HH " }) {
        SCOPED_TRACE(std::string("own locator \"") + own + '"');
        TempDir dir;
        {
            RecordingPrompts quiet;
            Station writer(quiet);
            LoadStationConfig(writer);
            for (int used : { Setting::Com1Used, Setting::Com2Used, Setting::Com3Used, Setting::Com4Used })
                writer.settings.setInt16(used, 0);
            writer.settings.setText(Setting::MyCall, QStringLiteral("N0CALL"));
            writer.settings.setText(Setting::MyLocator, QLatin1String(own));
            ASSERT_TRUE(SaveStationConfig(writer));
            ExtensionSettings::setValue(ExtensionKey::SensorPort, dir.file(QStringLiteral("no-sensor")));
            ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file(QStringLiteral("backup.db")));
        }
        RecordingPrompts prompts;
        Station station(prompts);
        RecordingMapViewer viewer;
        Form1 form(station, makeQtSerialLink);
        StationAssembly assembly(form, station, &viewer);
        form.load();
        form.timer().stop();
        const QString message = Locator::ownProblem(QLatin1String(own));
        EXPECT_TRUE(station.homeCoords.isEmpty());

        // the main window's locator box
        prompts.shown.clear();
        form.ui().Locator->setText(QStringLiteral("JO62QM"));
        QTest::keyClick(form.ui().Locator, Qt::Key_Return);
        EXPECT_EQ(prompts.shown, QStringList { message });
        EXPECT_EQ(form.ui().Richtung->text(), QString());
        EXPECT_EQ(form.ui().Text160->text(), QString());

        // a beacon chosen in the list: no heading for the rotator
        prompts.shown.clear();
        BeaconPanel& beacons = assembly.beacons().panel();
        // one the rig can take without a transverter, so the only message is the locator's
        int row = 0;
        while (row < beacons.model().rowCount() && beacons.model().index(row, 2).data().toDouble() >= 1e6)
            ++row;
        ASSERT_LT(row, beacons.model().rowCount());
        beacons.grid()->setCurrentIndex(beacons.model().index(row, 0));
        EXPECT_EQ(prompts.shown, QStringList { message });
        EXPECT_EQ(form.ui().Text160->text(), QString());

        // a contact saved in the logbook: kept, with distance and bearing 0
        prompts.shown.clear();
        auto* log = qobject_cast<Form5*>(form.showWindow(QStringLiteral("mnuARLog")));
        ASSERT_NE(log, nullptr);
        log->findChild<QAbstractButton*>(QStringLiteral("OptBand10"))->click();
        const std::pair<const char*, const char*> entry[]
            = { { "DA", "15.11.2026" }, { "GM", "18:20:00" }, { "Ca", "DL1ABC" }, { "Gr", "JO62QM" },
                  { "Rss", "59" }, { "Rr", "57" }, { "Ba", "144" }, { "mo", "SSB" } };
        for (const auto& [name, text] : entry)
            log->findChild<QLineEdit*>(QLatin1String(name))->setText(QLatin1String(text));
        log->locatorCheck();
        EXPECT_EQ(prompts.shown, QStringList { message });
        log->Save_Click();
        ASSERT_TRUE(QTest::qWaitFor([log] { return !log->isBusy(); }, 20000));
        const QStringList saved = savedContact(dir.file(QStringLiteral("backup.db")));
        ASSERT_EQ(saved.size(), 4);
        EXPECT_EQ(saved[0], "0");
        EXPECT_EQ(saved[1], "0");
        EXPECT_FALSE(saved.join(' ').contains(kNan)) << saved.join(" | ").toStdString();

        // the maps: squares and beacons, but no home point and no lines from one
        for (QPushButton* ge : { beacons.findChild<QPushButton*>(QStringLiteral("GEB")),
                 log->findChild<QPushButton*>(QStringLiteral("GoogleEarth")) }) {
            ASSERT_NE(ge, nullptr);
            QFile::remove(dir.file(QStringLiteral("earth.kml")));
            ge->click();
            ASSERT_TRUE(QTest::qWaitFor([log] { return !log->isBusy(); }, 20000));
            const QByteArray kml = dir.read(QStringLiteral("earth.kml"));
            EXPECT_TRUE(kml.contains("<Placemark>")) << ge->objectName().toStdString();
            EXPECT_FALSE(QString::fromUtf8(kml).contains(kNan));
            EXPECT_FALSE(kml.contains("<name> N0CALL</name>"));
            EXPECT_FALSE(kml.contains("<LineString>"));
            EXPECT_FALSE(kml.contains("-520"));
        }

        for (const QString& text : shownTexts())
            EXPECT_FALSE(text.contains(kNan)) << text.toStdString();
        form.close();
    }
}
