// SPDX-License-Identifier: BSD-3-Clause
#include "peer/Measurement.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <sstream>

namespace {

constexpr int LEAST_RUNS = 5;
constexpr int MOST_RUNS = 21;
constexpr double ENOUGH_MS = 500.0;

/// A memory figure of this process in MiB.
double statusOf(const char* key) {
  std::ifstream file("/proc/self/status");
  std::string line;
  while (std::getline(file, line))
    if (line.rfind(key, 0) == 0) return std::stod(line.substr(std::strlen(key) + 1)) / 1024.0;
  return -1.0;
}

} // namespace

std::vector<double> measure(const std::vector<Job>& jobs) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> least(jobs.size(), std::numeric_limits<double>::infinity());
  std::vector<double> spent(jobs.size(), 0.0);
  for (int round = 0; round < MOST_RUNS; ++round) {
    if (round >= LEAST_RUNS && std::all_of(spent.begin(), spent.end(), [](double ms) { return ms >= ENOUGH_MS; }))
      break;
    for (std::size_t j = 0; j < jobs.size(); ++j) {
      jobs[j].prepare();
      const Clock::time_point start = Clock::now();
      jobs[j].run();
      const double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
      least[j] = std::min(least[j], ms);
      spent[j] += ms;
    }
  }
  return least;
}

double peakGrowth(const std::function<void()>& run) {
  std::ofstream("/proc/self/clear_refs") << "5"; // resets the peak
  const double before = statusOf("VmRSS:");
  run();
  const double peak = statusOf("VmHWM:");
  return before < 0.0 || peak < 0.0 ? -1.0 : peak - before;
}

double areaOf(const float* vertices, const int* indices, std::size_t numIndices) {
  double area = 0.0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < numIndices; ++i) {
    if (indices[i] < 0) {
      first = i + 1;
      continue;
    }
    if (i < first + 1 || indices[i + 1] < 0) continue;
    const float* corners[3] = {vertices + 3 * indices[first], vertices + 3 * indices[i], vertices + 3 * indices[i + 1]};
    double a[3];
    double b[3];
    for (int c = 0; c < 3; ++c) {
      a[c] = static_cast<double>(corners[1][c]) - static_cast<double>(corners[0][c]);
      b[c] = static_cast<double>(corners[2][c]) - static_cast<double>(corners[0][c]);
    }
    const double n[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    area += 0.5 * std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
  }
  return area;
}
