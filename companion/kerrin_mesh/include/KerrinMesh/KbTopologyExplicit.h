// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KiLineTopologyExplicitI.h>
#include <KerrinExtractor/KiSurfaceTopologyExplicitI.h>
#include <KerrinExtractor/KiVolumeTopologyExplicitI.h>
#include <KerrinMesh/KbCells.h>
#include <KerrinMesh/KbTopologyState.h>

/// Explicit cells over the caller's arrays.
///
/// `getCell` may be called from any number of threads: each thread has one view of its own, which the next call on that
/// thread moves on.
template <class Interface, class Cell>
class KERRIN_MESH_API KbTopologyExplicit final : public Interface, public KbTopologyState {
public:
  explicit KbTopologyExplicit(const char* owner)
      : KbTopologyState(owner) {}

  std::size_t getTimeStamp() const override { return m_stamp; }
  bool hasDeadCells() const override { return m_anyDead; }
  std::size_t getNumCells() const override { return m_numCells; }
  bool isDead(std::size_t cell) const override { return isDeadFlat(cell); }
  const Cell* getCell(std::size_t cell) const override;
  std::size_t getEndNodeId() const override { return m_numNodes; }
  KiRawArray getRawArray(Role role) const override;

  /// Takes the cells, without dead ones, if sizes, shapes and all node indices (below `numNodes`) are right; otherwise
  /// there are no cells, and a message is posted.
  bool setCells(const KbCells& cells, std::size_t numNodes);
  bool setDead(const KbSpan<std::uint8_t>& dead);
  /// The caller has changed values in place: checks them again and takes a new stamp.
  void touch();
  /// No cells at all.
  void clear();

private:
  std::size_t beginOf(std::size_t cell) const;
  std::size_t endOf(std::size_t cell) const;
  int shapeOf(std::size_t cell) const { return m_cells.shape() < 0 ? m_cells.shapes()[cell] : m_cells.shape(); }
  std::string findFault(const KbCells& cells, std::size_t numNodes);
  std::string findFaultInCells() const;
  std::string findFaultInFaces(std::size_t cell) const;

  KbCells m_cells;
  std::size_t m_numCells = 0;
  std::size_t m_numNodes = 0;
  std::size_t m_nodesPerCell = 0; ///< 0 when there are offsets
  std::uint8_t m_shape = 0;       ///< the one shape, as offered to readers of the raw arrays
};

using KbLineTopologyExplicitI = KbTopologyExplicit<KiLineTopologyExplicitI, KiLineCell>;
using KbSurfaceTopologyExplicitI = KbTopologyExplicit<KiSurfaceTopologyExplicitI, KiSurfaceCell>;
using KbVolumeTopologyExplicitI = KbTopologyExplicit<KiVolumeTopologyExplicitI, KiVolumeCell>;

extern template class KbTopologyExplicit<KiLineTopologyExplicitI, KiLineCell>;
extern template class KbTopologyExplicit<KiSurfaceTopologyExplicitI, KiSurfaceCell>;
extern template class KbTopologyExplicit<KiVolumeTopologyExplicitI, KiVolumeCell>;
