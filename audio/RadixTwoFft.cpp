#include "audio/RadixTwoFft.h"

#include <cmath>
#include <stdexcept>
#include <utility>

RadixTwoFft::RadixTwoFft(int n)
    : n_(n)
{
    if (n < 2 || (n & (n - 1)) != 0)
        throw std::invalid_argument("transform length must be a power of two");

    int bits = 0;
    while ((1 << bits) < n)
        ++bits;
    for (int i = 0; i < n; ++i) {
        int r = 0;
        for (int b = 0; b < bits; ++b)
            r |= ((i >> b) & 1) << (bits - 1 - b);
        reversed_.push_back(r);
        if (i < r) {
            swapA_.push_back(i);
            swapB_.push_back(r);
        }
    }

    twRe_.resize(n - 1);
    twIm_.resize(n - 1);
    for (int h = 1; h < n; h <<= 1) {
        const double sr = std::cos(ShortPi / h);
        const double si = -std::sin(ShortPi / h);
        double ur = 1.0;
        double ui = 0.0;
        for (int j = 0; j < h; ++j) {
            twRe_[h - 1 + j] = ur;
            twIm_[h - 1 + j] = ui;
            const double tr = ur;
            ur = tr * sr - ui * si;
            ui = tr * si + ui * sr;
        }
    }
}

namespace {
// One butterfly: (a, b) <- (a + w b, a - w b), the products written out as the stages do.
[[gnu::always_inline]] inline void butterfly(
    double& ar, double& ai, double& br, double& bi, double wr, double wi)
{
    const double tr = br * wr - bi * wi;
    const double ti = br * wi + bi * wr;
    br = ar - tr;
    bi = ai - ti;
    ar = ar + tr;
    ai = ai + ti;
}

// Butterflies of the stages with half-spans h and 2h on one block of 4h elements, each element
// loaded once. Separate restrict parameters let the compiler vectorise over j.
[[gnu::always_inline]] inline void stagePair(double* __restrict r0, double* __restrict r1,
    double* __restrict r2, double* __restrict r3, double* __restrict i0, double* __restrict i1,
    double* __restrict i2, double* __restrict i3, const double* __restrict wr1, const double* __restrict wi1,
    const double* __restrict wr2, const double* __restrict wi2, const double* __restrict wr3,
    const double* __restrict wi3, int h)
{
    for (int j = 0; j < h; ++j) {
        double a0 = r0[j], a1 = r1[j], a2 = r2[j], a3 = r3[j];
        double c0 = i0[j], c1 = i1[j], c2 = i2[j], c3 = i3[j];
        butterfly(a0, c0, a1, c1, wr1[j], wi1[j]);
        butterfly(a2, c2, a3, c3, wr1[j], wi1[j]);
        butterfly(a0, c0, a2, c2, wr2[j], wi2[j]);
        butterfly(a1, c1, a3, c3, wr3[j], wi3[j]);
        r0[j] = a0, r1[j] = a1, r2[j] = a2, r3[j] = a3;
        i0[j] = c0, i1[j] = c1, i2[j] = c2, i3[j] = c3;
    }
}

[[gnu::always_inline]] inline void stageSingle(double* __restrict ar, double* __restrict ai,
    double* __restrict br, double* __restrict bi, const double* __restrict wr, const double* __restrict wi,
    int h)
{
    for (int j = 0; j < h; ++j)
        butterfly(ar[j], ai[j], br[j], bi[j], wr[j], wi[j]);
}
} // namespace

void RadixTwoFft::transform(double* re, double* im) const
{
    for (size_t s = 0; s < swapA_.size(); ++s) {
        std::swap(re[swapA_[s]], re[swapB_[s]]);
        std::swap(im[swapA_[s]], im[swapB_[s]]);
    }
    butterflies(re, im);
}

// A second copy for processors with AVX2 (four lanes) is picked at load time; both do the same
// arithmetic, without fused multiply-adds, so the results are identical.
__attribute__((target_clones("avx2", "default"))) void RadixTwoFft::butterflies(double* re, double* im) const
{
    // Two stages at a time (half-spans h and 2h) on four elements held in registers: every
    // element meets the same butterflies with the same twiddles in the same order as stage by
    // stage, so the results are bit for bit those of the plain loop, with half the passes.
    // Half-spans 1 and 2 first: their twiddles are (1, 0), (1, 0) and one other, and a product
    // with (1, 0) is the element itself.
    int h = 1;
    if (n_ >= 4) {
        const double w2r = twRe_[2];
        const double w2i = twIm_[2];
        for (int b = 0; b < n_; b += 4) {
            double r0 = re[b], r1 = re[b + 1], r2 = re[b + 2], r3 = re[b + 3];
            double i0 = im[b], i1 = im[b + 1], i2 = im[b + 2], i3 = im[b + 3];
            butterfly(r0, i0, r1, i1, 1.0, 0.0);
            butterfly(r2, i2, r3, i3, 1.0, 0.0);
            butterfly(r0, i0, r2, i2, 1.0, 0.0);
            butterfly(r1, i1, r3, i3, w2r, w2i);
            re[b] = r0, re[b + 1] = r1, re[b + 2] = r2, re[b + 3] = r3;
            im[b] = i0, im[b + 1] = i1, im[b + 2] = i2, im[b + 3] = i3;
        }
        h = 4;
    }
    for (; 4 * h <= n_; h *= 4) {
        const double* wr = twRe_.data();
        const double* wi = twIm_.data();
        for (int b = 0; b < n_; b += 4 * h)
            stagePair(re + b, re + b + h, re + b + 2 * h, re + b + 3 * h, im + b, im + b + h, im + b + 2 * h,
                im + b + 3 * h, wr + h - 1, wi + h - 1, wr + 2 * h - 1, wi + 2 * h - 1, wr + 3 * h - 1,
                wi + 3 * h - 1, h);
    }
    // An odd number of stages leaves the last one single.
    for (; h < n_; h *= 2) {
        for (int b = 0; b < n_; b += 2 * h)
            stageSingle(
                re + b, im + b, re + b + h, im + b + h, twRe_.data() + h - 1, twIm_.data() + h - 1, h);
    }
}
