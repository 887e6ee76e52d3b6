// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiStreamlineExtractor.h>
#include <KerrinExtractor/KiVolumeMeshUnstructured.h>

/// Streamlines through a volume mesh.
class KERRIN_EXTRACTOR_API KiStreamlineExtractUnstructured : public KiStreamlineExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiStreamlineExtractUnstructured* getNewInstance(const KiVolumeMeshUnstructured& mesh, bool parallel);

  virtual const std::vector<const KeXLineMeshCurvilinear*>& extract(const KiDataSetI<KbVec3<double>>& vectors,
                                                                    const std::vector<KbVec3<double>>& startPoints,
                                                                    const KiCellFilterI* filter) = 0;
  /// The set mapped onto each line; null entries where size or binding doesn't suit.
  virtual std::vector<const KeXDataSetI<double>*> extractScalarSet(const KiDataSetI<double>& set) = 0;
  virtual std::vector<const KeXDataSetI<KbVec3<double>>*> extractVec3Set(const KiDataSetI<KbVec3<double>>& set) = 0;
};
