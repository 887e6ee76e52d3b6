// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetI.h>
#include <KerrinExtractor/KiDataSetIjk.h>
#include <KerrinExtractor/KiExport.h>
#include <KerrinExtractor/KiStreamlineExtractor.h>
#include <KerrinExtractor/KiVolumeMeshHexahedronIjk.h>

/// Streamlines through a volume mesh. `PER_NODE` sets have the I form, `PER_CELL` sets the Ijk form.
class KERRIN_EXTRACTOR_API KiStreamlineExtractHexahedronIjk : public KiStreamlineExtractor {
public:
  /// A new extractor on a mesh, owned by the caller; the mesh must outlive it.
  static KiStreamlineExtractHexahedronIjk* getNewInstance(const KiVolumeMeshHexahedronIjk& mesh, bool parallel);

  virtual const std::vector<const KeXLineMeshCurvilinear*>& extract(const KiDataSetI<KbVec3<double>>& vectors,
                                                                    const std::vector<KbVec3<double>>& startPoints,
                                                                    const KiCellFilterIjk* filter) = 0;
  /// The set mapped onto each line; null entries where size or binding doesn't suit.
  virtual std::vector<const KeXDataSetI<double>*> extractScalarSet(const KiDataSetI<double>& set) = 0;
  virtual std::vector<const KeXDataSetI<KbVec3<double>>*> extractVec3Set(const KiDataSetI<KbVec3<double>>& set) = 0;
  virtual const std::vector<const KeXLineMeshCurvilinear*>& extract(const KiDataSetIjk<KbVec3<double>>& vectors,
                                                                    const std::vector<KbVec3<double>>& startPoints,
                                                                    const KiCellFilterIjk* filter) = 0;
  /// The set mapped onto each line; null entries where size or binding doesn't suit.
  virtual std::vector<const KeXDataSetI<double>*> extractScalarSet(const KiDataSetIjk<double>& set) = 0;
  virtual std::vector<const KeXDataSetI<KbVec3<double>>*> extractVec3Set(const KiDataSetIjk<KbVec3<double>>& set) = 0;
};
