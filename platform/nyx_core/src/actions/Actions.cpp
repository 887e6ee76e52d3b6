// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxCallbackAction.h>
#include <Nyx/actions/NxDistributeAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/actions/NxGetMatrixAction.h>
#include <Nyx/actions/NxGetPrimitiveCountAction.h>
#include <Nyx/actions/NxHandleEventAction.h>
#include <Nyx/actions/NxPickAction.h>
#include <Nyx/actions/NxRayPickAction.h>
#include <Nyx/elements/NxViewportRegionElement.h>
#include <Nyx/nodes/NxNode.h>

// The actions that do little more than call their entry points and keep a result.

NX_ACTION_SOURCE(NxCallbackAction, NxAction)

NxCallbackAction::NxCallbackAction() = default;
NxCallbackAction::~NxCallbackAction() = default;

void NxCallbackAction::addPreCallback(NxType type, Callback* callback, void* data) {
  m_pre.push_back({type, callback, data});
}

void NxCallbackAction::addPostCallback(NxType type, Callback* callback, void* data) {
  m_post.push_back({type, callback, data});
}

NxCallbackAction::Response NxCallbackAction::call(const std::vector<Entry>& entries, const NxNode* node) {
  for (const Entry& entry : entries)
    if (node->isOfType(entry.type))
      if (const Response response = entry.callback(entry.data, this, node); response != CONTINUE) return response;
  return CONTINUE;
}

void NxCallbackAction::callNode(NxNode* node) {
  Response response = call(m_pre, node);
  if (response == CONTINUE) {
    node->callback(this);
    if (!hasTerminated()) response = call(m_post, node);
  }
  if (response == ABORT) terminate();
}

NX_ACTION_SOURCE(NxDistributeAction, NxAction)

NxDistributeAction::NxDistributeAction() = default;
NxDistributeAction::~NxDistributeAction() = default;

void NxDistributeAction::callNode(NxNode* node) { node->distribute(this); }

NX_ACTION_SOURCE(NxGetBoundingBoxAction, NxAction)

NxGetBoundingBoxAction::NxGetBoundingBoxAction(const NbViewportRegion& viewport)
    : m_viewport(viewport) {}
NxGetBoundingBoxAction::~NxGetBoundingBoxAction() = default;

NbVec3f NxGetBoundingBoxAction::getCenter() const {
  return m_numCenters > 0 ? m_centerSum / static_cast<float>(m_numCenters) : m_box.getCenter();
}

void NxGetBoundingBoxAction::extendBy(const NbBox3f& box, const NbMatrix& modelMatrix) {
  NbBox3f transformed = box;
  transformed.transform(modelMatrix);
  m_box.extendBy(transformed);
}

void NxGetBoundingBoxAction::setCenter(const NbVec3f& center, const NbMatrix& modelMatrix) {
  m_centerSum += modelMatrix.multVecMatrix(center);
  ++m_numCenters;
}

void NxGetBoundingBoxAction::beginTraversal(NxNode* root) {
  m_box.makeEmpty();
  m_centerSum = NbVec3f();
  m_numCenters = 0;
  NxViewportRegionElement::set(getState(), nullptr, m_viewport);
  traverse(root);
}

void NxGetBoundingBoxAction::callNode(NxNode* node) { node->getBoundingBox(this); }

NX_ACTION_SOURCE(NxGetMatrixAction, NxAction)

NxGetMatrixAction::NxGetMatrixAction() = default;
NxGetMatrixAction::~NxGetMatrixAction() = default;

void NxGetMatrixAction::beginTraversal(NxNode* root) {
  m_matrix.makeIdentity();
  traverse(root);
}

void NxGetMatrixAction::callNode(NxNode* node) { node->getMatrix(this); }

NX_ACTION_SOURCE(NxGetPrimitiveCountAction, NxAction)

NxGetPrimitiveCountAction::NxGetPrimitiveCountAction() = default;
NxGetPrimitiveCountAction::~NxGetPrimitiveCountAction() = default;

void NxGetPrimitiveCountAction::beginTraversal(NxNode* root) {
  m_triangles = m_lines = m_points = 0;
  traverse(root);
}

void NxGetPrimitiveCountAction::callNode(NxNode* node) { node->getPrimitiveCount(this); }

NX_ACTION_SOURCE(NxHandleEventAction, NxAction)

NxHandleEventAction::NxHandleEventAction() = default;
NxHandleEventAction::~NxHandleEventAction() = default;

void NxHandleEventAction::setHandled() {
  m_isHandled = true;
  terminate();
}

void NxHandleEventAction::beginTraversal(NxNode* root) {
  m_isHandled = false;
  traverse(root);
}

void NxHandleEventAction::callNode(NxNode* node) { node->handleEvent(this); }

NX_ACTION_SOURCE(NxPickAction, NxAction)

NxPickAction::NxPickAction(const NbViewportRegion& viewport)
    : m_viewport(viewport) {}
NxPickAction::~NxPickAction() = default;

void NxPickAction::beginTraversal(NxNode* root) {
  NxViewportRegionElement::set(getState(), nullptr, m_viewport);
  traverse(root);
}

void NxPickAction::callNode(NxNode* node) { node->pick(this); }

NX_ACTION_SOURCE(NxRayPickAction, NxPickAction)

NxRayPickAction::NxRayPickAction(const NbViewportRegion& viewport)
    : NxPickAction(viewport) {}
NxRayPickAction::~NxRayPickAction() = default;

NxPickedPoint* NxRayPickAction::getUnsortedPickedPoint(int index) const {
  return index >= 0 && index < getNumPickedPoints() ? m_points[static_cast<size_t>(index)].get() : nullptr;
}

NxPickedPoint* NxRayPickAction::addIntersection(const NbVec3f& point) {
  m_points.push_back(std::make_unique<NxPickedPoint>(getCurPath(), point));
  return m_points.back().get();
}

void NxRayPickAction::beginTraversal(NxNode* root) {
  m_points.clear();
  NxPickAction::beginTraversal(root);
}

void NxRayPickAction::callNode(NxNode* node) { node->rayPick(this); }
