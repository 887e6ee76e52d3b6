// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoLineMeshDetail.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>

NX_DETAIL_SOURCE(KoLineMeshDetail, KoMeshRepresentationDetail)

KoLineMeshDetail::KoLineMeshDetail(const KeXLineMeshUnstructured* mesh, const ExtractedSets& sets)
    : KoMeshRepresentationDetail(mesh, sets)
    , m_extractedMesh(mesh) {}
