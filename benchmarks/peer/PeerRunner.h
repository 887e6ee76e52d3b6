// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace peer {

/// How our side reads the mesh.
enum class Access {
  ARRAYS, ///< by the raw arrays of kerrin_mesh
  VIRTUAL ///< by the virtual operations alone, as from an application's own mesh class
};

/// One comparison, with its input made and both sides ready to run.
class Job {
public:
  virtual ~Job() = default;
  /// A fresh extractor and its first extraction.
  virtual void runFirst(Access access) = 0;
  /// A changed parameter on a living extractor over the raw arrays; odd and even `turn` have different parameters.
  virtual void runNext(int turn) = 0;
  /// `Modified()` and `Update()` of the opponent.
  virtual void runPeer() = 0;
  /// Area, length or sum of the last `runFirst` and of the last `runPeer`, in double from the output's coordinates.
  virtual double measureOurs() const = 0;
  virtual double measurePeer() const = 0;
};

struct Case {
  std::string name;
  bool hasFirst; ///< whether a fresh extractor is part of the comparison (a sweep has none)
  std::function<std::unique_ptr<Job>()> make;
};

/// The cases of each family, one row a case.
std::vector<Case> isosurfaceCases();
std::vector<Case> isolineCases();
std::vector<Case> pathsCases();
std::vector<Case> skinCases();

/// Runs a case and prints its line; false when the two sides' measures differ by more than 1e-3.
bool runCase(const Case& testCase, int numThreads);

} // namespace peer
