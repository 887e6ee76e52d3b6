// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBins.h"
#include "CellHit.h"
#include "Faults.h"
#include "FlatMesh.h"

#include <functional>
#include <optional>
#include <utility>

namespace kx {

/// Finds the cells of a surface mesh by position, through bins that are kept as long as the mesh's stamps are the same.
///
/// A point belongs to a cell when it is not farther from it than 1e-6 of the diagonal of the mesh's box; of several
/// cells, the one with the smallest index among those that are alive and accepted. Polygons use mean value coordinates.
class SurfaceLocator {
public:
  static constexpr double TOLERANCE = 1e-6;

  /// The mesh must outlive this object.
  template <class Mesh>
  explicit SurfaceLocator(const Mesh& mesh)
      : m_makeView([&mesh] { return FlatMesh(mesh); })
      , m_readStamps(
            [&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); }) {}

  /// As in `VolumeLocator`.
  Changes getChanges() const;
  std::size_t numPhases(const Changes& changes) const;
  void update(Run& run, const Changes& changes, Faults& faults);
  const FlatMesh& mesh() const { return *m_mesh; }
  template <class Filter>
  void setFilter(const Filter* filter) {
    m_mesh->setFilter(filter);
  }
  bool find(const KbVec3<double>& point, CellHit& hit) const;
  /// The numbers of many points in the order in which they are found fastest.
  std::vector<std::uint32_t> orderOf(const KbVec3<double>* points, std::uint32_t count) const;

private:
  bool findInCell(std::size_t cell, const KbVec3<double>& point, CellHit& hit) const;
  Box boxOf(std::size_t cell, Faults& faults) const;
  /// Whether a cell can be read.
  bool load(std::size_t cell, CellNodeList& nodes) const;

  std::function<FlatMesh()> m_makeView;
  std::function<std::pair<std::size_t, std::size_t>()> m_readStamps;
  std::optional<FlatMesh> m_mesh;
  std::pair<std::size_t, std::size_t> m_stamps;
  bool m_isReady = false;
  double m_tolerance = 0.0;
  CellBins m_bins;
};

} // namespace kx
