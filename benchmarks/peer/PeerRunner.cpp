// SPDX-License-Identifier: BSD-3-Clause
#include "peer/PeerRunner.h"

#include "peer/MemoryCount.h"

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <utility>

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

/// Resident memory beyond what was resident when this was made (Linux). Free blocks go back to the system first, or
/// they would be taken again without being counted.
class Resident {
public:
  Resident() {
    malloc_trim(0);
    m_before = read("VmRSS:");
  }
  double peakMiB(const std::function<void()>& run) const {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5"; // VmHWM begins anew
    run();
    return read("VmHWM:") - m_before;
  }

private:
  static double read(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
      if (word != key) continue;
      double kib = 0.0;
      status >> kib;
      return kib / 1024.0;
    }
    return 0.0;
  }
  double m_before = 0.0;
};

/// Turns after which a living extractor has seen all parameters of its job.
int numTurnsOf(const Job& job) { return std::max(2, job.numSteps()); }

/// What our side needs from the making of an extractor on: for its first extraction and for those that follow with
/// other parameters, a whole sweep of them where a job has one. At a job's begin our side has nothing but its input,
/// and the opponent has not run.
struct Memory {
  double peakMiB = 0.0;   ///< resident, with the output
  double firstBytes = 0;  ///< of all blocks beside input and output
  double followBytes = 0; ///< the greatest of the following extractions; the old and the new output share their room

  explicit Memory(Job& job) {
    const Resident resident;
    const std::size_t before = MemoryCount::current();
    std::size_t oldOutput = 0;
    for (int turn = 0; turn < numTurnsOf(job); ++turn) {
      MemoryCount::resetPeak();
      peakMiB = std::max(peakMiB, resident.peakMiB([&] { job.runNext(turn); }));
      const std::size_t peak = MemoryCount::peak() - before;
      const std::size_t after = MemoryCount::current();
      const std::shared_ptr<void> copy = job.copyOutput();
      const std::size_t output = MemoryCount::current() - after;
      double& greatest = turn == 0 ? firstBytes : followBytes;
      greatest = std::max(greatest, static_cast<double>(peak) - static_cast<double>(std::max(output, oldOutput)));
      oldOutput = output;
    }
  }
  double bytes() const { return std::max(firstBytes, followBytes); }
};

const char* mark(double value, double limit) { return value > limit ? " OVER" : ""; }

/// The line through the points of least squares in y.
double slopeOf(const std::vector<std::pair<double, double>>& points) {
  double x = 0.0;
  double y = 0.0;
  for (const auto& p : points) {
    x += p.first / static_cast<double>(points.size());
    y += p.second / static_cast<double>(points.size());
  }
  double xx = 0.0;
  double xy = 0.0;
  for (const auto& p : points) {
    xx += (p.first - x) * (p.first - x);
    xy += (p.first - x) * (p.second - y);
  }
  return xy / xx;
}

} // namespace

bool runCase(const Case& testCase, int numThreads) {
  const std::unique_ptr<Job> job = testCase.make();
  Samples first;
  Samples next;
  Samples virtualFirst;
  Samples virtualNext;
  Samples theirs;
  Samples theirNext;

  const Memory memory(*job);
  const double peerPeak = Resident().peakMiB([&] { job->runPeer(); });
  // In turn, so that a disturbance of the machine meets both sides.
  while (theirs.wantsMore() || (testCase.hasFirst && first.wantsMore())) {
    if (testCase.hasFirst) first.add(timeMs([&] { job->runFirst(Access::ARRAYS); }));
    theirs.add(timeMs([&] { job->runPeer(); }));
  }
  int turn = numTurnsOf(*job) - 1; // that the living extractor has been left at
  const auto runNext = [&] {
    for (int step = 0; step < job->numSteps(); ++step)
      job->runNext(++turn);
  };
  const double ours = job->measureOurs();
  const double peers = job->measurePeer();
  if (testCase.hasPeerNext) job->runPeerNext(turn);
  while (next.wantsMore() || (testCase.hasPeerNext && theirNext.wantsMore())) {
    next.add(timeMs(runNext));
    if (testCase.hasPeerNext) theirNext.add(timeMs([&] { job->runPeerNext(turn); }));
  }
  if (testCase.hasFirst)
    while (virtualFirst.wantsMore())
      virtualFirst.add(timeMs([&] { job->runFirst(Access::VIRTUAL); }));
  const bool hasVirtualNext = job->runNextVirtual(0);
  while (hasVirtualNext && virtualNext.wantsMore())
    virtualNext.add(timeMs([&] { job->runNextVirtual(++turn); }));

  const double vtkMs = theirs.median();
  const double oursMs = testCase.hasFirst ? first.median() : next.median();
  const bool ok = std::abs(ours - peers) <= 1e-3 * std::abs(peers);
  std::printf("case=%s threads=%d ours_ms=%.2f vtk_ms=%.2f ratio=%.2f check=%s", testCase.name.c_str(), numThreads,
              oursMs, vtkMs, vtkMs / oursMs, ok ? "ok" : "FAILED");
  if (testCase.hasFirst) {
    const double vtkNextMs = testCase.hasPeerNext ? theirNext.median() : vtkMs;
    std::printf(" next_ms=%.2f", next.median());
    if (testCase.hasPeerNext) std::printf(" vtk_next_ms=%.2f", vtkNextMs);
    std::printf(" next_ratio=%.2f virtual_ms=%.2f virtual_factor=%.2f", vtkNextMs / next.median(),
                virtualFirst.median(), virtualFirst.median() / oursMs);
    if (hasVirtualNext)
      std::printf(" virtual_next_ms=%.2f virtual_next_factor=%.2f", virtualNext.median(),
                  virtualNext.median() / next.median());
  }
  const auto numCells = static_cast<double>(job->numInputCells());
  const double bytesPerCell = memory.bytes() / numCells;
  std::printf(" ours_peak_mib=%.1f vtk_peak_mib=%.1f ours=%.7g vtk=%.7g", memory.peakMiB, peerPeak, ours, peers);
  std::printf(" bytes_per_cell=%.2f%s (first %.2f, next %.2f, limit %g)\n", bytesPerCell,
              mark(bytesPerCell, testCase.bytesPerCell), memory.firstBytes / numCells, memory.followBytes / numCells,
              testCase.bytesPerCell);
  std::fflush(stdout);
  return ok;
}

void runGrowth(const Growth& growth, int numThreads) {
  constexpr double LIMIT = 1.05;
  // Log times over log input cells, and over log output cells.
  std::vector<std::pair<double, double>> firsts;
  std::vector<std::pair<double, double>> nexts;
  std::vector<std::pair<double, double>> firstsByOutput;
  std::vector<std::pair<double, double>> nextsByOutput;
  for (const std::size_t size : growth.sizes) {
    const std::unique_ptr<Job> job = growth.make(size);
    const Memory memory(*job);
    Samples first;
    Samples next;
    while (first.wantsMore())
      first.add(timeMs([&] { job->runFirst(Access::ARRAYS); }));
    int turn = 0;
    while (next.wantsMore())
      next.add(timeMs([&] { job->runNext(turn++); }));
    std::printf("growth=%s threads=%d side=%zu input_cells=%zu output_cells=%zu first_ms=%.3f next_ms=%.3f"
                " bytes_per_cell=%.2f\n",
                growth.name.c_str(), numThreads, size, job->numInputCells(), job->numOutputCells(), first.median(),
                next.median(), memory.bytes() / static_cast<double>(job->numInputCells()));
    std::fflush(stdout);
    const double input = std::log(static_cast<double>(job->numInputCells()));
    const double output = std::log(static_cast<double>(job->numOutputCells()));
    firsts.emplace_back(input, std::log(first.median()));
    nexts.emplace_back(input, std::log(next.median()));
    firstsByOutput.emplace_back(output, firsts.back().second);
    nextsByOutput.emplace_back(output, nexts.back().second);
  }
  std::printf("growth=%s threads=%d slope_first=%.3f%s slope_next=%.3f%s limit=%.2f", growth.name.c_str(), numThreads,
              slopeOf(firsts), mark(slopeOf(firsts), LIMIT), slopeOf(nexts), mark(slopeOf(nexts), LIMIT), LIMIT);
  if (firstsByOutput.front().first < firstsByOutput.back().first)
    std::printf(" over_output_first=%.3f over_output_next=%.3f", slopeOf(firstsByOutput), slopeOf(nextsByOutput));
  std::printf("\n");
}

} // namespace peer
