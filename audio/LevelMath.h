#pragma once
// Levels of a transform's bins in dB: 20 * ln(magnitude + 0.0000001) / ln(10); the small constant
// keeps silence finite at -140 dB.
namespace LevelMath {
// level[k] for k = 0..count-1 from re[k], im[k].
void levels(const double* re, const double* im, double* level, int count);
} // namespace LevelMath
