// SPDX-License-Identifier: BSD-3-Clause
#include <Nyx/render/NxOffscreenRenderer.h>

#include <Nyx/base/NxPreferences.h>

#include "render/Device.h"
#include "src/render/PostMessage.h"

NxOffscreenRenderer::NxOffscreenRenderer(const NbViewportRegion& viewport)
    : m_action(viewport) {}
NxOffscreenRenderer::~NxOffscreenRenderer() = default;

bool NxOffscreenRenderer::render(NxNode* root) { return renderFrom(root); }
bool NxOffscreenRenderer::render(NxPath* path) { return renderFrom(path); }

template <class Root>
bool NxOffscreenRenderer::renderFrom(Root* root) {
  m_image = NxImage();
  if (!m_action.hasDevice())
    m_action.setOffscreenDevice(
        nx::render::makeOffscreenDevice(NxPreferences::getString("NYX_EGL_PLATFORM", ""), nx::detail::postMessage));
  // Without a device of its own the action would draw into the application's window.
  if (!m_action.hasDevice() || root == nullptr) return false;
  m_action.apply(root);
  if (!m_action.hasDrawn()) return false;
  const NbVec2i32& size = m_action.getViewportRegion().getWindowSize();
  m_image = NxImage(size[0], size[1], std::move(m_action.getPixels()));
  return true;
}
