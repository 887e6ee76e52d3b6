// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/elements/MeshType.h>
#include <KerrinExtractor/KbVec3.h>
#include <KerrinExtractor/KiTypedDataSet.h>

#include <cstddef>

class KiBaseExtractor;
class KiMesh;
class NxRayPickAction;
class NxState;

/// A driver: what stands between a representation node, which knows nothing of mesh interfaces, and an extractor,
/// which knows one. A node holds the driver of the mesh type it has last seen.
class KdMeshRepresentation {
public:
  virtual ~KdMeshRepresentation() = default;
  /// The extractor, or null before the first extraction.
  virtual KiBaseExtractor* getExtractor() = 0;
  virtual MeshType getMeshType() const = 0;
  /// Extracts with what the state holds and shows the result.
  virtual void doExtract(NxState* state, const KiMesh* mesh) = 0;
  virtual void rayPick(NxRayPickAction* action) = 0;
  /// A set of the state by its index, mapped onto the output; null when there is none.
  virtual const KiTypedDataSet<double>* extractScalarSet(NxState* state, std::size_t index) = 0;
  /// A given set, mapped onto the output; null when its form doesn't suit the mesh.
  virtual const KiTypedDataSet<double>* extractScalarSet(const KiTypedDataSet<double>* set) = 0;
  /// Drops the extractor and with it the output.
  virtual void clear() = 0;
  /// Clears driver and display if that is possible now; false when the caller must wait for a later traversal.
  virtual bool prepareClear() = 0;
  /// The output and its type; null when nothing has been extracted.
  virtual const KiMesh* getExtractedMesh(MeshType& type) const = 0;
  virtual const KiTypedDataSet<KbVec3<double>>* extractVec3Set(NxState* state, std::size_t index) = 0;
};
