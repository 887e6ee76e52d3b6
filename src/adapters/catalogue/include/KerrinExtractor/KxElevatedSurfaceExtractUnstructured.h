// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiSurfaceMeshUnstructured.h>

#include <memory>

/// A surface raised by the values of a scalar set: every node moves along its normal (the mean of the normals of its
/// open cells, weighted by their areas; for a plane surface that is the plane's normal) by factor times height.
/// Quadratic cells are taken by their corners.
class KERRIN_EXTRACTOR_API KxElevatedSurfaceExtractUnstructured : public virtual KiBaseExtractor {
public:
  /// The mesh must outlive the extractor. `version` must be 1.
  KxElevatedSurfaceExtractUnstructured(const KiSurfaceMeshUnstructured& mesh, bool parallel, int version = 1);
  ~KxElevatedSurfaceExtractUnstructured() override;

  /// Raises the surface. Heights per cell are averaged to the nodes first; a height that is not finite counts as 0, and
  /// so do all of them where `heights` is null or does not suit the mesh. The result belongs to the extractor and is
  /// rewritten by its next call. Throws `KiCancellationException` when the callback asks to stop.
  const KeXSurfaceMeshUnstructured& extract(double factor, const KiDataSetI<double>* heights,
                                            const KiCellFilterI* filter);
  /// The set mapped onto the last output; null when its size or binding doesn't suit the mesh.
  const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set);
  const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetI<KbVec3<double>>& set);
  const KeXSurfaceMeshUnstructured& getExtract() const;

private:
  class Implementation;
  std::unique_ptr<Implementation> m_implementation;
};
