// SPDX-License-Identifier: BSD-3-Clause
// Random meshes, sound and broken, through every family. Without arguments some hundred cases with fixed seeds; with
// `--count N` that many, with `--seconds N` as many as fit; with `--seed S` that one alone. Each case runs on its own
// seed, which is told with what was found.
#include "Case.h"

#include <KerrinExtractor/KiKerrin.h>
#include <KerrinExtractor/KiMessage.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void ignore(void*, const char*, const char*) {}

/// The number of faults found.
std::size_t runCase(std::uint64_t seed, bool isTold) {
  if (isTold) {
    std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
    std::fflush(stdout);
  }
  fuzz::Case c(seed);
  c.runVolumes();
  c.runSurfaces();
  c.runLines();
  for (const std::string& fault : c.faults)
    std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed), fault.c_str());
  return c.faults.size();
}

} // namespace

int main(int argc, char** argv) {
  std::uint64_t first = 1;
  std::uint64_t count = 300;
  double seconds = 0.0;
  bool isTold = false;
  for (int a = 1; a < argc; ++a) {
    const auto isOption = [&](const char* name) { return std::strcmp(argv[a], name) == 0 && a + 1 < argc; };
    if (isOption("--seconds")) {
      seconds = std::atof(argv[++a]);
      count = ~std::uint64_t{0};
    } else if (isOption("--seed")) {
      first = std::strtoull(argv[++a], nullptr, 10);
      count = 1;
      isTold = true;
    } else if (isOption("--from")) {
      first = std::strtoull(argv[++a], nullptr, 10);
    } else if (isOption("--count")) {
      count = std::strtoull(argv[++a], nullptr, 10);
    } else if (std::strcmp(argv[a], "--tell") == 0) {
      isTold = true;
    } else {
      std::printf("usage: %s [--seconds N | --count N] [--from SEED] [--tell] | --seed SEED\n", argv[0]);
      return 2;
    }
  }
  KiKerrin::init(0);
  KiMessage::setHandler(&ignore, nullptr);
  using Clock = std::chrono::steady_clock;
  const auto begin = Clock::now();
  const auto secondsSince = [](Clock::time_point t) { return std::chrono::duration<double>(Clock::now() - t).count(); };
  std::size_t numFaults = 0;
  std::uint64_t numCases = 0;
  double slowest = 0.0;
  std::uint64_t slowestSeed = 0;
  while (numCases < count && (seconds <= 0.0 || secondsSince(begin) < seconds) && numFaults < 50) {
    const auto start = Clock::now();
    numFaults += runCase(first + numCases, isTold);
    if (const double taken = secondsSince(start); taken > slowest) {
      slowest = taken;
      slowestSeed = first + numCases;
    }
    ++numCases;
  }
  KiMessage::setHandler(nullptr, nullptr);
  KiKerrin::finish();
  std::printf("%llu cases in %.1f s, the slowest (seed %llu) took %.2f s; %zu faults\n",
              static_cast<unsigned long long>(numCases), secondsSince(begin),
              static_cast<unsigned long long>(slowestSeed), slowest, numFaults);
  return numFaults == 0 ? 0 : 1;
}
