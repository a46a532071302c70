#include "ui/logbook/SlicedJob.h"

#include <QProgressDialog>
#include <QTimer>
#include <QWidget>

SlicedJob::SlicedJob(QWidget* window, QWidget* disable, Steps steps)
    : QObject(window)
    , window_(window)
    , disable_(disable)
    , steps_(std::move(steps))
{
}

SlicedJob::~SlicedJob()
{
    delete dialog_;
    if (running_ && disable_)
        disable_->setEnabled(true);
}

void SlicedJob::start()
{
    running_ = true;
    cancelRequested_ = false;
    if (disable_)
        disable_->setEnabled(false);
    // Not modal: a modal progress dialog would run the event loop inside setValue().
    dialog_ = new QProgressDialog(steps_.label, QStringLiteral("Cancel"), 0, 1000, window_);
    dialog_->setObjectName(QStringLiteral("progress"));
    dialog_->setWindowModality(Qt::NonModal);
    dialog_->setMinimumDuration(ShowAfterMs);
    dialog_->setAutoClose(false);
    dialog_->setAutoReset(false);
    dialog_->setValue(0);
    connect(dialog_, &QProgressDialog::canceled, this, [this] { cancelRequested_ = true; });
    QTimer::singleShot(0, this, &SlicedJob::tick);
}

void SlicedJob::tick()
{
    if (!running_)
        return;
    if (cancelRequested_) {
        if (steps_.cancel)
            steps_.cancel();
        end(true);
        return;
    }
    const bool more = steps_.step();
    if (steps_.progress && dialog_) {
        const auto [done, total] = steps_.progress();
        dialog_->setValue(total > 0 ? int(std::min<qint64>(1000, done * 1000 / total)) : 0);
    }
    if (more)
        QTimer::singleShot(0, this, &SlicedJob::tick);
    else
        end(false);
}

void SlicedJob::abandon()
{
    if (running_ && steps_.cancel)
        steps_.cancel();
    running_ = false;
    if (dialog_) {
        dialog_->hide();
        dialog_->deleteLater();
        dialog_ = nullptr;
    }
    if (disable_)
        disable_->setEnabled(true);
    deleteLater();
}

void SlicedJob::end(bool cancelled)
{
    running_ = false;
    if (dialog_) {
        dialog_->hide();
        dialog_->deleteLater();
        dialog_ = nullptr;
    }
    if (disable_)
        disable_->setEnabled(true);
    emit finished(cancelled);
}
