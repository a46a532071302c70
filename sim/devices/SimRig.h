#pragma once
// A simulated transceiver on a CAT port: decodes FT-847 five-byte commands (frequency in packed
// BCD, mode, PTT, CAT on/off, the frequency/mode, receive and transmit status reads) and the text
// dialect of the newer Yaesu rigs ("FA...;", "MD03;", "TX1;", "ID;", "IF;", "AI;", "PS;" ...),
// both on the same line, and keeps frequency, mode and transmit state. Decoded from the
// protocols' own descriptions, never with Kestrel's encoders.
#include "sim/devices/SimSerialDevice.h"

class SimRig : public SimSerialDevice {
public:
    enum class Mode { LSB, USB, CW, CWR, AM, FM, CWN, CWRN, AMN, FMN };

    QByteArray receive(const QByteArray& bytes) override;
    QByteArray tick(int ms) override;
    QString stateLine() const override;

    qint64 frequencyHz() const { return frequencyHz_; }
    Mode mode() const { return mode_; }
    static QString modeName(Mode mode);
    bool transmitting() const { return transmitting_; }
    // False after CAT OFF: the binary side then ignores everything but CAT ON.
    bool catOn() const { return catOn_; }
    // Commands understood and bytes or commands refused so far.
    int commands() const { return commands_; }
    int refused() const { return refused_; }
    // The last run of plain digits received between commands ("14410000").
    QByteArray plainText() const { return plainText_; }

private:
    QByteArray binaryCommand(const QByteArray& frame);
    QByteArray textCommand(const QByteArray& command);
    QByteArray frequencyBcd() const;
    QByteArray informationAnswer() const;
    char textModeDigit() const;

    QByteArray buffer_;
    int quietMs_ = 0; // time since the last byte arrived
    qint64 frequencyHz_ = 144300000;
    Mode mode_ = Mode::USB;
    bool transmitting_ = false;
    // deliberate: starts with CAT on (a real FT-847 waits for CAT ON), since Kestrel never sends it
    bool catOn_ = true;
    qint64 vfoBHz_ = 144300000;
    char autoInformation_ = '0';
    char power_ = '1';
    char vfoSelect_ = '0';
    char transmitVfo_ = '0';
    char split_ = '0';
    int commands_ = 0;
    int refused_ = 0;
    QByteArray plainText_;
};
