#pragma once
// Runs a long logbook action (map data completion, ADIF import or export) in slices on the
// event loop, so the window keeps painting and answering: each slice does a few tens of
// milliseconds of work, a progress dialog with Cancel appears when the action lasts, and the
// window's controls are disabled meanwhile. No nested event loop is started.
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QProgressDialog;
class QWidget;

class SlicedJob : public QObject {
    Q_OBJECT
public:
    struct Steps {
        QString label;
        // Does one slice; false when the action has ended.
        std::function<bool()> step;
        // Stops the action (called instead of the next slice after Cancel).
        std::function<void()> cancel;
        // Work done and total, for the progress bar.
        std::function<std::pair<qint64, qint64>()> progress;
    };

    // `window` owns the dialog; `disable` (may be null) is disabled while the job runs.
    SlicedJob(QWidget* window, QWidget* disable, Steps steps);
    ~SlicedJob() override;

    void start();
    bool isRunning() const { return running_; }
    // Stops the action now (its cancel runs) without reporting finished(); the job goes.
    void abandon();

    // The dialog appears when the action lasts this long (ms).
    static constexpr int ShowAfterMs = 400;

signals:
    // After the last slice or the cancel; the job may be deleted then.
    void finished(bool cancelled);

private:
    void tick();
    void end(bool cancelled);

    QWidget* window_;
    QPointer<QWidget> disable_;
    Steps steps_;
    QProgressDialog* dialog_ = nullptr;
    bool running_ = false;
    bool cancelRequested_ = false;
};
