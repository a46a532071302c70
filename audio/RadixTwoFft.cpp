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

void RadixTwoFft::transform(double* re, double* im) const
{
    for (size_t s = 0; s < swapA_.size(); ++s) {
        std::swap(re[swapA_[s]], re[swapB_[s]]);
        std::swap(im[swapA_[s]], im[swapB_[s]]);
    }

    // Span 2: the only twiddle is exactly (1, 0), so the product is the element itself.
    for (int i = 0; i < n_; i += 2) {
        const double tr = re[i + 1];
        const double ti = im[i + 1];
        re[i + 1] = re[i] - tr;
        im[i + 1] = im[i] - ti;
        re[i] += tr;
        im[i] += ti;
    }

    // Blocks outermost so the inner loop runs over contiguous elements; butterflies of one
    // stage are independent, so the order does not change any result.
    for (int h = 2; h < n_; h <<= 1) {
        const double* __restrict wr = twRe_.data() + h - 1;
        const double* __restrict wi = twIm_.data() + h - 1;
        for (int b = 0; b < n_; b += 2 * h) {
            double* __restrict ar = re + b;
            double* __restrict ai = im + b;
            double* __restrict br = re + b + h;
            double* __restrict bi = im + b + h;
            for (int j = 0; j < h; ++j) {
                const double tr = br[j] * wr[j] - bi[j] * wi[j];
                const double ti = br[j] * wi[j] + bi[j] * wr[j];
                br[j] = ar[j] - tr;
                bi[j] = ai[j] - ti;
                ar[j] += tr;
                ai[j] += ti;
            }
        }
    }
}
