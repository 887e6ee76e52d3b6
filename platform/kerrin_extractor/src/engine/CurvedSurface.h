// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "FaceTessellator.h"
#include "FlatMesh.h"

#include <optional>

namespace kx {

/// A surface mesh with its quadratic cells subdivided, as one of polygons.
class CurvedSurface {
public:
  static constexpr std::size_t NUM_PHASES = FaceTessellator::NUM_PHASES;

  /// The open cells of a mesh, with its filter.
  CurvedSurface(Run& run, const FlatMesh& mesh, const KiTessellator& tessellator, Faults& faults);
  CurvedSurface(const CurvedSurface&) = delete;
  CurvedSurface& operator=(const CurvedSurface&) = delete;

  const FlatMesh& mesh() const { return *m_mesh; }
  /// The cell of the input that a polygon is part of.
  std::size_t sourceOf(std::size_t polygon) const { return m_surface.inputCells[polygon]; }
  /// A point in a cell of the input, given as a weighted mean of nodes of the subdivision, by nodes of the input: by
  /// the shape functions of a quadratic cell.
  template <std::size_t N>
  void blendAt(std::size_t cell, const std::array<std::size_t, N>& nodes, const std::array<double, N>& weights,
               BlendList& points) const {
    CellForm form;
    if (!loadForm(cell, form)) {
      addLinear(nodes.data(), weights.data(), N, points);
      return;
    }
    KbVec3<double> position;
    for (std::size_t i = 0; i < N; ++i)
      if (weights[i] != 0.0) position += m_blends.positionIn(form, m_surface.edgeBegins[nodes[i]]) * weights[i];
    Blend blend;
    form.blendAt(position, blend);
    points.add(blend);
  }

private:
  bool loadForm(std::size_t cell, CellForm& form) const;
  void addLinear(const std::size_t* nodes, const double* weights, std::size_t count, BlendList& points) const;

  const FlatMesh& m_input;
  SurfaceData m_surface;
  NodeBlends m_blends;
  std::vector<std::int64_t> m_connectivity;
  std::vector<std::int64_t> m_offsets;
  std::vector<KbVec3<double>> m_nodes;
  std::optional<FlatMesh> m_mesh;
};

} // namespace kx
