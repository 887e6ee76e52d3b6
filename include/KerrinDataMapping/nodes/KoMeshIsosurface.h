// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <KerrinDataMapping/nodes/KoMeshSurfaceRepresentation.h>
#include <Nyx/fields/NxSFFloat.h>

class KiIsosurfExtractHexahedronIjk;
class KiIsosurfExtractIjk;
class KiIsosurfExtractUnstructured;

/// The surface on which one scalar set of a volume mesh has one value.
///
///     auto* surface = new KoMeshIsosurface;
///     surface->isovalue = 0.5f;
///     separator->addChild(surface); // below KoMesh and a scalar set
///
/// Another kind of mesh, or a set that is missing or of the wrong form, posts a warning and shows nothing.
class KERRIN_DATAMAPPING_API KoMeshIsosurface : public KoMeshSurfaceRepresentation {
  NX_NODE_HEADER(KoMeshIsosurface);

public:
  KoMeshIsosurface();
  KoMeshIsosurface(const KoMeshIsosurface& other);
  KoMeshIsosurface& operator=(const KoMeshIsosurface& other);

  NxSFFloat isovalue;       ///< 0
  NxSFInt32 isoScalarSetId; ///< index of the set that is cut, among the scalar sets above; 0

  /// The extractor, if the mesh is of its kind and something has been extracted; else null.
  const KiIsosurfExtractUnstructured* getUnstructuredExtractor() const;
  const KiIsosurfExtractHexahedronIjk* getHexahedronIjkExtractor() const;
  const KiIsosurfExtractIjk* getIjkExtractor() const;
  /// Older names of the last two.
  const KiIsosurfExtractHexahedronIjk* getUnstructuredIjkExtractor() const { return getHexahedronIjkExtractor(); }
  const KiIsosurfExtractIjk* getRegularExtractor() const { return getIjkExtractor(); }

protected:
  ~KoMeshIsosurface() override;

  void doExtract(NxAction* action) override;
};
