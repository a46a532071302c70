#pragma once
// Helpers shared by the benchmarks that time whole program actions rather than Google Benchmark
// loops: the median wall time of repeated runs, and random test data.
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QString>

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

// A random 6-character locator in Europe's IL..LO fields.
inline QString randomGrid(QRandomGenerator& rng)
{
    QString g;
    g += QChar(u'I' + rng.bounded(4));
    g += QChar(u'L' + rng.bounded(4));
    g += QString::number(rng.bounded(10));
    g += QString::number(rng.bounded(10));
    g += QChar(u'A' + rng.bounded(24));
    g += QChar(u'A' + rng.bounded(24));
    return g;
}
