#pragma once
// A main window on real pseudo-terminals in a temporary directory: Kestrel.txt points Com1,
// Com2 and Com4 at their own pty, Kestrel.ini the sensor box at a fourth.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Form1.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>
#include <ostream>

// Readable failures for texts.
inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

struct Form1Fixture {
    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    PtyPair rig1, rig2, sensor, rotator;
    std::unique_ptr<Form1> form;

    // Writes the files; `adjust` may change the table before it is saved.
    void writeConfig(const std::function<void(SettingsTable&)>& adjust = {})
    {
        RecordingPrompts quiet;
        Station writer(quiet);
        LoadStationConfig(writer);
        SettingsTable& t = writer.settings;
        t.setText(Setting::Com1Port, rig1.slavePath());
        t.setText(Setting::Com2Port, rig2.slavePath());
        t.setText(Setting::Com4Port, rotator.slavePath());
        t.setText(Setting::MyCall, QStringLiteral("N0CALL"));
        t.setText(Setting::MyLocator, QStringLiteral("JN48TH"));
        if (adjust)
            adjust(t);
        SaveStationConfig(writer);
        ExtensionSettings::setValue(ExtensionKey::SensorPort, sensor.slavePath());
    }

    // Builds and loads the window; the tick is stopped so that tests drive it.
    Form1& start(bool keepTimer = false)
    {
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        form->load();
        if (!keepTimer)
            form->timer().stop();
        return *form;
    }

    template <typename T> T* child(const char* name) const
    {
        return form->findChild<T*>(QString::fromLatin1(name));
    }

    // Puts the sensor box's frame (and the rotator's reply) on the line, waits until they have
    // arrived, then ticks once.
    bool tickWith(const QByteArray& sensorFrame, const QByteArray& rotatorReply = {})
    {
        QSignalSpy arrived(&form->ports().com(3), &SerialLink::readyRead);
        if ((!rotatorReply.isEmpty() && !rotator.write(rotatorReply)) || !sensor.write(sensorFrame)
            || !arrived.wait(2000))
            return false;
        QTest::qWait(30);
        form->tick();
        return true;
    }

    QList<QByteArray> configLines() const
    {
        QList<QByteArray> lines = dir.read(QStringLiteral("Kestrel.txt")).trimmed().split('\n');
        for (QByteArray& l : lines)
            l = l.trimmed();
        return lines;
    }
};

// A 16-byte sensor reply: elevation in thousandths at bytes 11-12, temperature in byte 15.
inline QByteArray sensorReply(int elevationThousandths, int temperature)
{
    QByteArray f(16, '\0');
    f[0] = char(0x7e);
    f[11] = char((elevationThousandths >> 8) & 0xff);
    f[12] = char(elevationThousandths & 0xff);
    f[15] = char(temperature);
    return f;
}
