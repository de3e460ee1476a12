#pragma once

// Timing for the benchmarks: every figure is the median of several runs.

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

inline double SecondsOf(const std::function<void()>& work) {
  const Clock::time_point start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double MillisecondsOf(const std::function<void()>& work) {
  return SecondsOf(work) * 1000.0;
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

}  // namespace bench
