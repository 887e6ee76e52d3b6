// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/elements/NxModelMatrixElement.h>
#include <Nyx/elements/NxViewElement.h>
#include <Nyx/elements/NxViewportRegionElement.h>
#include <Nyx/nodes/NxOrthographicCamera.h>
#include <Nyx/nodes/NxPerspectiveCamera.h>

#include <algorithm>
#include <cmath>

NX_NODE_ABSTRACT_SOURCE(NxCamera, NxPropertyNode)

NxCamera::NxCamera() {
  NX_NODE_CONSTRUCTOR(NxCamera);
  NX_NODE_ADD_FIELD(viewportMapping, (ADJUST_CAMERA));
  NX_NODE_ADD_FIELD(position, (0.f, 0.f, 1.f));
  NX_NODE_ADD_FIELD(orientation, (NbRotation()));
  NX_NODE_ADD_FIELD(aspectRatio, (1.f));
  NX_NODE_ADD_FIELD(nearDistance, (1.f));
  NX_NODE_ADD_FIELD(farDistance, (10.f));
  NX_NODE_ADD_FIELD(focalDistance, (5.f));
  NX_NODE_ADD_FIELD(autoClipping, (false));
  NX_NODE_DEFINE_ENUM_VALUE(ViewportMapping, ADJUST_CAMERA);
  NX_NODE_DEFINE_ENUM_VALUE(ViewportMapping, LEAVE_ALONE);
  NX_SET_SF_ENUM_TYPE(viewportMapping, ViewportMapping);
}
NxCamera::~NxCamera() = default;

float NxCamera::getEffectiveAspect(float viewportAspectRatio) const {
  return viewportMapping.getValue() == ADJUST_CAMERA ? viewportAspectRatio : aspectRatio.getValue();
}

NbViewVolume NxCamera::getViewVolume(float viewportAspectRatio, const NbBox3f& scene) const {
  float nearest = nearDistance.getValue();
  float farthest = farDistance.getValue();
  if (autoClipping.getValue() && !scene.isEmpty()) fitClipping(scene, nearest, farthest);
  NbViewVolume volume;
  shapeVolume(volume, getEffectiveAspect(viewportAspectRatio), nearest, farthest);
  volume.placeCamera(position.getValue(), orientation.getValue());
  return volume;
}

void NxCamera::fitClipping(const NbBox3f& scene, float& nearest, float& farthest) const {
  const NbVec3f direction = orientation.getValue().multVec(NbVec3f(0.f, 0.f, -1.f));
  const NbVec3f& low = scene.getMin();
  const NbVec3f& high = scene.getMax();
  nearest = INFINITY;
  farthest = -INFINITY;
  for (int i = 0; i < 8; ++i) {
    const NbVec3f corner((i & 1) != 0 ? high[0] : low[0], (i & 2) != 0 ? high[1] : low[1],
                         (i & 4) != 0 ? high[2] : low[2]);
    const float distance = direction.dot(corner - position.getValue());
    nearest = std::min(nearest, distance);
    farthest = std::max(farthest, distance);
  }
  // A little room, so that faces in the clipping planes themselves are seen, and some depth for a flat scene.
  const float room = 0.01f * std::max(farthest - nearest, 0.01f * std::max(std::abs(farthest), 1e-6f));
  nearest -= room;
  farthest += room;
}

void NxCamera::pointAt(const NbVec3f& target) {
  NbVec3f back = position.getValue() - target;
  if (back.normalize() == 0.f) return;
  NbVec3f right = NbVec3f(0.f, 1.f, 0.f).cross(back);
  // Straight up or down there is no telling where up is: the camera's own up direction decides.
  if (right.normalize() < 1e-5f) {
    right = orientation.getValue().multVec(NbVec3f(1.f, 0.f, 0.f));
    right -= back * right.dot(back);
    if (right.normalize() == 0.f) right = NbVec3f(1.f, 0.f, 0.f);
  }
  const NbVec3f up = back.cross(right);
  const float rows[16] = {right[0], right[1], right[2], 0.f, up[0], up[1], up[2], 0.f,
                          back[0],  back[1],  back[2],  0.f, 0.f,   0.f,   0.f,   1.f};
  orientation.setValue(NbRotation(NbMatrix(rows)));
}

void NxCamera::viewAll(NxNode* root, const NbViewportRegion& viewport, float slack) {
  NxGetBoundingBoxAction action(viewport);
  action.apply(root);
  viewBox(action.getBoundingBox(), viewport, slack);
}

void NxCamera::viewAll(NxPath* path, const NbViewportRegion& viewport, float slack) {
  NxGetBoundingBoxAction action(viewport);
  action.apply(path);
  viewBox(action.getBoundingBox(), viewport, slack);
}

void NxCamera::viewBox(const NbBox3f& box, const NbViewportRegion& viewport, float slack) {
  if (box.isEmpty()) return;
  const float radius = std::max(0.5f * box.getSize().length(), 1e-6f);
  frameSphere(box.getCenter(), radius, getEffectiveAspect(viewport.getViewportAspectRatio()));
  const float distance = (position.getValue() - box.getCenter()).length();
  focalDistance.setValue(distance);
  nearDistance.setValue(distance - radius * slack);
  farDistance.setValue(distance + radius * slack);
}

void NxCamera::doAction(NxAction* action) {
  NxState* state = action->getState();
  const float aspect = NxViewportRegionElement::get(state).getViewportAspectRatio();
  const NbMatrix& model = NxModelMatrixElement::get(state);
  NbBox3f scene;
  if (autoClipping.getValue() && action->isOfType(NxGLRenderAction::getClassTypeId())) {
    scene = static_cast<NxGLRenderAction*>(action)->getSceneBox();
    scene.transform(model.inverse());
  }
  NbViewVolume volume = getViewVolume(aspect, scene);
  if (!model.isIdentity())
    volume.placeCamera(model.multVecMatrix(position.getValue()), orientation.getValue() * NbRotation(model));
  NxViewElement::set(state, this, {true, volume});
}

NX_NODE_SOURCE(NxPerspectiveCamera, NxCamera)

NxPerspectiveCamera::NxPerspectiveCamera() {
  NX_NODE_CONSTRUCTOR(NxPerspectiveCamera);
  NX_NODE_ADD_FIELD(heightAngle, (0.785398163f));
}
NxPerspectiveCamera::~NxPerspectiveCamera() = default;

void NxPerspectiveCamera::shapeVolume(NbViewVolume& volume, float aspect, float nearest, float farthest) const {
  float angle = heightAngle.getValue();
  if (isWidened(aspect)) angle = 2.f * std::atan(std::tan(0.5f * angle) / aspect);
  // Nothing behind the eye can be seen, and a near plane too close leaves no depth to tell shapes apart.
  const float last = std::max(farthest, 1e-6f);
  volume.perspective(angle, aspect, std::clamp(nearest, 1e-4f * last, 0.9999f * last), last);
}

void NxPerspectiveCamera::frameSphere(const NbVec3f& center, float radius, float aspect) {
  float half = 0.5f * heightAngle.getValue();
  if (!isWidened(aspect) && aspect < 1.f) half = std::atan(std::tan(half) * aspect);
  const NbVec3f direction = orientation.getValue().multVec(NbVec3f(0.f, 0.f, -1.f));
  position.setValue(center - direction * (radius / std::sin(half)));
}

NX_NODE_SOURCE(NxOrthographicCamera, NxCamera)

NxOrthographicCamera::NxOrthographicCamera() {
  NX_NODE_CONSTRUCTOR(NxOrthographicCamera);
  NX_NODE_ADD_FIELD(height, (2.f));
}
NxOrthographicCamera::~NxOrthographicCamera() = default;

void NxOrthographicCamera::shapeVolume(NbViewVolume& volume, float aspect, float nearest, float farthest) const {
  const float halfHeight = 0.5f * height.getValue() / (isWidened(aspect) ? aspect : 1.f);
  volume.ortho(-halfHeight * aspect, halfHeight * aspect, -halfHeight, halfHeight, nearest, farthest);
}

void NxOrthographicCamera::frameSphere(const NbVec3f& center, float radius, float aspect) {
  const bool narrow = !isWidened(aspect) && aspect < 1.f;
  height.setValue(2.f * radius / (narrow ? aspect : 1.f));
  const NbVec3f direction = orientation.getValue().multVec(NbVec3f(0.f, 0.f, -1.f));
  position.setValue(center - direction * (2.f * radius));
}
