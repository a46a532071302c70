#include "logbook/entry/PendingRetry.h"

#include <utility>

PendingRetry::PendingRetry(const QString& journal, const QString& connection, QObject* parent)
    : QObject(parent)
    , journal_(journal)
    , connection_(connection)
    , worker_(new QObject)
{
    worker_->moveToThread(&thread_);
    connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_.setObjectName(QStringLiteral("kestrel-pending"));
    thread_.start();
    timer_.setSingleShot(true);
    timer_.setInterval(IntervalMs);
    connect(&timer_, &QTimer::timeout, this, &PendingRetry::retryNow);
}

PendingRetry::~PendingRetry()
{
    thread_.quit();
    thread_.wait();
}

void PendingRetry::retryNow()
{
    if (trying_) {
        again_ = true; // what was kept meanwhile may have come after the try read the journal
        return;
    }
    trying_ = true;
    timer_.stop();
    QMetaObject::invokeMethod(worker_, [this, journal = journal_, connection = connection_] {
        const PendingFlush result = PendingContacts(journal).flush(connection);
        QMetaObject::invokeMethod(
            this, [this, result] { finish(result); }, Qt::QueuedConnection);
    });
}

void PendingRetry::retryLater()
{
    waiting_ = true;
    if (trying_)
        again_ = true;
    else if (!timer_.isActive())
        timer_.start();
}

void PendingRetry::finish(const PendingFlush& result)
{
    trying_ = false;
    waiting_ = result.left > 0;
    emit flushed(result);
    if (std::exchange(again_, false))
        retryNow();
    // Only an absent server is worth trying again by itself; a contact it refused waits for the
    // next save or start.
    else if (waiting_ && result.error.number == DbErrorNumber::ServerGone)
        timer_.start();
}
