#pragma once
// The GPS window: reads a receiver on its own serial port Com3 (settings 13 to 15), shows every
// decoded field of RMC, GGA, GSA and GSV in its own box, the fix state and the position, and
// can take the position over as the station's own locator.
#include "core/SilenceWatch.h"
#include "gps/GpsReceiver.h"

#include <QTimer>
#include <QWidget>

#include <memory>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class SerialLink;
class Station;

class Form4 : public QWidget {
    Q_OBJECT
public:
    // Opens its port through a Qt serial link of its own.
    explicit Form4(Station& station, QWidget* parent = nullptr);
    // Takes the given link over (tests hand in a link on a pseudo-terminal).
    Form4(Station& station, std::unique_ptr<SerialLink> link, QWidget* parent = nullptr);
    ~Form4() override;

    // `Command1`: "&start" opens Com3, "&stop" closes it.
    void command1Clicked();
    // `cmdMyLocator`: the position's 6-character locator becomes the own locator (setting 6).
    void takeLocatorClicked();

    // Another source's bytes (gpsd) take the same path as the port's.
    void bytesArrived(const QByteArray& bytes);
    // A line in the window's log `Text1` (what another source reports).
    void report(const QString& line) { log(line); }

    const GpsReceiver& receiver() const { return receiver_; }
    SerialLink& link() { return *link_; }

    // Lines kept in `Text1`: the window runs for days.
    static constexpr int kLogLines = 500;
    // How often the receiver's silence is checked: a receiver that sends once a second is
    // taken as silent after SilenceWatch::SilentTicks checks without a byte.
    static constexpr int kSilenceCheckMs = 500;

protected:
    void changeEvent(QEvent* event) override;

private:
    void buildUi();
    void opened();
    void onReadyRead();
    void onLinkError(const QString& text);
    void showDecoded(const GpsReceiver::Decoded& d);
    void showFix();
    void checkSilence();
    void log(const QString& line);

    Station& station_;
    std::unique_ptr<SerialLink> link_;
    GpsReceiver receiver_;
    SilenceWatch silence_;
    QTimer silenceCheck_;
    bool heard_ = false; // bytes since the last silence check
    bool otherSource_ = false; // bytes come from gpsd instead of the port

    QLabel* lblCom3_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* cmdMyLocator_ = nullptr;
    QLabel* grid_ = nullptr;
    QLabel* usedSystems_ = nullptr;
    QLabel* image1_ = nullptr;
    QPlainTextEdit* text1_ = nullptr;
    struct Boxes;
    std::unique_ptr<Boxes> boxes_;
};
