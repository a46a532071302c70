#include "audio/WaveCapture.h"

#include "audio/AudioLog.h"
#include "audio/RecordingInput.h"
#include "audio/SoundCardInput.h"
#include "core/ExtensionSettings.h"
#include "core/Prompts.h"

WaveCapture::WaveCapture(Prompts& prompts, QObject* parent)
    : QObject(parent)
    , prompts_(prompts)
    , factory_(soundCard())
{
}

WaveCapture::~WaveCapture()
{
    StopWaveInput();
}

WaveCapture::Factory WaveCapture::soundCard()
{
    return
        [] { return std::make_unique<SoundCardInput>(ExtensionSettings::value(ExtensionKey::AudioDevice)); };
}

WaveCapture::Factory WaveCapture::waveFile(const QString& path, bool paced)
{
    return [path, paced] { return std::make_unique<RecordingInput>(path, paced); };
}

void WaveCapture::setFactory(Factory factory)
{
    factory_ = std::move(factory);
}

int WaveCapture::StartWaveInput()
{
    if (capturing_)
        return WaveStatus::Ok;
    dropInput();
    input_ = factory_();
    connect(input_.get(), &WaveInput::failed, this, &WaveCapture::inputFailed);
    connect(input_.get(), &WaveInput::ended, this, &WaveCapture::inputEnded);
    QString errorText;
    const int status = input_->open(errorText);
    if (status != WaveStatus::Ok) {
        dropInput();
        report(errorText);
        return status;
    }
    lastError_.clear();
    shownError_.clear();
    capturing_ = true;
    return WaveStatus::Ok;
}

void WaveCapture::StopWaveInput()
{
    capturing_ = false;
    dropInput();
}

void WaveCapture::dropInput()
{
    if (!input_)
        return;
    input_->disconnect(this);
    input_->close();
    // Later: this may run inside one of the input's own signals.
    input_.release()->deleteLater();
}

bool WaveCapture::takeBuffer(WaveBuffer& buffer)
{
    return capturing_ && input_ && input_->takeBuffer(buffer);
}

void WaveCapture::inputFailed(const QString& errorText)
{
    capturing_ = false;
    if (input_)
        input_->close();
    report(errorText);
}

void WaveCapture::inputEnded()
{
    capturing_ = false;
    emit ended();
}

void WaveCapture::report(const QString& errorText)
{
    lastError_ = errorText;
    qCWarning(lcAudio) << errorText;
    if (errorText == shownError_)
        return;
    // Marked before the message box opens: its event loop may bring another start attempt.
    shownError_ = errorText;
    prompts_.information(errorText);
}
