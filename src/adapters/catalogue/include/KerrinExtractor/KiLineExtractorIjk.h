// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetIjk.h>

/// Shape of an extractor that yields lines from a mesh whose cells are addressed in the form Ijk. See
/// `KiSurfaceExtractorI` for the operations.
template <class... P>
class KiLineExtractorIjk : public virtual KiBaseExtractor {
public:
  virtual const KeXLineMeshUnstructured& extract(P... parameters, const KiCellFilterIjk* filter) = 0;
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetIjk<KbVec3<double>>& set) = 0;
  virtual const KeXLineMeshUnstructured& getExtract() const = 0;
};
