// One tick of the main window's 200 ms timer with the rotator and the sensor box on
// pseudo-terminals: "AI1;" out and the read-back in, the sensor query out and its frame
// decoded, compass and overlay updated. Timed with the replies waiting, with devices that
// never answer (the tick must not wait for them), and with the compass repainted at once.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Form1.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <vector>

namespace {

QByteArray sensorFrame(int i)
{
    QByteArray f(16, '\0');
    f[0] = char(0x7e);
    const int elevation = 300 + i % 900;
    f[11] = char(elevation >> 8);
    f[12] = char(elevation & 0xff);
    f[15] = char(15 + i % 8);
    return f;
}

struct Figures {
    double median, p99, max;
};

Figures figures(std::vector<double> us)
{
    std::sort(us.begin(), us.end());
    return { us[us.size() / 2], us[size_t(double(us.size()) * 0.99)], us.back() };
}

void print(const char* what, const Figures& f)
{
    std::printf("  %-44s median %8.1f us   p99 %8.1f us   max %8.1f us\n", what, f.median, f.p99, f.max);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "kestrel.*.info=false;kestrel.*.debug=false");
    QApplication app(argc, argv);
    TempDir dir;
    PtyPair rotator, sensor;
    if (!rotator.isOpen() || !sensor.isOpen()) {
        std::fprintf(stderr, "bench_tick: no pseudo-terminal\n");
        return 1;
    }
    {
        RecordingPrompts quiet;
        Station writer(quiet);
        LoadStationConfig(writer);
        writer.settings.setInt16(Setting::Com1Used, 0);
        writer.settings.setInt16(Setting::Com2Used, 0);
        writer.settings.setText(Setting::Com4Port, rotator.slavePath());
        SaveStationConfig(writer);
        ExtensionSettings::setValue(ExtensionKey::SensorPort, sensor.slavePath());
    }
    RecordingPrompts prompts;
    Station station(prompts);
    Form1 form(station, makeQtSerialLink);
    form.load();
    form.timer().stop();
    form.show();
    if (!form.isPortOpen(3) || !form.isPortOpen(4)) {
        std::fprintf(stderr, "bench_tick: ports did not open\n");
        return 1;
    }

    constexpr int Rounds = 2000;
    std::vector<double> answered, silent, painted;
    int readBack = 0;
    QElapsedTimer clock;
    auto* label1 = form.findChild<QLabel*>(QStringLiteral("Label1"));
    QWidget* compass = form.findChild<QWidget*>(QStringLiteral("Picture1"));

    for (int i = 0; i < Rounds; ++i) {
        // the devices answer the previous tick's queries; Qt moves the bytes in before we time
        rotator.readAvailable();
        sensor.readAvailable();
        rotator.write(QByteArray::number(100 + i % 260).rightJustified(3, '0') + ';');
        sensor.write(sensorFrame(i));
        QElapsedTimer wait;
        wait.start();
        while (wait.elapsed() < 3)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        clock.start();
        form.tick();
        answered.push_back(double(clock.nsecsElapsed()) / 1000.0);
        readBack += label1->text().isEmpty() ? 0 : 1;

        clock.start();
        form.tick(); // nothing has arrived: the tick must not wait
        silent.push_back(double(clock.nsecsElapsed()) / 1000.0);

        clock.start();
        form.tick();
        compass->repaint();
        painted.push_back(double(clock.nsecsElapsed()) / 1000.0);
    }

    std::printf("bench_tick: %d rounds, 200 ms period, rotator and sensor box on pseudo-terminals\n", Rounds);
    print("tick with both replies waiting", figures(answered));
    print("tick with nothing arrived (no waiting)", figures(silent));
    print("tick + immediate compass repaint", figures(painted));
    const Figures a = figures(answered);
    std::printf(
        "  median tick = %.4f %% of the 200 ms period (target: under 2 ms); read-back shown in %d of %d\n",
        a.median / 2000.0, readBack, Rounds);
    form.close();
    return 0;
}
