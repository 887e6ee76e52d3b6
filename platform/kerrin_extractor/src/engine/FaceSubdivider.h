// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "EdgeSplitter.h"

#include <functional>

namespace kx {

/// A face by its nodes: corners in order, and for a quadratic face the middle of each side, from the first corner on.
struct FaceNodes {
  std::size_t cell = 0;
  std::vector<std::size_t> corners;
  std::vector<std::size_t> middles; ///< empty for a linear face
  bool isReversed = false;          ///< the corners go round the wrong way
};

/// Faces that are read by their numbers.
struct FaceSource {
  /// Reads a face; false for one that is left out.
  using Reader = std::function<bool(std::size_t face, FaceNodes& nodes)>;

  std::size_t numFaces;
  std::function<Reader()> makeReader; ///< one for each thread
};

/// Collects faces as linear polygons over the nodes of a splitter. Linear faces get a corner for each point that a
/// quadratic neighbour has on a side; a quadratic face that needs no subdivision is one polygon; all others become
/// triangles.
class FaceSubdivider {
public:
  struct Polygon {
    std::uint32_t end; ///< of its corners
    std::uint32_t face;
    std::size_t cell;
  };

  /// `middles`: of the sides that linear faces share with quadratic ones.
  FaceSubdivider(const KiTessellator& tessellator, const PointView& points, const EdgeMiddles& middles)
      : m_splitter(tessellator, points)
      , m_middles(middles) {}

  void add(std::size_t number, const FaceNodes& face);
  /// Forgets what is needed to go on.
  void finish() { m_splitter.finish(); }

  const EdgeSplitter& splitter() const { return m_splitter; }
  const std::vector<std::uint32_t>& corners() const { return m_corners; } ///< of all polygons, as nodes of the splitter
  const std::vector<Polygon>& polygons() const { return m_polygons; }

private:
  void addLinear(const FaceNodes& face);
  void addQuadratic(std::size_t number, const FaceNodes& face);
  void endPolygon(std::size_t number, const FaceNodes& face);

  EdgeSplitter m_splitter;
  const EdgeMiddles& m_middles;
  CellForm m_form;
  std::vector<std::uint32_t> m_corners;
  std::vector<Polygon> m_polygons;
};

} // namespace kx
