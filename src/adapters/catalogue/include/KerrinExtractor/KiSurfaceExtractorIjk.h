// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterIjk.h>
#include <KerrinExtractor/KiDataSetIjk.h>

/// Shape of an extractor that yields a surface from a structured mesh (cells addressed in the form Ijk). See
/// `KiSurfaceExtractorI` for the operations.
template <class... P>
class KiSurfaceExtractorIjk : public virtual KiBaseExtractor {
public:
  virtual const KeXSurfaceMeshUnstructured& extract(P... parameters, const KiCellFilterIjk* filter) = 0;
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetIjk<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetIjk<KbVec3<double>>& set) = 0;
  virtual const KeXSurfaceMeshUnstructured& getExtract() const = 0;
};
