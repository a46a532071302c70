// The program's own main window, assembled as main() does, against kestrel-sim: a recording
// played through the spectrum shows its tone, and every menu window opens once and again.
#include "audio/WaveCapture.h"
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/audio/WavTestFile.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"
#include "ui/spectrum/SpectrumPanel.h"

#include <QAction>
#include <QLabel>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {
struct Station1 {
    Station1()
        : station(prompts)
    {
        ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file("backup.db"));
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        assembly = std::make_unique<StationAssembly>(*form, station);
        form->load();
        form->show();
    }
    QString text(const char* name) const { return form->findChild<QLabel*>(QLatin1String(name))->text(); }

    TempDir dir;
    SimProcess sim { dir.path() };
    RecordingPrompts prompts;
    Station station;
    std::unique_ptr<Form1> form;
    std::unique_ptr<StationAssembly> assembly;
};
} // namespace

TEST(StationWindow, RecordedToneShowsItsFrequencyAndLevelOnTheMainWindow)
{
    Station1 s;
    ASSERT_TRUE(s.sim.ready());
    SpectrumPanel& spectrum = s.assembly->spectrum();
    QSignalSpy ended(&spectrum.capture(), &WaveCapture::ended);
    const QString wav
        = WavTestFile::writeMono16(s.dir.file("tone.wav"), WavTestFile::tone(1000, 0.5, 220500));
    ASSERT_TRUE(spectrum.openWaveFile(wav, false));
    ASSERT_TRUE(ended.wait(20000));
    // 1000 Hz lies nearest bin 372, shown as 372 * 1.344855; 58.6 dB less 25.
    EXPECT_EQ(s.text("lblFreq"), "500 Hz");
    EXPECT_EQ(s.text("lblMax"), "33 dB anl");
    // Without a sound card the only message is the missing input, at most once.
    EXPECT_LE(s.prompts.shown.size(), 1);

    // The menu's way back from the recording opens the sound card named in Kestrel.ini.
    ExtensionSettings::setValue(ExtensionKey::AudioDevice, QStringLiteral("No Such Card"));
    auto* soundCard = s.form->findChild<QAction*>(QStringLiteral("mnuSoundCard"));
    ASSERT_TRUE(soundCard);
    s.prompts.shown.clear();
    soundCard->trigger();
    EXPECT_EQ(s.prompts.shown, QStringList { "The sound input device \"No Such Card\" was not found." });
}

TEST(StationWindow, EveryMenuWindowOpensOnceAgainstTheSimulatedStation)
{
    Station1 s;
    ASSERT_TRUE(s.sim.ready());
    for (const char* menu : { "mnuARLog", "mnuGPS", "mnuInitial", "mnuQSL", "mnuPacket" }) {
        QWidget* first = s.form->showWindow(QLatin1String(menu));
        ASSERT_NE(first, nullptr) << menu;
        EXPECT_TRUE(first->isVisible()) << menu;
        EXPECT_EQ(s.form->showWindow(QLatin1String(menu)), first) << menu;
    }
    EXPECT_TRUE(QFile::exists(s.dir.file("backup.db")));
    s.form->close();
}
