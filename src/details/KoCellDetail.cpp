// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoCellDetail.h>
#include <KerrinDataMapping/details/KoFaceDetailI.h>
#include <KerrinDataMapping/details/KoFaceDetailIj.h>
#include <KerrinDataMapping/details/KoFaceDetailIjk.h>
#include <KerrinDataMapping/details/KoLineDetailI.h>
#include <KerrinDataMapping/details/KoLineDetailIj.h>
#include <KerrinDataMapping/details/KoLineDetailIjk.h>
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KeXSurfaceMeshUnstructured.h>

#include <cassert>
#include <limits>

namespace {

constexpr std::size_t UNDEFINED_INDEX = KeXTopologyI::UNDEFINED_INDEX;

} // namespace

template <class ToolkitDetail, class RepresentationDetail>
KoCellDetail<ToolkitDetail, RepresentationDetail>::KoCellDetail(const ToolkitDetail* detail, int pickedIndex,
                                                                const RepresentationDetail* representationDetail,
                                                                const std::vector<std::size_t>* mapping)
    : ToolkitDetail(*detail)
    , m_extractedCellIndex(static_cast<std::size_t>(pickedIndex)) {
  const auto* mesh = representationDetail ? representationDetail->getExtractedMesh() : nullptr;
  if (!mesh) return;
  m_representationDetail = representationDetail;
  if (!mesh->getTopology().hasDeadCells()) return;
  assert(mapping != nullptr && mapping->size() <= mesh->getTopology().getNumCells());
  if (mapping && m_extractedCellIndex < mapping->size()) m_extractedCellIndex = (*mapping)[m_extractedCellIndex];
}

template <class ToolkitDetail, class RepresentationDetail>
std::vector<double> KoCellDetail<ToolkitDetail, RepresentationDetail>::getValues(const NbVec3f& point) const {
  if (!m_representationDetail) return {};
  return m_representationDetail->computeValues(KbVec3<double>(point[0], point[1], point[2]), m_extractedCellIndex);
}

template <class ToolkitDetail, class RepresentationDetail>
double KoCellDetail<ToolkitDetail, RepresentationDetail>::getValue(const NbVec3f& point) const {
  const std::vector<double> values = getValues(point);
  return values.empty() ? std::numeric_limits<double>::max() : values.front();
}

template <class ToolkitDetail, class RepresentationDetail>
void KoCellDetail<ToolkitDetail, RepresentationDetail>::getInputCell(std::size_t& i, std::size_t& j,
                                                                     std::size_t& k) const {
  i = m_extractedCellIndex;
  j = k = UNDEFINED_INDEX;
  if (!m_representationDetail) return;
  const auto& topology = m_representationDetail->getExtractedMesh()->getTopology();
  i = topology.getInputCellIndexI(m_extractedCellIndex);
  j = topology.getInputCellIndexJ(m_extractedCellIndex);
  k = topology.getInputCellIndexK(m_extractedCellIndex);
}

template <class Detail>
KoCellDetailI<Detail>::KoCellDetailI(const Detail& detail, const KoMeshDetail& meshDetail)
    : Detail(detail) {
  std::size_t j, k;
  this->getInputCell(m_index, j, k);
  this->setMeshDetail(meshDetail);
}

template <class Detail>
KoCellDetailIj<Detail>::KoCellDetailIj(const Detail& detail, const KoMeshDetail& meshDetail)
    : Detail(detail) {
  std::size_t k;
  this->getInputCell(m_i, m_j, k);
  if (m_j == UNDEFINED_INDEX) meshDetail.computeIj(m_i, m_i, m_j);
  this->setMeshDetail(meshDetail);
}

template <class Detail>
KoCellDetailIjk<Detail>::KoCellDetailIjk(const Detail& detail, const KoMeshDetail& meshDetail)
    : Detail(detail) {
  this->getInputCell(m_i, m_j, m_k);
  if (m_k == UNDEFINED_INDEX) meshDetail.computeIjk(m_i, m_i, m_j, m_k);
  this->setMeshDetail(meshDetail);
}

template class KoCellDetail<NxFaceDetail, KoSurfaceMeshDetail>;
template class KoCellDetail<NxLineDetail, KoLineMeshDetail>;
template class KoCellDetailI<KoFaceDetail>;
template class KoCellDetailIj<KoFaceDetail>;
template class KoCellDetailIjk<KoFaceDetail>;
template class KoCellDetailI<KoLineDetail>;
template class KoCellDetailIj<KoLineDetail>;
template class KoCellDetailIjk<KoLineDetail>;

KoFaceDetail::KoFaceDetail(const NxFaceDetail* detail, const KoSurfaceMeshDetail* representationDetail,
                           const std::vector<std::size_t>* facetMapping)
    : KoCellDetail(detail, detail->getFaceIndex(), representationDetail, facetMapping) {}

KoLineDetail::KoLineDetail(const NxLineDetail* detail, const KoLineMeshDetail* representationDetail,
                           const std::vector<std::size_t>* lineMapping)
    : KoCellDetail(detail, detail->getLineIndex(), representationDetail, lineMapping) {}

NX_DETAIL_SOURCE(KoFaceDetail, NxFaceDetail)
NX_DETAIL_SOURCE(KoFaceDetailI, KoFaceDetail)
NX_DETAIL_SOURCE(KoFaceDetailIj, KoFaceDetail)
NX_DETAIL_SOURCE(KoFaceDetailIjk, KoFaceDetail)
NX_DETAIL_SOURCE(KoLineDetail, NxLineDetail)
NX_DETAIL_SOURCE(KoLineDetailI, KoLineDetail)
NX_DETAIL_SOURCE(KoLineDetailIj, KoLineDetail)
NX_DETAIL_SOURCE(KoLineDetailIjk, KoLineDetail)
