#include "audio/RadixTwoFft.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <vector>

namespace {
constexpr int N = 8192;

struct Errors {
    double maxRelative; // largest |difference| over the largest |X|
    double rmsRelative; // norm of the difference over the norm of X
};

// Direct DFT with the exact pi, X[k] = sum x[n] e^(-2 pi i k n / N), from an exact table.
Errors compareWithDirectDft(const std::vector<double>& xr, const std::vector<double>& xi,
    const std::vector<double>& fr, const std::vector<double>& fi)
{
    const int n = static_cast<int>(xr.size());
    std::vector<double> c(n), s(n);
    for (int m = 0; m < n; ++m) {
        c[m] = std::cos(2.0 * std::numbers::pi * m / n);
        s[m] = std::sin(2.0 * std::numbers::pi * m / n);
    }
    double maxDiff = 0, maxMag = 0, sumDiff = 0, sumMag = 0;
    for (int k = 0; k < n; ++k) {
        double re = 0, im = 0;
        for (int t = 0; t < n; ++t) {
            const int m = static_cast<int>((static_cast<long long>(k) * t) % n);
            re += xr[t] * c[m] + xi[t] * s[m];
            im += xi[t] * c[m] - xr[t] * s[m];
        }
        const double d = std::hypot(fr[k] - re, fi[k] - im);
        const double mag = std::hypot(re, im);
        maxDiff = std::max(maxDiff, d);
        maxMag = std::max(maxMag, mag);
        sumDiff += d * d;
        sumMag += mag * mag;
    }
    return { maxDiff / maxMag, std::sqrt(sumDiff / sumMag) };
}

// The transform as written out in the classic form: stage by stage, the twiddle advancing by
// its recurrence in the middle loop, butterflies stepping by the span in the inner loop.
void textbookTransform(std::vector<double>& re, std::vector<double>& im)
{
    const int n = static_cast<int>(re.size());
    int j = n / 2;
    for (int i = 1; i < n - 1; ++i) {
        if (i < j) {
            std::swap(re[i], re[j]);
            std::swap(im[i], im[j]);
        }
        int k = n / 2;
        while (k <= j) {
            j -= k;
            k /= 2;
        }
        j += k;
    }
    for (int le = 2; le <= n; le *= 2) {
        const int h = le / 2;
        double ur = 1, ui = 0;
        const double sr = std::cos(3.14159 / h), si = -std::sin(3.14159 / h);
        for (int jj = 0; jj < h; ++jj) {
            for (int i = jj; i < n; i += le) {
                const int ip = i + h;
                const double tr = re[ip] * ur - im[ip] * ui;
                const double ti = re[ip] * ui + im[ip] * ur;
                re[ip] = re[i] - tr;
                im[ip] = im[i] - ti;
                re[i] += tr;
                im[i] += ti;
            }
            const double t = ur;
            ur = t * sr - ui * si;
            ui = t * si + ui * sr;
        }
    }
}

void randomInput(std::vector<double>& re, std::vector<double>& im, unsigned seed)
{
    std::mt19937 gen(seed);
    std::uniform_real_distribution<double> d(-1.0, 1.0);
    for (size_t i = 0; i < re.size(); ++i) {
        re[i] = d(gen);
        im[i] = d(gen);
    }
}
} // namespace

TEST(RadixTwoFft, AgreesWithDirectDftWithinTheShortPiError)
{
    // The step angle pi'/h is short by (pi - 3.14159)/h, so twiddle j of a stage is off by at
    // most pi - 3.14159 = 2.65e-6 rad; summed over 13 stages that bounds the error near 3.5e-5.
    // Measured on this input: 1.2e-5 (largest) and 8.0e-6 (norm). With the full pi it would be
    // near 1e-15, so the lower bound proves the short pi is in use.
    std::vector<double> re(N), im(N);
    randomInput(re, im, 20240611);
    const std::vector<double> xr = re, xi = im;
    RadixTwoFft(N).transform(re.data(), im.data());
    const Errors e = compareWithDirectDft(xr, xi, re, im);
    std::printf("max relative error %.3g, rms relative error %.3g\n", e.maxRelative, e.rmsRelative);
    EXPECT_LT(e.maxRelative, 3.5e-5);
    EXPECT_LT(e.rmsRelative, 3.5e-5);
    EXPECT_GT(e.rmsRelative, 1e-7);
}

TEST(RadixTwoFft, RealInputAsTheMonitorFeedsIt)
{
    std::vector<double> re(N), im(N, 0.0);
    randomInput(re, im, 7);
    std::fill(im.begin(), im.end(), 0.0);
    const std::vector<double> xr = re, xi = im;
    RadixTwoFft(N).transform(re.data(), im.data());
    const Errors e = compareWithDirectDft(xr, xi, re, im);
    std::printf("max relative error %.3g, rms relative error %.3g\n", e.maxRelative, e.rmsRelative);
    EXPECT_LT(e.maxRelative, 3.5e-5);
    EXPECT_GT(e.rmsRelative, 1e-7);
}

TEST(RadixTwoFft, SameBitsAsTheClassicLoopOrder)
{
    for (int n : { 2, 4, 16, 1024, N }) {
        std::vector<double> re(n), im(n);
        randomInput(re, im, static_cast<unsigned>(n));
        std::vector<double> r2 = re, i2 = im;
        RadixTwoFft(n).transform(re.data(), im.data());
        textbookTransform(r2, i2);
        for (int k = 0; k < n; ++k) {
            ASSERT_EQ(re[k], r2[k]) << "n " << n << " k " << k;
            ASSERT_EQ(im[k], i2[k]) << "n " << n << " k " << k;
        }
    }
}

TEST(RadixTwoFft, UnscaledImpulseAndConstant)
{
    std::vector<double> re(N, 0.0), im(N, 0.0);
    re[0] = 1.0;
    RadixTwoFft(N).transform(re.data(), im.data());
    for (int k = 0; k < N; k += 97)
        EXPECT_NEAR(std::hypot(re[k], im[k]), 1.0, 1e-12) << k;

    std::fill(re.begin(), re.end(), 1.0);
    std::fill(im.begin(), im.end(), 0.0);
    RadixTwoFft(N).transform(re.data(), im.data());
    EXPECT_DOUBLE_EQ(re[0], N);
}

TEST(RadixTwoFft, RejectsLengthsThatAreNotPowersOfTwo)
{
    EXPECT_THROW(RadixTwoFft(1000), std::invalid_argument);
    EXPECT_THROW(RadixTwoFft(1), std::invalid_argument);
}
