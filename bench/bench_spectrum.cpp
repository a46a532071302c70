// Spectrum monitor per buffer: transform, levels and smoothing of 8192 samples, against FFTW's
// transform of the same input in the same run; and the drawing of one frame.
#include "audio/SpectrumPicture.h"
#include "audio/SpectrumState.h"
#include "audio/WaveBuffer.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>
#include <random>
#include <string>

#ifdef KESTREL_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {
constexpr int N = WaveBuffer::Samples;

// Receiver audio: a beacon tone at 800 Hz in noise.
const WaveBuffer& input()
{
    static const WaveBuffer buffer = [] {
        WaveBuffer b;
        std::mt19937 gen(1);
        std::normal_distribution<double> noise(0.0, 0.05);
        for (int n = 0; n < N; ++n) {
            const double v = 0.3 * std::sin(2.0 * std::numbers::pi * 800.0 * n / 22050.0) + noise(gen);
            b.setSample(n, static_cast<qint16>(std::lround(std::clamp(v, -1.0, 0.99) * 32767.0)));
        }
        return b;
    }();
    return buffer;
}

void BM_Transform(benchmark::State& st)
{
    SpectrumState s;
    for (auto _ : st) {
        s.GetAudio(input());
        benchmark::DoNotOptimize(s.real.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Transform)->Unit(benchmark::kMicrosecond);

void BM_PerBuffer(benchmark::State& st)
{
    SpectrumState s;
    for (auto _ : st) {
        s.GetAudio(input());
        s.computeLevels();
        benchmark::DoNotOptimize(s.smoothed.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_PerBuffer)->Unit(benchmark::kMicrosecond);

#ifdef KESTREL_HAVE_FFTW
struct FftwPlan {
    FftwPlan()
        : data(fftw_alloc_complex(N))
        , plan(fftw_plan_dft_1d(N, data, data, FFTW_FORWARD, FFTW_MEASURE))
    {
    }
    ~FftwPlan()
    {
        fftw_destroy_plan(plan);
        fftw_free(data);
    }
    void run()
    {
        for (int i = 0; i < N; ++i) {
            data[i][0] = input().ReadSample(i);
            data[i][1] = 0.0;
        }
        fftw_execute(plan);
    }
    fftw_complex* data;
    fftw_plan plan;
};

// Same work as BM_Transform: load the 8192 samples, transform in place.
void BM_FftwTransform(benchmark::State& st)
{
    FftwPlan f;
    for (auto _ : st) {
        f.run();
        benchmark::DoNotOptimize(f.data);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_FftwTransform)->Unit(benchmark::kMicrosecond);

// How far the short-pi transform lies from FFTW's on this input.
double relativeDifference()
{
    FftwPlan f;
    f.run();
    SpectrumState s;
    s.GetAudio(input());
    double diff = 0, norm = 0;
    for (int k = 0; k < N; ++k) {
        diff += std::pow(s.real[k] - f.data[k][0], 2) + std::pow(s.imag[k] - f.data[k][1], 2);
        norm += f.data[k][0] * f.data[k][0] + f.data[k][1] * f.data[k][1];
    }
    return std::sqrt(diff / norm);
}
#endif

// One frame as every buffer draws it: clear, grid, trace of bins 0..4096 (visible part).
void BM_DrawFrame(benchmark::State& st)
{
    SpectrumState s;
    for (int i = 0; i < 30; ++i) {
        s.GetAudio(input());
        s.computeLevels();
    }
    SpectrumPicture picture(QSize(static_cast<int>(st.range(0)), static_cast<int>(st.range(1))));
    for (auto _ : st) {
        picture.drawFrame();
        picture.drawTrace(s, N / 2);
        benchmark::DoNotOptimize(picture.image().constBits());
    }
}
BENCHMARK(BM_DrawFrame)->Args({ 400, 300 })->Args({ 1200, 1200 })->Unit(benchmark::kMicrosecond);

class CollectingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& r : runs)
            if (r.run_type == Run::RT_Iteration)
                microseconds[r.benchmark_name()] = r.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    // CPU time: on a busy machine the wall clock also counts other programs' turns.
    std::map<std::string, double> microseconds;
};
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    auto& t = reporter.microseconds;
    std::printf("\nSpectrum monitor, one buffer of %d samples (%.0f ms of sound at 22050/s), CPU time:\n", N,
        N * 1000.0 / 22050.0);
    if (t.count("BM_Transform") && t.count("BM_PerBuffer"))
        std::printf("  transform %.1f us; transform + levels + smoothing %.1f us\n", t["BM_Transform"],
            t["BM_PerBuffer"]);
#ifdef KESTREL_HAVE_FFTW
    if (t.count("BM_FftwTransform") && t.count("BM_Transform") && t.count("BM_PerBuffer")) {
        std::printf("  FFTW transform (measured plan) %.1f us\n", t["BM_FftwTransform"]);
        std::printf("  ratio transform / FFTW %.2f; whole per-buffer work / FFTW %.2f\n",
            t["BM_Transform"] / t["BM_FftwTransform"], t["BM_PerBuffer"] / t["BM_FftwTransform"]);
    }
    std::printf("  relative difference to FFTW (short pi) %.2g\n", relativeDifference());
#else
    std::printf("  FFTW not found: no reference\n");
#endif
    for (const char* name : { "BM_DrawFrame/400/300", "BM_DrawFrame/1200/1200" })
        if (t.count(name))
            std::printf("  drawing one frame %s px: %.1f us\n", name + 13, t[name]);
    return 0;
}
