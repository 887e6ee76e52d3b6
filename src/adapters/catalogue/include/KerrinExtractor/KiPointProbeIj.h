// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>

#include <cstddef>
#include <vector>

/// Finds the cell that holds a point and evaluates data sets there: shape functions for `PER_NODE` sets, the value
/// of the cell for `PER_CELL` sets.
///
/// A point that is not farther from a cell than 1e-6 of the diagonal of the mesh's box lies on it; of several cells the
/// one with the smallest index is found.
class KERRIN_EXTRACTOR_API KiPointProbeIj : public virtual KiBaseExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiPointProbeIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel);
  static KiPointProbeIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel);
  static KiPointProbeIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel);

  /// Moves the probe; a dead or refused cell is not found.
  virtual void move(const KbVec3<double>& point, const KiCellFilterIj* filter) = 0;
  virtual bool isCellFound() const = 0;
  /// The cell at the point; all bits set after a move that found none.
  virtual void getCell(std::size_t& i, std::size_t& j) const = 0;
  /// Shape-function values at the point, one for each node of the cell; empty when none was found.
  virtual const std::vector<double>& getWeights() const = 0;
  /// The value at the point; 0 when no cell was found.
  virtual double getValue(const KiDataSetIj<double>& set) const = 0;
  virtual KbVec3<double> getValue(const KiDataSetIj<KbVec3<double>>& set) const = 0;

  /// Finds the cells of many points at once, divided among threads when made with `parallel`; the probe itself stays
  /// where it is. `cells` receives one flat index a point: i + nI j for cell (i, j) of nI x nJ; all bits set where
  /// there is no cell.
  virtual void findCells(const KbVec3<double>* points, std::size_t count, const KiCellFilterIj* filter,
                         std::size_t* cells) = 0;
  /// The same with the values of a set at the points, 0 where there is no cell; `cells` may be null.
  virtual void probe(const KbVec3<double>* points, std::size_t count, const KiCellFilterIj* filter,
                     const KiDataSetIj<double>& set, std::size_t* cells, double* values) = 0;
  virtual void probe(const KbVec3<double>* points, std::size_t count, const KiCellFilterIj* filter,
                     const KiDataSetIj<KbVec3<double>>& set, std::size_t* cells, KbVec3<double>* values) = 0;
};
