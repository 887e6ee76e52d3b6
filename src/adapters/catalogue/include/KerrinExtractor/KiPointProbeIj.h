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
};
