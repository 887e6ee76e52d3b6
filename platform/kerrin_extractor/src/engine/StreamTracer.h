// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "StreamLine.h"
#include "ValueView.h"
#include "VolumeLocator.h"

namespace kx {

/// The limits of a streamline; 0 means none.
struct StreamParameters {
  double maxLifeTime = 0.0;
  double maxLength = 0.0;
  double minSpeed = 0.0;
  double stepLengthFactor = 0.3;
  std::size_t maxStepNumber = 0;
  bool isBackward = false;
  friend bool operator==(const StreamParameters&, const StreamParameters&) = default;
};

/// Integrates the path from a point through a vector field by the embedded Runge-Kutta pair of orders 5 and 4 of
/// Dormand and Prince (1980, A family of embedded Runge-Kutta formulae).
///
/// No step is longer than `stepLengthFactor` times the way along the flow through the box of the cell that it begins
/// in; within that, steps keep the estimated error below 1e-6 of the mesh's largest extent. Where a step would leave
/// the mesh (or the live, accepted cells, or meets a vector with NaN) it is halved, and at last the way to the border
/// is found by bisection, so that the last point lies on it. Vectors given per cell are constant in each cell. A line
/// ends too where the flow comes to rest.
class StreamTracer {
public:
  StreamTracer(const VolumeLocator& locator, const SetView<KbVec3<double>>& vectors, bool isPerNode,
               const StreamParameters& parameters);

  /// Collects the points of the path in `line`: none when the start is in no cell.
  void trace(const KbVec3<double>& start, StreamLine& line) const;

private:
  struct State;
  struct Step;

  bool sample(const KbVec3<double>& point, State& state, KbVec3<double>& velocity) const;
  bool tryStep(State& state, double duration, Step& step) const;
  double longestStep(const State& state) const;
  void goToBorder(State& state, double duration, StreamLine& line) const;

  const VolumeLocator& m_locator;
  const SetView<KbVec3<double>>& m_vectors;
  bool m_isPerNode;
  StreamParameters m_parameters;
  std::size_t m_maxSteps;
  double m_extent;
};

} // namespace kx
