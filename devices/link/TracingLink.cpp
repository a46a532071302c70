#include "devices/link/TracingLink.h"

#include "core/ExtensionSettings.h"
#include "devices/link/LinkLog.h"
#include "devices/link/PortText.h"

#include <QDateTime>

#include <utility>

TracingLink::TracingLink(std::unique_ptr<SerialLink> inner, QObject* parent)
    : SerialLink(parent)
    , inner_(std::move(inner))
{
    connect(inner_.get(), &SerialLink::readyRead, this, [this] {
        takeArrived();
        emit readyRead();
    });
    connect(inner_.get(), &SerialLink::bytesWritten, this, &SerialLink::bytesWritten);
    connect(inner_.get(), &SerialLink::errorOccurred, this, &SerialLink::errorOccurred);
}

void TracingLink::applySettings()
{
    const QString on = ExtensionSettings::value(ExtensionKey::TraceLink).toLower();
    if (on == QLatin1String("true") || on == QLatin1String("1") || on == QLatin1String("yes"))
        const_cast<QLoggingCategory&>(lcLink()).setEnabled(QtDebugMsg, true);
}

QString TracingLink::traceLine(const QString& port, bool sent, const QByteArray& bytes)
{
    return QStringLiteral("%1 %2 %3")
        .arg(port, sent ? QStringLiteral("sent") : QStringLiteral("received"),
            QString::fromLatin1(bytes.toHex(' ')));
}

void TracingLink::trace(bool sent, const QByteArray& bytes) const
{
    if (bytes.isEmpty() || !lcLink().isDebugEnabled())
        return;
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("HH:mm:ss.zzz"));
    qCDebug(lcLink).noquote() << stamp << traceLine(PortText::displayName(inner_->portText()), sent, bytes);
}

bool TracingLink::open(const QString& portText, const QString& settingsText)
{
    received_.clear();
    return inner_->open(portText, settingsText);
}

qint64 TracingLink::write(const QByteArray& bytes)
{
    const qint64 n = inner_->write(bytes);
    if (n > 0)
        trace(true, bytes.left(n));
    return n;
}

void TracingLink::takeArrived()
{
    const QByteArray bytes = inner_->readAll();
    trace(false, bytes);
    received_ += bytes;
}

QByteArray TracingLink::readAll()
{
    takeArrived();
    return std::exchange(received_, {});
}
