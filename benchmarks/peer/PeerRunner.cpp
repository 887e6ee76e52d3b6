// SPDX-License-Identifier: BSD-3-Clause
#include "peer/PeerRunner.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>

namespace peer {

namespace {

double timeMs(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// At least 5 times, going on until 0.5 s are spent, at most 21 times; the median of the times.
class Samples {
public:
  bool wantsMore() const { return m_times.size() < 5 || (m_total < 500.0 && m_times.size() < 21); }
  void add(double ms) {
    m_times.push_back(ms);
    m_total += ms;
  }
  double median() const {
    std::vector<double> sorted = m_times;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
  }

private:
  std::vector<double> m_times;
  double m_total = 0.0;
};

/// Peak resident memory of `run` beyond what was resident before, in MiB (Linux: VmHWM after its reset).
double peakMiB(const std::function<void()>& run) {
  const auto read = [](const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
      if (word != key) continue;
      double kib = 0.0;
      status >> kib;
      return kib / 1024.0;
    }
    return 0.0;
  };
  std::ofstream("/proc/self/clear_refs") << "5";
  const double before = read("VmRSS:");
  run();
  return read("VmHWM:") - before;
}

} // namespace

bool runCase(const Case& testCase, int numThreads) {
  const std::unique_ptr<Job> job = testCase.make();
  Samples first;
  Samples next;
  Samples virtualFirst;
  Samples theirs;

  const double peerPeak = peakMiB([&] { job->runPeer(); });
  const double ourPeak = testCase.hasFirst ? peakMiB([&] { job->runFirst(Access::ARRAYS); }) : 0.0;
  // In turn, so that a disturbance of the machine meets both sides.
  while (theirs.wantsMore() || (testCase.hasFirst && first.wantsMore())) {
    if (testCase.hasFirst) first.add(timeMs([&] { job->runFirst(Access::ARRAYS); }));
    theirs.add(timeMs([&] { job->runPeer(); }));
  }
  int turn = 0;
  job->runNext(turn++);
  while (next.wantsMore())
    next.add(timeMs([&] { job->runNext(turn++); }));
  const double ours = job->measureOurs();
  const double peers = job->measurePeer();
  const bool ok = std::abs(ours - peers) <= 1e-3 * std::abs(peers);
  if (testCase.hasFirst)
    while (virtualFirst.wantsMore())
      virtualFirst.add(timeMs([&] { job->runFirst(Access::VIRTUAL); }));

  const double vtkMs = theirs.median();
  const double oursMs = testCase.hasFirst ? first.median() : next.median();
  std::printf("case=%s threads=%d ours_ms=%.2f vtk_ms=%.2f ratio=%.2f check=%s", testCase.name.c_str(), numThreads,
              oursMs, vtkMs, vtkMs / oursMs, ok ? "ok" : "FAILED");
  if (testCase.hasFirst)
    std::printf(" next_ms=%.2f next_ratio=%.2f virtual_ms=%.2f virtual_factor=%.2f ours_peak_mib=%.1f", next.median(),
                vtkMs / next.median(), virtualFirst.median(), virtualFirst.median() / oursMs, ourPeak);
  std::printf(" vtk_peak_mib=%.1f ours=%.7g vtk=%.7g\n", peerPeak, ours, peers);
  std::fflush(stdout);
  return ok;
}

} // namespace peer
