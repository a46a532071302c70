#include "audio/SoundCardInput.h"

#include "audio/AudioLog.h"
#include "audio/WaveBuffer.h"

#include <QAudioDevice>
#include <QAudioSource>
#include <QMediaDevices>

SoundCardInput::SoundCardInput(const QString& deviceName, QObject* parent)
    : WaveInput(parent)
    , deviceName_(deviceName)
    , queue_(WaveBuffer::Bytes)
{
}

SoundCardInput::~SoundCardInput()
{
    close();
}

QAudioFormat SoundCardInput::waveFormat()
{
    QAudioFormat format;
    format.setSampleRate(22050);
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    return format;
}

QString SoundCardInput::errorText(QAudio::Error error)
{
    switch (error) {
    case QAudio::NoError:
        return {};
    case QAudio::OpenError:
        return QStringLiteral("The sound input device could not be opened.");
    case QAudio::IOError:
        return QStringLiteral("The sound input device stopped delivering sound.");
    case QAudio::UnderrunError:
        return QStringLiteral("The sound input device ran out of data.");
    case QAudio::FatalError:
        break;
    }
    return QStringLiteral("The sound input device failed.");
}

int SoundCardInput::open(QString& errorText)
{
    close();
    QAudioDevice device;
    if (deviceName_.isEmpty()) {
        device = QMediaDevices::defaultAudioInput();
        if (device.isNull()) {
            errorText = QStringLiteral("No sound input device is available.");
            return WaveStatus::BadDevice;
        }
    } else {
        for (const QAudioDevice& d : QMediaDevices::audioInputs()) {
            if (d.description() == deviceName_ || QString::fromUtf8(d.id()) == deviceName_)
                device = d;
        }
        if (device.isNull()) {
            errorText = QStringLiteral("The sound input device \"%1\" was not found.").arg(deviceName_);
            return WaveStatus::BadDevice;
        }
    }
    const QAudioFormat format = waveFormat();
    if (!device.isFormatSupported(format)) {
        errorText = QStringLiteral("The sound input device \"%1\" cannot record 16-bit mono at 22050 "
                                   "samples/s.")
                        .arg(device.description());
        return WaveStatus::Error;
    }

    source_ = std::make_unique<QAudioSource>(device, format);
    source_->setBufferSize(WaveBuffer::Bytes);
    connect(source_.get(), &QAudioSource::stateChanged, this, &SoundCardInput::stateChanged);
    io_ = source_->start();
    if (!io_ || source_->error() != QAudio::NoError) {
        errorText = SoundCardInput::errorText(source_->error());
        if (errorText.isEmpty())
            errorText = SoundCardInput::errorText(QAudio::OpenError);
        close();
        return WaveStatus::Error;
    }
    connect(io_, &QIODevice::readyRead, this, &SoundCardInput::readAvailable);
    qCInfo(lcAudio) << "recording from" << device.description();
    return WaveStatus::Ok;
}

void SoundCardInput::close()
{
    if (source_) {
        source_->disconnect(this);
        source_->stop();
        source_.reset();
    }
    io_ = nullptr;
    queue_.clear();
}

bool SoundCardInput::takeBuffer(WaveBuffer& buffer)
{
    // Whatever has arrived since the last signal counts too.
    readAvailable();
    return queue_.take(buffer.bytes());
}

void SoundCardInput::readAvailable()
{
    if (io_)
        queue_.append(io_->readAll());
}

void SoundCardInput::stateChanged(QAudio::State state)
{
    if (state != QAudio::StoppedState || !source_)
        return;
    const QAudio::Error error = source_->error();
    if (error == QAudio::NoError || error == QAudio::UnderrunError)
        return;
    // Queued: whoever handles the failure may close this input, which deletes the source.
    const QString text = errorText(error);
    QMetaObject::invokeMethod(
        this, [this, text] { emit failed(text); }, Qt::QueuedConnection);
}
