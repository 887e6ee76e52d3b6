// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KeXDataSetI.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiBaseExtractor.h>
#include <KerrinExtractor/KiCellFilterIj.h>
#include <KerrinExtractor/KiDataSetIj.h>

/// Shape of an extractor that yields lines from a mesh whose cells are addressed in the form Ij. See
/// `KiSurfaceExtractorI` for the operations.
template <class... P>
class KiLineExtractorIj : public virtual KiBaseExtractor {
public:
  virtual const KeXLineMeshUnstructured& extract(P... parameters, const KiCellFilterIj* filter) = 0;
  virtual const KeXDataSetI<double>* extractScalarSet(const KiDataSetIj<double>& set) = 0;
  virtual const KeXDataSetI<KbVec3<double>>* extractVec3Set(const KiDataSetIj<KbVec3<double>>& set) = 0;
  virtual const KeXLineMeshUnstructured& getExtract() const = 0;
};
