// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoSurfaceMeshDetail.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>

NX_DETAIL_SOURCE(KoSurfaceMeshDetail, KoMeshRepresentationDetail)

KoSurfaceMeshDetail::KoSurfaceMeshDetail(const KeXSurfaceMeshUnstructured* mesh, const ExtractedSets& sets)
    : KoMeshRepresentationDetail(mesh, sets)
    , m_extractedMesh(mesh) {}
