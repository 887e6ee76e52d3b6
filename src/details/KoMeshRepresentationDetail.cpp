// SPDX-License-Identifier: BSD-3-Clause
#include <KerrinDataMapping/details/KoMeshRepresentationDetail.h>
#include <KerrinExtractor/KiMeshUnstructuredI.h>

#include <algorithm>

NX_DETAIL_SOURCE(KoMeshRepresentationDetail, NxDetail)

KoMeshRepresentationDetail::KoMeshRepresentationDetail(const KiMeshUnstructuredI* mesh, const ExtractedSets& sets)
    : m_mesh(mesh)
    , m_sets(sets) {
  if (std::all_of(sets.begin(), sets.end(), [](const auto* set) { return set == nullptr; })) m_sets.clear();
}

std::vector<double> KoMeshRepresentationDetail::computeValues(const KbVec3<double>& point,
                                                              std::size_t cellIndex) const {
  std::vector<double> values;
  if (!m_mesh || m_sets.empty()) return values;
  const KiCell* cell = m_mesh->getTopology().getCell(cellIndex);
  if (!cell) return values;
  std::vector<double> weights(cell->getNumNodes());
  bool hasWeights = false;
  for (const KeXDataSetI<double>* set : m_sets) {
    if (!set) continue;
    if (set->getBinding() != DataBinding::PER_NODE) {
      values.push_back(set->get(cellIndex));
      continue;
    }
    hasWeights = hasWeights || cell->isPointInsideCell(m_mesh->getGeometry(), point, weights);
    if (!hasWeights) continue;
    double value = 0.0;
    for (std::size_t node = 0; node < cell->getNumNodes(); ++node)
      value += weights[node] * set->get(cell->getNodeIndex(node));
    values.push_back(value);
  }
  return values;
}
