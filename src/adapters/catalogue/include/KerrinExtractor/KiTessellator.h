// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiExport.h>

#include <cstddef>

/// How non-linear cells are subdivided into linear ones; without a tessellator they are taken as linear (corners only).
class KERRIN_EXTRACTOR_API KiTessellator {
public:
  virtual ~KiTessellator();
  /// Changes (by `KxTimeStamp::getTimeStamp()`) whenever the answer for some edge may change.
  virtual std::size_t getTimeStamp() const = 0;
  /// Whether a cell's edge must be split: `start` and `end` are its ends, `middle` the true position of its middle, all
  /// in mesh coordinates. The answer depends on these three points alone, so that neighbours agree on a shared edge.
  virtual bool isEdgeSplit(const KbVec3<double>& start, const KbVec3<double>& middle,
                           const KbVec3<double>& end) const = 0;
  /// How often an edge may be halved at most.
  virtual std::size_t getMaxDepth() const = 0;

  /// The ready-made one: splits an edge while its middle is farther from the chord than `maxError` (absolute, in mesh
  /// units; 0 or less stands for 1 % of the chord's length), at most `maxDepth` times. Owned by the caller.
  static KiTessellator* getNewTessellatorBasic(double maxError = 0.0, std::size_t maxDepth = 3);
};
