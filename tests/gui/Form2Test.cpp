// The settings dialog driven by objectName: the port-number check, the Com1 guard, the Enter
// moves, "Done" with its locator check, the ports it opens and closes, and what it saves.
#include "ui/form2/Form2.h"
#include "tests/gui/Form1Fixture.h"
#include "ui/widgets/OptionGroup.h"

#include <QCheckBox>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <gtest/gtest.h>

namespace {

struct Form2Fixture : Form1Fixture {
    Form2* dialog = nullptr;

    Form2& open(const std::function<void(SettingsTable&)>& adjust = {})
    {
        writeConfig(adjust);
        start();
        form->registerWindow(QStringLiteral("mnuInitial"),
            [this](QWidget* parent) { return new Form2(station, *form, parent); });
        dialog = qobject_cast<Form2*>(form->showWindow(QStringLiteral("mnuInitial")));
        return *dialog;
    }

    template <typename T> T* field(const char* name) const
    {
        return dialog->findChild<T*>(QString::fromLatin1(name));
    }
    QLineEdit* edit(const char* name) const { return field<QLineEdit>(name); }
};

void focusByTab(QWidget* w)
{
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(w, &in);
}

} // namespace

TEST(Form2, ShowsTheSettingsFileWithItsLabels)
{
    Form2Fixture f;
    Form2& d = f.open([](SettingsTable& t) {
        t.setText(Setting::QslLine3, QStringLiteral("Ant: 4 x 17 el"));
        t.setInt16(Setting::ClusterChoice, 2);
        t.setText(Setting::Transparency, QStringLiteral("77"));
    });
    EXPECT_EQ(d.windowTitle(), QStringLiteral("Initial"));
    const std::pair<const char*, QString> boxes[] = { { "text3", "N0CALL" }, { "text4", "JN48TH" },
        { "TxtCom2PNr", f.rig2.slavePath() }, { "TxtCom3PNr", "13" }, { "TxtCom4settings", "4800,n,8,1" },
        { "ConPort1", "7373" }, { "TXTline3", "Ant: 4 x 17 el" } };
    for (const auto& [name, text] : boxes)
        EXPECT_EQ(f.edit(name)->text(), text) << name;
    EXPECT_TRUE(f.field<QCheckBox>("Checkcom1")->isChecked());
    EXPECT_EQ(f.field<OptionGroup>("uSc_MultiOption1")->value(), 2);
    EXPECT_EQ(f.field<QSlider>("GEcolor")->value(), 77);
    EXPECT_EQ(f.station.transparency, QStringLiteral("77"));
    EXPECT_TRUE(f.field<QCheckBox>("ChecklineB")->isChecked());

    QStringList captions;
    for (const QLabel* l : d.findChildren<QLabel*>())
        captions << l->text();
    for (const QAbstractButton* b : d.findChildren<QAbstractButton*>())
        captions << b->text();
    for (const char* text : { "MyCallsign:", "MyGrid:", "6,8 or 10 Digit Locator",
             "RS232 Com                             FT991        ON/OFF     PortNr      Settings",
             "Com1    TRX1 Yaesu FT847", "Com2    TRX2 Yaesu FT847", "Com3                 GPS Ctr NMEA Loc",
             "Com4    Rotor Ctr GHE RT21", "DXCluster: 1", "DXCluster: 2",
             "QSL Text fields 1 line= info data 2-5 line free data line6 address 7 foot data",
             "Transparency of square on GE",
             "Color  line depends on prop  RS=blue Tr=red Es=green Ms=grey Au=pink",
             "Line from you to stn on GE Beacons", "Line from you to stn wkd on GE Squares", "Done" })
        EXPECT_TRUE(captions.contains(QString::fromLatin1(text))) << text;
}

TEST(Form2, ADuplicatePortNumberIsRefusedAtTheKeystrokeThatMakesIt)
{
    const QString duplicate = QStringLiteral("PortNr is alredy used Pse change the PortNr");
    Form2Fixture f;
    f.open([](SettingsTable& t) { t.setText(Setting::Com2Port, QStringLiteral("11")); });
    QLineEdit* com1 = f.edit("TxtCom1PNr");
    com1->clear();
    QTest::keyClick(com1, Qt::Key_1);
    EXPECT_TRUE(f.prompts.shown.isEmpty());
    EXPECT_EQ(com1->text(), QStringLiteral("1"));
    QTest::keyClick(com1, Qt::Key_1);
    EXPECT_EQ(f.prompts.shown, QStringList { duplicate });
    EXPECT_EQ(com1->text(), QString());

    // deleting the last digit next to an empty box makes two empty ones
    f.edit("TxtCom3PNr")->clear();
    QLineEdit* com4 = f.edit("TxtCom4PNr");
    com4->setText(QStringLiteral("7"));
    com4->setCursorPosition(1);
    QTest::keyClick(com4, Qt::Key_Backspace);
    EXPECT_EQ(f.prompts.shown, QStringList({ duplicate, duplicate }));
    EXPECT_EQ(com4->text(), QString());
}

TEST(Form2, FocusingTheCom1BoxWhileCom1IsTickedShowsTheGuard)
{
    Form2Fixture f;
    f.open([](SettingsTable& t) { t.setText(Setting::Com1Port, QStringLiteral("10")); });
    ASSERT_EQ(f.form->portNumber(1), QStringLiteral("10"));
    focusByTab(f.edit("TxtCom1PNr"));
    EXPECT_EQ(f.prompts.shown, QStringList { QStringLiteral(" No change possible while Com1(10) active") });

    // deliberate asymmetry: the other rows have no guard; an unticked Com1 neither
    focusByTab(f.edit("TxtCom2PNr"));
    f.field<QCheckBox>("Checkcom1")->setChecked(false);
    focusByTab(f.edit("TxtCom1PNr"));
    EXPECT_EQ(f.prompts.shown.size(), 1);
}

TEST(Form2, EnterMovesFromCallsignToLocatorToDone)
{
    Form2Fixture f;
    Form2& d = f.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d));
    f.edit("text3")->setText(QStringLiteral("DL0XYZ"));
    f.edit("text3")->setFocus();
    QTest::keyClick(f.edit("text3"), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), f.edit("text4"));
    EXPECT_EQ(f.configLines()[5], QByteArray("\"N0CALL\"")); // nothing saved
    QTest::keyClick(f.edit("text4"), Qt::Key_Return);
    EXPECT_EQ(QApplication::focusWidget(), f.field<QPushButton>("Command1"));
    EXPECT_TRUE(d.isVisible());
}

TEST(Form2, DoneWithABadLocatorTakesNothingOverAndSavesNothing)
{
    for (const char* refused : { "JO31H", "", "JO31HH " }) {
        Form2Fixture f;
        Form2& d = f.open();
        const QByteArray before = f.dir.read(QStringLiteral("Kestrel.txt"));
        f.edit("text3")->setText(QStringLiteral("DL0XYZ"));
        f.edit("text4")->setText(QLatin1String(refused));
        f.field<QCheckBox>("Checkcom2")->setChecked(false);
        QTest::mouseClick(f.field<QPushButton>("Command1"), Qt::LeftButton);
        EXPECT_EQ(f.prompts.shown, QStringList { QStringLiteral("Invalid Gridlocator:") }) << refused;
        EXPECT_TRUE(f.station.locatorInvalid);
        EXPECT_EQ(f.dir.read(QStringLiteral("Kestrel.txt")), before);
        // the station keeps its own values: nothing of the dialog reached it
        EXPECT_EQ(f.station.settings.textAt(Setting::MyLocator), QStringLiteral("JN48TH"));
        EXPECT_EQ(f.station.settings.textAt(Setting::MyCall), QStringLiteral("N0CALL"));
        EXPECT_EQ(f.station.myLocator, QStringLiteral("JN48TH"));
        EXPECT_EQ(f.station.settings.intAt(Setting::Com2Used), 1);
        EXPECT_TRUE(d.isVisible());
        EXPECT_TRUE(f.form->isPortOpen(2));
    }
}

// Enter in the callsign box only moves on (above); on the focused Done it presses it.
TEST(Form2, EnterOnTheFocusedDonePressesIt)
{
    Form2Fixture f;
    Form2& d = f.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d));
    for (Qt::Key key : { Qt::Key_Return, Qt::Key_Enter }) {
        f.form->showWindow(QStringLiteral("mnuInitial"));
        f.edit("text3")->setText(key == Qt::Key_Return ? QStringLiteral("DL0XYZ") : QStringLiteral("DL0ABC"));
        auto* done = f.field<QPushButton>("Command1");
        done->setFocus();
        QTest::keyClick(done, key);
        EXPECT_FALSE(d.isVisible()) << key;
        EXPECT_EQ(
            f.configLines()[5], key == Qt::Key_Return ? QByteArray("\"DL0XYZ\"") : QByteArray("\"DL0ABC\""));
    }
}

TEST(Form2, UntickingCom2AndDoneClosesThatPortAndSavesZero)
{
    Form2Fixture f;
    Form2& d = f.open();
    ASSERT_TRUE(f.form->isPortOpen(2));
    f.field<QCheckBox>("Checkcom2")->setChecked(false);
    QTest::mouseClick(f.field<QPushButton>("Command1"), Qt::LeftButton);
    EXPECT_FALSE(f.form->isPortOpen(2));
    EXPECT_TRUE(f.form->isPortOpen(1) && f.form->isPortOpen(4));
    ASSERT_EQ(f.configLines().size(), 47);
    EXPECT_EQ(f.configLines()[10], QByteArray("0"));
    EXPECT_EQ(f.configLines()[7], QByteArray("1"));
    EXPECT_FALSE(d.isVisible());
    EXPECT_TRUE(f.prompts.shown.isEmpty());

    // the same window opens again, reading the file anew; ticked again, it reopens the port
    RecordingPrompts quiet;
    Station other(quiet);
    LoadStationConfig(other);
    other.settings.setText(Setting::MyCall, QStringLiteral("OE1ABC"));
    SaveStationConfig(other);
    EXPECT_EQ(f.form->showWindow(QStringLiteral("mnuInitial")), &d);
    EXPECT_EQ(f.edit("text3")->text(), QStringLiteral("OE1ABC"));
    EXPECT_FALSE(f.field<QCheckBox>("Checkcom2")->isChecked());
    f.field<QCheckBox>("Checkcom2")->setChecked(true);
    QTest::mouseClick(f.field<QPushButton>("Command1"), Qt::LeftButton);
    EXPECT_TRUE(f.form->isPortOpen(2));
    EXPECT_EQ(f.configLines()[10], QByteArray("1"));
}

TEST(Form2, DoneStoresEveryFieldAndTheSharedCopies)
{
    Form2Fixture f;
    f.open();
    f.edit("text3")->setText(QStringLiteral("DL0XYZ"));
    f.edit("text4")->setText(QStringLiteral("jo31hh"));
    f.edit("ConHost")->setText(QStringLiteral("127.0.0.1"));
    f.edit("ConPort")->setText(QStringLiteral("7300"));
    f.field<OptionGroup>("uSc_MultiOption1")->button(2)->click();
    f.edit("TXTinfo")->setText(QStringLiteral("DOK: X99"));
    f.edit("TXTfoot")->setText(QStringLiteral("email: op@example.org"));
    f.field<QCheckBox>("Check1")->setChecked(true);
    f.field<QSlider>("GEcolor")->setValue(200);
    f.field<QCheckBox>("ChecklineB")->setChecked(false);
    f.field<QCheckBox>("Check3")->setChecked(true);
    EXPECT_FALSE(f.station.lineBeacons); // at once, before Done
    EXPECT_EQ(f.station.transparency, QStringLiteral("200"));
    QTest::mouseClick(f.field<QPushButton>("Command1"), Qt::LeftButton);
    ASSERT_TRUE(f.prompts.shown.isEmpty()) << f.prompts.shown.join(u'|').toStdString();

    const QList<QByteArray> l = f.configLines();
    ASSERT_EQ(l.size(), 47);
    const std::pair<int, const char*> stored[]
        = { { 5, "\"DL0XYZ\"" }, { 6, "\"jo31hh\"" }, { 20, "\"127.0.0.1\"" }, { 21, "\"7300\"" },
              { 24, "2" }, { 35, "\"DOK: X99\"" }, { 40, "\"email: op@example.org\"" }, { 41, "#TRUE#" },
              { 42, "\"200\"" }, { 43, "0" }, { 44, "1" }, { 45, "0" }, { 46, "1" } };
    for (const auto& [index, text] : stored)
        EXPECT_EQ(l[index], QByteArray(text)) << index;
    EXPECT_EQ(f.station.myCall, QStringLiteral("DL0XYZ"));
    EXPECT_EQ(f.station.myLocator, QStringLiteral("JO31HH"));
    EXPECT_FALSE(f.station.locatorInvalid);
}
