#pragma once

#include <QString>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace rk31::bench {

// The summary figures of a set of samples.
struct Summary {
    double mean = 0;
    double median = 0;
    double p95 = 0;
    double min = 0;
    double max = 0;
};

inline Summary Summarize(std::vector<double> samples) {
    Summary s;
    if (samples.empty()) {
        return s;
    }
    std::sort(samples.begin(), samples.end());
    const auto n = samples.size();
    double sum = 0;
    for (double v : samples) {
        sum += v;
    }
    s.mean = sum / static_cast<double>(n);
    s.median = n % 2 == 1 ? samples[n / 2] : (samples[n / 2 - 1] + samples[n / 2]) / 2;
    // Nearest rank: the smallest sample that at least 95 % of the samples do not exceed.
    const auto rank = static_cast<std::size_t>(std::ceil(0.95 * static_cast<double>(n)));
    s.p95 = samples[std::clamp<std::size_t>(rank, 1, n) - 1];
    s.min = samples.front();
    s.max = samples.back();
    return s;
}

// One line of the report: the figure, what it is compared with, and whether the target holds.
inline void PrintFigure(const QString& figure, const QString& against, bool met) {
    std::printf("%s (%s) %s\n", qPrintable(figure), qPrintable(against), met ? "met" : "MISSED");
    std::fflush(stdout);
}

// Further detail under a figure.
inline void PrintDetail(const QString& text) {
    std::printf("    %s\n", qPrintable(text));
    std::fflush(stdout);
}

inline QString Fixed(double value, int decimals) {
    return QString::number(value, 'f', decimals);
}

}  // namespace rk31::bench
