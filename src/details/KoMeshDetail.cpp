// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoFaceDetailI.h>
#include <KerrinDataMapping/details/KoFaceDetailIj.h>
#include <KerrinDataMapping/details/KoFaceDetailIjk.h>
#include <KerrinDataMapping/details/KoLineDetailI.h>
#include <KerrinDataMapping/details/KoLineDetailIj.h>
#include <KerrinDataMapping/details/KoLineDetailIjk.h>
#include <KerrinDataMapping/details/KoMeshDetail.h>
#include <KerrinExtractor/KeXTopologyI.h>
#include <KerrinExtractor/KiMeshIj.h>
#include <KerrinExtractor/KiMeshIjk.h>
#include <KerrinExtractor/KxIToIj.h>
#include <KerrinExtractor/KxIToIjk.h>

#include <algorithm>

NX_DETAIL_SOURCE(KoMeshDetail, NxDetail)

namespace {

template <class FormI, class FormIj, class FormIjk, class Detail>
Detail* specialised(const Detail& detail, const KoMeshDetail& meshDetail) {
  switch (meshDetail.getMeshType()) {
  case VOLUME_UNSTRUCTURED:
  case SURFACE_UNSTRUCTURED:
  case LINE_UNSTRUCTURED:
  case LINE_REGULAR:
  case LINE_CURVILINEAR:
    return new FormI(detail, meshDetail);
  case VOLUME_HEXAHEDRON_IJK:
  case VOLUME_VERTEX_HEXAHEDRON_IJK:
  case VOLUME_REGULAR:
  case VOLUME_RECTILINEAR:
  case VOLUME_CURVILINEAR:
    return new FormIjk(detail, meshDetail);
  case SURFACE_REGULAR:
  case SURFACE_RECTILINEAR:
  case SURFACE_CURVILINEAR:
    return new FormIj(detail, meshDetail);
  default:
    return nullptr;
  }
}

} // namespace

void KoMeshDetail::setColorScalarSets(const ColorSets& sets) {
  m_colorSets = sets;
  if (std::all_of(sets.begin(), sets.end(), [](const auto* set) { return set == nullptr; })) m_colorSets.clear();
}

KoFaceDetail* KoMeshDetail::specilizeFaceDetail(const KoFaceDetail* detail) const {
  return specialised<KoFaceDetailI, KoFaceDetailIj, KoFaceDetailIjk>(*detail, *this);
}

KoLineDetail* KoMeshDetail::specilizeLineDetail(const KoLineDetail* detail) const {
  return specialised<KoLineDetailI, KoLineDetailIj, KoLineDetailIjk>(*detail, *this);
}

void KoMeshDetail::computeIj(std::size_t index, std::size_t& i, std::size_t& j) const {
  i = index;
  j = KeXTopologyI::UNDEFINED_INDEX;
  const auto* mesh = dynamic_cast<const KiMeshIj*>(m_mesh);
  if (!mesh || mesh->getTopology().getNumCellsI() == 0) return;
  KxIToIj(mesh->getTopology().getNumCellsI(), true).getIj(index, i, j);
}

void KoMeshDetail::computeIjk(std::size_t index, std::size_t& i, std::size_t& j, std::size_t& k) const {
  i = index;
  j = k = KeXTopologyI::UNDEFINED_INDEX;
  const auto* mesh = dynamic_cast<const KiMeshIjk*>(m_mesh);
  if (!mesh || mesh->getTopology().getNumCellsI() == 0 || mesh->getTopology().getNumCellsJ() == 0) return;
  KxIToIjk(mesh->getTopology().getNumCellsI(), mesh->getTopology().getNumCellsJ(), true).getIjk(index, i, j, k);
}
