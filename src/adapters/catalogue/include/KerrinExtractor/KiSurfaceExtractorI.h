// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterI.h>
#include <KerrinExtractor/KiDataSetI.h>

/// Shape of an extractor that yields a surface from a mesh whose cells have flat indices. `P` are the parameters of the
/// family, in front of the cell filter.
template <class... P>
class KiSurfaceExtractorI : public virtual KiBaseExtractor {
public:
  /// Extracts with these parameters; null as filter accepts all cells. The result belongs to the extractor and is
  /// rewritten by its next call. Throws `KiCancellationException` when the callback asks to stop.
  virtual const KeXSurfaceMeshUnstructured& extract(P... parameters, const KiCellFilterI* filter) = 0;
  /// The set mapped onto the last output; null when its size or binding doesn't suit the mesh. The result belongs to
  /// the extractor and is good until the next extraction that changes the output.
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetI<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetI<KbVec3<double>>& set) = 0;
  /// The output of the last `extract`; an empty mesh before.
  virtual const KeXSurfaceMeshUnstructured& getExtract() const = 0;
};
