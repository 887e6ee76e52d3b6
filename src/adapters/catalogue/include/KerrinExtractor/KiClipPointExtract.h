// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXPointMeshCurvilinear.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiLineMeshCurvilinear.h>
#include <KerrinExtractor/KiLineMeshRegular.h>
#include <KerrinExtractor/KiLineMeshUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

/// The points where a line mesh meets a plane (through normal / |normal| * distance). A plane through a node shows it
/// by the cells on the side that the normal points to.
class KERRIN_EXTRACTOR_API KiClipPointExtract : public virtual KiBaseExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it. A null tessellator takes non-linear
  /// cells as linear.
  static KiClipPointExtract* getNewInstance(const KiLineMeshUnstructured& mesh, bool parallel,
                                            KiTessellator* tessellator);
  static KiClipPointExtract* getNewInstance(const KiLineMeshRegular& mesh, bool parallel, KiTessellator* tessellator);
  static KiClipPointExtract* getNewInstance(const KiLineMeshCurvilinear& mesh, bool parallel,
                                            KiTessellator* tessellator);

  /// The points, of which the extractor keeps the ownership. Dead and refused cells (a null filter accepts all) have
  /// none. A normal without length, or numbers that are not finite, yield no points and a message.
  virtual const KeXPointMeshCurvilinear& extract(const KbVec3<double>& normal, double distance,
                                                 const KiCellFilterI* filter) = 0;
  /// A set of the line mesh at the points of the last extraction, interpolated or, if `PER_CELL`, of their input cells;
  /// null where its size or binding doesn't suit.
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetI<KbVec3<double>>& set) = 0;
  /// The points of the last extraction.
  virtual const KeXPointMeshCurvilinear& getExtract() const = 0;
};
