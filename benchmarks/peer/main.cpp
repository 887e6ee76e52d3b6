// SPDX-License-Identifier: BSD-3-Clause
// Side-by-side measurements against VTK: kerrin_peer_benchmark [--threads N] [--case NAME] [--list]
//
// Both sides work on the same arrays, in turn, in one process whose threads oneTBB limits for both. Prints one line a
// case; the exit status is 1 when the areas of the two outputs differ by more than 0.1 %.
#include "peer/Measurement.h"

#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

constexpr Case CASES[] = {
    {"isosurface-regular-256", isosurfaceRegular},      {"isosurface-hexahedra-100", isosurfaceHexahedra},
    {"isosurface-tetrahedra-60", isosurfaceTetrahedra}, {"isosurface-curvilinear-128", isosurfaceCurvilinear},
    {"isosurface-sweep-hexahedra-100", sweepHexahedra},
};

void printTime(const char* key, double value) {
  if (value >= 0.0) std::printf(" %s=%.2f", key, value);
}

bool runCase(const Case& c, std::size_t threads) {
  const Result r = c.run();
  const bool isOk = r.ourCheck > 0.0 && std::abs(r.ourCheck - r.vtkCheck) <= 1e-3 * r.vtkCheck;
  std::printf("case=%s threads=%zu ours_ms=%.2f vtk_ms=%.2f ratio=%.2f check=%s", c.name, threads, r.ours, r.vtk,
              r.vtk / r.ours, isOk ? "ok" : "FAILED");
  printTime("next_ms", r.next);
  printTime("virtual_ms", r.virtualMesh);
  printTime("ours_peak_mib", r.ourPeak);
  printTime("vtk_peak_mib", r.vtkPeak);
  std::printf(" ours_area=%.8g vtk_area=%.8g\n", r.ourCheck, r.vtkCheck);
  std::fflush(stdout);
  return isOk;
}

} // namespace

int main(int argc, char** argv) {
  std::size_t threads = std::thread::hardware_concurrency();
  const char* only = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc)
      threads = static_cast<std::size_t>(std::max(1, std::atoi(argv[++i])));
    else if (std::strcmp(argv[i], "--case") == 0 && i + 1 < argc)
      only = argv[++i];
    else if (std::strcmp(argv[i], "--list") == 0) {
      for (const Case& c : CASES)
        std::printf("%s\n", c.name);
      return 0;
    } else {
      std::fprintf(stderr, "usage: %s [--threads N] [--case NAME] [--list]\n", argv[0]);
      return 2;
    }
  }
  const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, threads);
  setenv("VTK_SMP_BACKEND_IN_USE", "TBB", 1); // its header is not valid C++20
  bool isOk = true;
  bool isKnown = only == nullptr;
  for (const Case& c : CASES) {
    if (only && std::strcmp(only, c.name) != 0) continue;
    isKnown = true;
    isOk &= runCase(c, threads);
  }
  if (!isKnown) std::fprintf(stderr, "no case is called %s; --list names them\n", only);
  return isOk && isKnown ? 0 : 1;
}
