// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/actions/NxGLRenderAction.h>

#include <Nyx/actions/NxGetBoundingBoxAction.h>
#include <Nyx/base/NxDebugError.h>
#include <Nyx/elements/NxLightElement.h>
#include <Nyx/elements/NxViewElement.h>
#include <Nyx/elements/NxViewportRegionElement.h>
#include <Nyx/nodes/NxNode.h>

#include "render/Device.h"
#include "src/render/PostMessage.h"

#include <algorithm>

struct NxGLRenderAction::Data {
  NbViewportRegion viewport;
  TransparencyType transparencyType = ORDER_INDEPENDENT;
  NbColorRGBA background{0.f, 0.f, 0.f, 1.f};
  NbColor ambientLight{0.2f, 0.2f, 0.2f};
  int samples = 0;
  bool headlight = true;
  bool hasDrawn = false;

  std::unique_ptr<nx::render::Device> device;
  std::vector<unsigned char> pixels;

  // Of the traversal that is going on:
  nx::render::Frame frame;
  NbBox3f sceneBox;
  bool hasSceneBox = false;
  bool missesCamera = false;
};

NX_ACTION_SOURCE(NxGLRenderAction, NxAction)

NxGLRenderAction::NxGLRenderAction(const NbViewportRegion& viewport)
    : m_data(std::make_unique<Data>()) {
  m_data->viewport = viewport;
}
NxGLRenderAction::~NxGLRenderAction() = default;

void NxGLRenderAction::setViewportRegion(const NbViewportRegion& viewport) { m_data->viewport = viewport; }
const NbViewportRegion& NxGLRenderAction::getViewportRegion() const { return m_data->viewport; }
void NxGLRenderAction::setTransparencyType(TransparencyType type) { m_data->transparencyType = type; }
NxGLRenderAction::TransparencyType NxGLRenderAction::getTransparencyType() const { return m_data->transparencyType; }
void NxGLRenderAction::setNumSamples(int samples) { m_data->samples = samples; }
int NxGLRenderAction::getNumSamples() const { return m_data->samples; }
void NxGLRenderAction::setBackgroundColor(const NbColorRGBA& color) { m_data->background = color; }
const NbColorRGBA& NxGLRenderAction::getBackgroundColor() const { return m_data->background; }
void NxGLRenderAction::setHeadlight(bool on) { m_data->headlight = on; }
bool NxGLRenderAction::hasHeadlight() const { return m_data->headlight; }
void NxGLRenderAction::setAmbientLight(const NbColor& color) { m_data->ambientLight = color; }
const NbColor& NxGLRenderAction::getAmbientLight() const { return m_data->ambientLight; }
bool NxGLRenderAction::hasDrawn() const { return m_data->hasDrawn; }

namespace {
const NxRenderStatistics nothingDone;
}

const NxRenderStatistics& NxGLRenderAction::getFrameStatistics() const {
  return m_data->device ? m_data->device->frameStatistics() : nothingDone;
}

const NxRenderStatistics& NxGLRenderAction::getTotalStatistics() const {
  return m_data->device ? m_data->device->totalStatistics() : nothingDone;
}

void NxGLRenderAction::setOffscreenDevice(std::unique_ptr<nx::render::Device> device) {
  m_data->device = std::move(device);
}

bool NxGLRenderAction::hasDevice() const { return m_data->device != nullptr; }
std::vector<unsigned char>& NxGLRenderAction::getPixels() { return m_data->pixels; }

void NxGLRenderAction::callNode(NxNode* node) { node->GLRender(this); }

void NxGLRenderAction::beginTraversal(NxNode* root) {
  Data& data = *m_data;
  data.frame = {};
  data.hasSceneBox = data.missesCamera = data.hasDrawn = false;
  NxViewportRegionElement::set(getState(), nullptr, data.viewport);
  traverse(root);
  if (data.missesCamera)
    NxDebugError::post("NxGLRenderAction::apply", "shapes without a camera before them in the graph are not drawn");

  if (!data.device) data.device = nx::render::makeWindowDevice(nx::detail::postMessage);
  if (!data.device) return;
  nx::render::Frame& frame = data.frame;
  const NbVec2i32& size = data.viewport.getWindowSize();
  const NbVec2i32& origin = data.viewport.getViewportOriginPixels();
  const NbVec2i32& extent = data.viewport.getViewportSizePixels();
  frame.width = size[0];
  frame.height = size[1];
  frame.viewport = {origin[0], origin[1], extent[0], extent[1]};
  std::copy_n(data.background.getValue(), 4, frame.background.begin());
  std::copy_n(data.ambientLight.getValue(), 3, frame.ambientLight.begin());
  frame.samples = data.samples;
  data.hasDrawn = data.device->render(frame, data.pixels);
  // The records refer to arrays that may be gone after the traversal.
  data.frame = {};
}

void NxGLRenderAction::addRecord(nx::render::DrawRecord&& record) {
  if (!NxViewElement::get(getState()).isSet) {
    m_data->missesCamera = true;
    return;
  }
  if (m_data->transparencyType == NO_TRANSPARENCY) record.opacity = nx::render::Opacity::Opaque;
  record.view = findView();
  record.lightSet = findLightSet();
  m_data->frame.records.push_back(std::move(record));
}

uint32_t NxGLRenderAction::findView() {
  NbMatrix affine, projection;
  NxViewElement::get(getState()).volume.getMatrices(affine, projection);
  nx::render::View view;
  std::copy_n(affine.getValue(), 16, view.view.begin());
  std::copy_n(projection.getValue(), 16, view.projection.begin());
  // Nearly always there is one camera, and it is the one of the record before.
  std::vector<nx::render::View>& views = m_data->frame.views;
  if (views.empty() || views.back() != view) views.push_back(view);
  return static_cast<uint32_t>(views.size() - 1);
}

uint32_t NxGLRenderAction::findLightSet() {
  std::vector<nx::render::DirectionalLight> lights;
  const auto add = [&lights](const NbVec3f& direction, const NbColor& color) {
    lights.push_back({{direction[0], direction[1], direction[2]}, {color[0], color[1], color[2]}});
  };
  if (m_data->headlight) add(NxViewElement::get(getState()).volume.getProjectionDirection(), NbColor(1.f, 1.f, 1.f));
  for (const NxLightValue& light : NxLightElement::get(getState()))
    add(light.direction, light.color);
  std::vector<std::vector<nx::render::DirectionalLight>>& sets = m_data->frame.lightSets;
  if (sets.empty() || sets.back() != lights) sets.push_back(lights);
  return static_cast<uint32_t>(sets.size() - 1);
}

const NbBox3f& NxGLRenderAction::getSceneBox() {
  if (!m_data->hasSceneBox) {
    m_data->hasSceneBox = true;
    NxGetBoundingBoxAction action(m_data->viewport);
    if (getPathAppliedTo() != nullptr)
      action.apply(getPathAppliedTo());
    else
      action.apply(getNodeAppliedTo());
    m_data->sceneBox = action.getBoundingBox();
  }
  return m_data->sceneBox;
}
