// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiDataSetIj.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshCurvilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRectilinear.h>
#include <KerrinExtractor/KiSurfaceMeshRegular.h>

#include <vector>

/// Isolines of a `PER_NODE` scalar set on a surface mesh: one line mesh for each isovalue, in order.
class KERRIN_EXTRACTOR_API KiIsolineExtractIj : public virtual KiBaseExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiIsolineExtractIj* getNewInstance(const KiSurfaceMeshRegular& mesh, bool parallel);
  static KiIsolineExtractIj* getNewInstance(const KiSurfaceMeshRectilinear& mesh, bool parallel);
  static KiIsolineExtractIj* getNewInstance(const KiSurfaceMeshCurvilinear& mesh, bool parallel);

  virtual const std::vector<const KeXLineMeshUnstructured*>&
  extract(const std::vector<double>& isovalues, const KiDataSetIj<double>& isoSet, const KiCellFilterIj* filter) = 0;
  /// The line meshes of the last extraction.
  virtual const std::vector<const KeXLineMeshUnstructured*>& getExtract() const = 0;
  /// The set mapped onto each line mesh; null entries where size or binding doesn't suit.
  virtual std::vector<const KeXDataSetI<double>*> extractScalarSet(const KiDataSetIj<double>& set) = 0;
  virtual std::vector<const KeXDataSetI<KbVec3<double>>*> extractVec3Set(const KiDataSetIj<KbVec3<double>>& set) = 0;
};
