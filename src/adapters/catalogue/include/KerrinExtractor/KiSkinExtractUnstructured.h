// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceExtractorI.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// The faces that belong to exactly one live, accepted cell of the cell ranges. Where neighbours do not match (a
/// fault) both faces stay.
class KERRIN_EXTRACTOR_API KiSkinExtractUnstructured : public KiSurfaceExtractorI<> {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh and the tessellator must outlive it. A null tessellator
  /// takes non-linear cells as linear.
  static KiSkinExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel,
                                                   KiTessellator* tessellator);

  /// Adds the cells in [min, max) (per index) to the ranges; `size_t(-1)` leaves that end open. The skin is that of the
  /// union of all ranges; with no range at all, that of the whole mesh.
  virtual void addCellRange(std::size_t min, std::size_t max) = 0;
  virtual void clearCellRanges() = 0;
  /// The sides of the faces as lines, and their nodes (those in the middles of sides too) as points, each with the cell
  /// of a face that has it. Null without a tessellator and for meshes without non-linear cells, whose polygons have no
  /// other edges and corners. Until the next call sets are mapped onto the result.
  virtual const KeXLineMeshUnstructured* extractLines(const KiCellFilterI* filter) = 0;
  virtual const KeXPointMeshCurvilinear* extractPoints(const KiCellFilterI* filter) = 0;
};
