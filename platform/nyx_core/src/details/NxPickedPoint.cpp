// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/details/NxPickedPoint.h>

#include <Nyx/base/NxDebugError.h>
#include <Nyx/details/NxDetail.h>

#include <algorithm>

NxPickedPoint::NxPickedPoint(NxPath* path, const NbVec3f& point)
    : m_path(path)
    , m_point(point) {}

NxPickedPoint::NxPickedPoint(const NxPickedPoint& other)
    : m_path(other.m_path)
    , m_point(other.m_point)
    , m_normal(other.m_normal) {
  for (const Entry& entry : other.m_details)
    m_details.push_back({entry.node, std::unique_ptr<NxDetail>(entry.detail->copy())});
}

NxPickedPoint::~NxPickedPoint() = default;

const NxDetail* NxPickedPoint::getDetail(const NxNode* node) const {
  if (!node) node = m_path->getFullPath()->getTail();
  for (const Entry& entry : m_details)
    if (entry.node == node) return entry.detail.get();
  return nullptr;
}

void NxPickedPoint::setDetail(NxDetail* detail, const NxNode* node) {
  std::unique_ptr<NxDetail> owned(detail);
  const NxFullPath* const path = m_path->getFullPath();
  bool isInPath = false;
  for (int i = 0; i < path->getLength(); ++i)
    isInPath = isInPath || path->getNode(i) == node;
  if (!isInPath) {
    NxDebugError::post("NxPickedPoint::setDetail", "The node %p is not in the path.", static_cast<const void*>(node));
    return;
  }
  m_details.erase(
      std::remove_if(m_details.begin(), m_details.end(), [node](const Entry& entry) { return entry.node == node; }),
      m_details.end());
  if (owned) m_details.push_back({node, std::move(owned)});
}
