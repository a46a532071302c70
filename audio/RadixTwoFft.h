#pragma once
// In-place complex radix-2 transform of the spectrum monitor: bit-reversal reordering, then
// log2(N) butterfly stages whose twiddle factor advances by the step (cos(pi'/h), -sin(pi'/h))
// with pi' = 3.14159. Unscaled. The twiddles are generated once, by the same recurrence the
// stages would run, so each butterfly sees exactly the factor of the textbook loop.
#include <vector>

class RadixTwoFft {
public:
    // deliberate: the twiddle step uses this short pi, not the full-precision value.
    static constexpr double ShortPi = 3.14159;

    // n must be a power of two, at least 2.
    explicit RadixTwoFft(int n);

    int size() const { return n_; }
    // Transforms re[0..n-1], im[0..n-1] in place.
    void transform(double* re, double* im) const;

    // The two halves of transform(): element i trades places with element bitReversed()[i];
    // butterflies() runs the stages on elements already in that order. A caller filling the
    // arrays can place each element directly where the reordering would put it.
    const std::vector<int>& bitReversed() const { return reversed_; }
    void butterflies(double* re, double* im) const;

private:
    int n_;
    std::vector<int> reversed_;
    std::vector<int> swapA_;
    std::vector<int> swapB_;
    // Twiddles of the stage with half-span h start at index h - 1.
    std::vector<double> twRe_;
    std::vector<double> twIm_;
};
