// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"
#include "Faults.h"
#include "Run.h"
#include "SurfaceMesh.h"
#include "VolumeLocator.h"

#include <string>

namespace kx {

/// A square grid in a plane. Its origin is the point of the plane nearest to the coordinate origin. Its first axis is
/// the coordinate axis that follows the greatest component of the normal (x after z), laid into the plane; the second
/// is the normal times the first. So the axes of the plane z = d are x and y, of x = d they are y and z, of y = d they
/// are z and x.
class PlaneGrid {
public:
  PlaneGrid(const KbVec3<double>& normal, double distance, double step);
  /// What is wrong with the parameters; empty when nothing is.
  const std::string& fault() const { return m_fault; }

  /// Nodes (i, j) with `begin[0] + i`, `begin[1] + j` steps from the origin.
  struct Range {
    std::array<double, 2> begin{};
    std::array<std::size_t, 2> counts{};
  };
  /// The nodes that may lie in a box; nothing, and the reason in `fault`, when they are too many to count.
  Range rangeIn(const Box& box, std::string& fault) const;
  KbVec3<double> node(const Range& range, double i, double j) const {
    return m_origin + m_axes[0] * ((range.begin[0] + i) * m_step) + m_axes[1] * ((range.begin[1] + j) * m_step);
  }

private:
  std::string m_fault;
  KbVec3<double> m_normal;
  KbVec3<double> m_origin;
  std::array<KbVec3<double>, 2> m_axes;
  double m_step;
};

/// The sources of vertices that lie anywhere in cells: any number of nodes each, with their weights.
struct NodeWeights {
  Array<std::size_t> begins; ///< where a vertex' entries begin, and the end of all
  IndexArray nodes;
  Array<double> weights;

  template <class Values>
  auto valueAt(const Values& values, std::size_t vertex) const {
    decltype(values(std::size_t(0))) sum(0.0);
    for (std::size_t e = begins[vertex]; e < begins[vertex + 1]; ++e)
      sum += values(nodes[e]) * weights[e];
    return sum;
  }
};

/// Samples a volume mesh on a grid in a plane: quadrangles whose four corners lie in live, accepted cells. A
/// quadrangle's input cell is the one at its centre, or the one at its first corner where the centre lies in none.
class PlaneSampler {
public:
  static constexpr std::size_t NUM_PHASES = 3; ///< beside those of the locator
  /// The locator is up to date and has its filter.
  static void sample(Run& run, const VolumeLocator& locator, const PlaneGrid& grid, SurfaceData& output,
                     NodeWeights& sources, Faults& faults);
};

} // namespace kx
