#pragma once
// gpsd as the GPS window's source: connects through libgps, asks for NMEA (WATCH with nmea),
// and hands the sentences on as bytes, so the window's own receive path and parsers serve both
// a serial receiver and gpsd. A gpsd that is not there or goes away is reported once and tried
// again until it answers.
#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>

class QSocketNotifier;
struct gps_data_t;

class GpsdSource : public QObject {
    Q_OBJECT
public:
    GpsdSource(const QString& host, quint16 port, QObject* parent = nullptr);
    ~GpsdSource() override;

    void start();
    void stop();
    bool isConnected() const { return data_ != nullptr; }
    void setRetryMs(int ms) { retry_.setInterval(ms); }
    QString place() const;

    // Bytes kept while a line is incomplete: anything longer is no NMEA and is dropped.
    static constexpr qsizetype kMaxLine = 4096;

signals:
    void bytesArrived(const QByteArray& bytes);
    // What happened, for the window's log: not reachable, gone, back.
    void report(const QString& text);

private:
    void tryOpen();
    void readAvailable();
    void lost(const QString& why);

    QByteArray host_;
    QByteArray port_;
    std::unique_ptr<gps_data_t> data_;
    QSocketNotifier* notifier_ = nullptr;
    QTimer retry_;
    QByteArray partial_;
    bool reportedDown_ = false;
};
