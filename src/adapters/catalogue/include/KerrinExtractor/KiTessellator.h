// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// How non-linear cells are subdivided into linear ones; without a tessellator they are taken as linear (corners only).
///
/// Cells are subdivided by halving their edges and the lines that a subdivision adds. Each answer depends on one edge
/// alone, so that neighbours agree and surfaces stay closed. Answers may be asked for by several threads at once.
class KERRIN_EXTRACTOR_API KiTessellator {
public:
  virtual ~KiTessellator();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever the answer for some edge may change.
  virtual std::size_t getTimeStamp() const = 0;
  /// Whether an edge must be halved: `start` and `end` are its ends, `middle` the true position of its middle, all in
  /// mesh coordinates. `level` tells how often it has been halved before: 0 for an edge or a diagonal of a cell.
  virtual bool isEdgeSplit(const KbVec3<double>& start, const KbVec3<double>& middle, const KbVec3<double>& end,
                           std::size_t level) const = 0;
  /// The same for the values at these places of the set that a surface is cut from. `spread`: the difference between
  /// the greatest and the least value in the cells at the edge. By default values split nothing.
  virtual bool isEdgeSplitByValue(double start, double middle, double end, double spread) const;
  /// How often an edge may be halved at most.
  virtual std::size_t getMaxDepth() const = 0;

  /// The ready-made one. It halves an edge, at most `maxDepth` times, while its middle is farther from the chord than
  /// `maxError` (in mesh units), or, where `maxError` is 0 or less, than `relativeError` times the length of the cell's
  /// edge before any halving; and while the value in its middle differs from the mean of the ends' by more than
  /// `relativeError` times the spread. Halving divides these errors by four. Owned by the caller.
  static KiTessellator* getNewTessellatorBasic(double maxError = 0.0, std::size_t maxDepth = 3,
                                               double relativeError = 0.01);
};
