#pragma once
// The median wall time of repeated runs of an action, shared by the benchmarks that time whole
// program actions rather than Google Benchmark loops.
#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <vector>

inline double medianMs(int runs, const std::function<void()>& action)
{
    std::vector<double> t;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer timer;
        timer.start();
        action();
        t.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(t.begin(), t.end());
    return t[t.size() / 2];
}
