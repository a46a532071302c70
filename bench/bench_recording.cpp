// Recordings for the spectrum monitor: one minute of receiver audio read and converted to
// 22050 samples/s (libsndfile and libsoxr) from 44.1 and 48 kHz, against the same minute
// already at 22050 (read and passed through) in the same run. The monitor needs one buffer of
// 8192 samples every 371 ms; the figures say how far below real time a recording stays.
#include "audio/RecordingReader.h"
#include "tests/audio/WavTestFile.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <vector>

namespace {
constexpr int Seconds = 60;

// A 16-bit mono WAV of `Seconds` of an 800 Hz tone at `rate`, written once per rate.
QString recording(int rate)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("minute%1.wav").arg(rate));
    if (!QFile::exists(path))
        WavTestFile::writeMono16(path, WavTestFile::tone(800, 0.3, rate * Seconds, rate), quint32(rate));
    return path;
}

void BM_ReadMinute(benchmark::State& st)
{
    const QString path = recording(int(st.range(0)));
    std::vector<qint16> out(8192);
    for (auto _ : st) {
        RecordingReader r;
        QString error;
        if (!r.open(path, error)) {
            st.SkipWithError(qPrintable(error));
            break;
        }
        qint64 samples = 0;
        while (const int n = r.read(out.data(), int(out.size())))
            samples += n;
        benchmark::DoNotOptimize(samples);
    }
    st.counters["audio_s_per_cpu_s"]
        = benchmark::Counter(double(Seconds) * double(st.iterations()), benchmark::Counter::kIsRate);
}
// 22050 is the reference: read and passed through without conversion.
BENCHMARK(BM_ReadMinute)->Arg(22050)->Arg(44100)->Arg(48000)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
