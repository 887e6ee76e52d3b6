// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiStreamlineExtractor.h>
#include <KerrinExtractor/KiVolumeMeshCurvilinear.h>
#include <KerrinExtractor/KiVolumeMeshRectilinear.h>
#include <KerrinExtractor/KiVolumeMeshRegular.h>

/// Streamlines through a volume mesh.
class KERRIN_EXTRACTOR_API KiStreamlineExtractIjk : public KiStreamlineExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiStreamlineExtractIjk* getNewInstance(const KiVolumeMeshRegular& mesh, bool parallel);
  static KiStreamlineExtractIjk* getNewInstance(const KiVolumeMeshRectilinear& mesh, bool parallel);
  static KiStreamlineExtractIjk* getNewInstance(const KiVolumeMeshCurvilinear& mesh, bool parallel);

  virtual const std::vector<const KeXLineMeshCurvilinear*>& extract(const KiDataSetIjk<KbVec3<double>>& vectors,
                                                                    const std::vector<KbVec3<double>>& startPoints,
                                                                    const KiCellFilterIjk* filter) = 0;
  /// The set mapped onto each line; null entries where size or binding doesn't suit.
  virtual std::vector<const KeXDataSetI<double>*> extractScalarSet(const KiDataSetIjk<double>& set) = 0;
  virtual std::vector<const KeXDataSetI<KbVec3<double>>*> extractVec3Set(const KiDataSetIjk<KbVec3<double>>& set) = 0;
};
