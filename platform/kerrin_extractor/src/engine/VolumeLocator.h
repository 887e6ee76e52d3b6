// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "CellBins.h"
#include "CellHit.h"
#include "Faults.h"
#include "MeshView.h"

#include <atomic>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace kx {

/// Finds the cells of a volume mesh by position: by arithmetic in regular and rectilinear meshes, through bins in all
/// others. Bins are kept as long as the mesh's stamps are the same.
///
/// A point on a face, an edge or a node that cells share is in the one with the smallest index among those that are
/// alive and accepted. Quadratic cells and polyhedra answer for themselves, by `KiVolumeCell::isPointInsideCell`.
class VolumeLocator {
public:
  /// The mesh must outlive this object.
  template <class Mesh>
  explicit VolumeLocator(const Mesh& mesh)
      : m_hasAxes(std::is_base_of_v<KiVolumeMeshRegular, Mesh> || std::is_base_of_v<KiVolumeMeshRectilinear, Mesh>)
      , m_makeView([&mesh] { return MeshView(mesh); })
      , m_readStamps(
            [&mesh] { return std::pair(mesh.getTopology().getTimeStamp(), mesh.getGeometry().getTimeStamp()); }) {}

  /// What has changed since the last `update`.
  Changes getChanges() const;
  /// Phases of an update with these changes.
  std::size_t numPhases(const Changes& changes) const;
  /// Reads the mesh again where it has changed; an exception leaves a locator that finds nothing until the next update.
  void update(Run& run, const Changes& changes, Faults& faults);

  /// The mesh as of the last update.
  const MeshView& mesh() const { return *m_mesh; }
  template <class Filter>
  void setFilter(const Filter* filter) {
    m_mesh->setFilter(filter);
  }

  /// Fills `hit` and answers whether there is a cell. Several threads may ask at once.
  bool find(const KbVec3<double>& point, CellHit& hit) const;
  /// The numbers of many points in the order in which they are found fastest.
  std::vector<std::uint32_t> orderOf(const KbVec3<double>* points, std::uint32_t count) const;
  /// The same for a point near that of `hit`, the last one found: its cell is tried first, and so may win over one with
  /// a smaller index.
  bool findNear(const KbVec3<double>& point, CellHit& hit) const;

  /// The nodes of a readable cell into `hit`, without weights.
  void loadNodes(std::size_t cell, CellHit& hit) const;
  /// A box around the corners or nodes of a readable cell.
  Box cellBox(std::size_t cell) const;
  /// A box around the mesh.
  const Box& reach() const { return m_reach; }

private:
  bool findOnAxes(const KbVec3<double>& point, CellHit& hit) const;
  bool findInCell(std::size_t cell, const KbVec3<double>& point, CellHit& hit) const;
  bool findInGeneralCell(std::size_t cell, const KbVec3<double>& point, CellHit& hit) const;
  /// Whether a cell is neither one of the four linear shapes nor unreadable.
  bool isGeneral(std::size_t cell) const;
  bool checkAxes(Faults& faults) const;
  void findBoxes(std::size_t begin, std::size_t end, Box* boxes, Faults& faults);
  Box generalBox(std::size_t cell, CellCode code, Faults& faults);

  bool m_hasAxes; ///< no bins are needed
  std::function<MeshView()> m_makeView;
  std::function<std::pair<std::size_t, std::size_t>()> m_readStamps;
  std::optional<MeshView> m_mesh;
  std::pair<std::size_t, std::size_t> m_stamps;
  bool m_isReady = false;
  const KiVolumeTopologyExplicitI* m_topology = nullptr; ///< of unstructured meshes, for cells that are not linear
  std::atomic<bool> m_hasGeneralCells{false};
  Box m_reach; ///< no cell goes beyond
  CellBins m_bins;
};

} // namespace kx
