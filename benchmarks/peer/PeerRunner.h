// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstddef>
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
  /// A changed parameter on a living extractor over the raw arrays, made at the first call; `turn` and `turn + 1` have
  /// different parameters.
  virtual void runNext(int turn) = 0;
  /// Calls of `runNext` that are timed as one: the values of a sweep.
  virtual int numSteps() const { return 1; }
  /// The same by the virtual operations alone; false where that is not looked at.
  virtual bool runNextVirtual(int /*turn*/) { return false; }
  /// `Modified()` and `Update()` of the opponent.
  virtual void runPeer() = 0;
  /// The opponent's next, for cases that say that it has one.
  virtual void runPeerNext(int /*turn*/) {}
  /// Area, length or sum of the last `runFirst` and of the last `runPeer`, in double from the output's coordinates; of
  /// a sweep the sum over all its values.
  virtual double measureOurs() const = 0;
  virtual double measurePeer() const = 0;
  /// Cells of the input, and of the output of the last `runFirst`.
  virtual std::size_t numInputCells() const = 0;
  virtual std::size_t numOutputCells() const = 0;
  /// A copy of all that the last `runNext` put out: what an extractor's memory is told from.
  virtual std::shared_ptr<void> copyOutput() const = 0;
};

struct Case {
  std::string name;
  bool hasFirst; ///< whether a fresh extractor is part of the comparison (a sweep has none)
  std::function<std::unique_ptr<Job>()> make;
  bool hasPeerNext = false; ///< whether the opponent keeps something for a changed parameter, as a search tree
  double bytesPerCell = 8;  ///< limit of memory beside input and output
};

/// The cases of each family, one row a case.
std::vector<Case> isosurfaceCases();
std::vector<Case> isolineCases();
std::vector<Case> pathsCases();
std::vector<Case> skinCases();
std::vector<Case> sliceCases();

/// Cells a side of the meshes of growth tables, up to 64 million cells on every kind: unstructured hexahedra take 6 GiB
/// then, and twice as many would not fit into the memory of a usual machine. Tetrahedra, six a lattice cell, and
/// quadrangles come to the same numbers of cells.
inline const std::vector<std::size_t> cubeSizes{64, 96, 128, 192, 256, 400};
inline const std::vector<std::size_t> tetrahedraSizes{35, 53, 70, 106, 141, 220};
inline const std::vector<std::size_t> squareSizes{512, 941, 1448, 2660, 4096, 8000};

/// One kind of extraction on meshes of several sizes.
struct Growth {
  std::string name;
  std::vector<std::size_t> sizes; ///< cells a side
  std::function<std::unique_ptr<Job>(std::size_t size)> make;
};

std::vector<Growth> isolineGrowth();
std::vector<Growth> isosurfaceGrowth();
std::vector<Growth> pathsGrowth();
std::vector<Growth> skinGrowth();
std::vector<Growth> sliceGrowth();

/// Runs a case and prints its line; false when the two sides' measures differ by more than 1e-3. Numbers beyond their
/// limits have "OVER" behind them.
bool runCase(const Case& testCase, int numThreads);

/// Prints a line for each size and one for the slopes, ours alone: of log time over log input cells, which nothing that
/// reads its input once exceeds by more than caches cost, and of log time over log output cells. The second is for
/// sections: a first one reads the whole mesh, and so grows like its volume while its output grows like an area.
void runGrowth(const Growth& growth, int numThreads);

} // namespace peer
