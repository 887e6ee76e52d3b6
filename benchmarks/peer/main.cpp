// SPDX-License-Identifier: BSD-3-Clause
// Runs the comparisons with VTK: kerrin_peer_benchmark [--threads N] [--growth] [--case NAME]...
// With --growth, our own times on meshes of several sizes instead.
// Each number of threads wants a process of its own; benchmarks/run starts one for 1 and one for 2 threads.
#include "peer/PeerRunner.h"

#include <oneapi/tbb/global_control.h>

#include <KerrinExtractor/KiKerrin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
  int numThreads = 2;
  bool isGrowth = false;
  std::vector<std::string> names;
  for (int a = 1; a < argc; ++a) {
    if (std::strcmp(argv[a], "--threads") == 0 && a + 1 < argc)
      numThreads = std::atoi(argv[++a]);
    else if (std::strcmp(argv[a], "--growth") == 0)
      isGrowth = true;
    else if (std::strcmp(argv[a], "--case") == 0 && a + 1 < argc)
      names.emplace_back(argv[++a]);
    else {
      std::fprintf(stderr, "usage: %s [--threads N] [--growth] [--case NAME]...\n", argv[0]);
      return 2;
    }
  }
  // Bounds our loops and those of VTK's TBB backend alike.
  const oneapi::tbb::global_control limit(oneapi::tbb::global_control::max_allowed_parallelism,
                                          static_cast<std::size_t>(std::max(1, numThreads)));
  KiKerrin::init();
  bool ok = true;
  std::size_t numRun = 0;
  const auto isWanted = [&names](const std::string& name) {
    return names.empty() || std::find(names.begin(), names.end(), name) != names.end();
  };
  const auto families = {peer::isosurfaceCases, peer::sliceCases, peer::isolineCases, peer::pathsCases,
                         peer::skinCases};
  for (const auto family : families) {
    for (const peer::Case& testCase : family()) {
      if (isGrowth || !isWanted(testCase.name)) continue;
      ok = peer::runCase(testCase, numThreads) && ok;
      ++numRun;
    }
  }
  for (const auto family :
       {peer::isosurfaceGrowth, peer::sliceGrowth, peer::isolineGrowth, peer::pathsGrowth, peer::skinGrowth}) {
    for (const peer::Growth& growth : family()) {
      if (!isGrowth || !isWanted(growth.name)) continue;
      peer::runGrowth(growth, numThreads);
      ++numRun;
    }
  }
  KiKerrin::finish();
  if (numRun == 0) std::fprintf(stderr, "no such case\n");
  return ok && numRun > 0 ? 0 : 1;
}
