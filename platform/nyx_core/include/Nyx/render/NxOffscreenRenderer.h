// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxGLRenderAction.h>
#include <Nyx/render/NxImage.h>

#include <string>

/// Draws graphs into pictures, with a graphics context of its own and without a window.
///
///     NxOffscreenRenderer renderer(NbViewportRegion(640, 480));
///     renderer.setBackgroundColor(NbColorRGBA(1.f, 1.f, 1.f, 1.f));
///     if (renderer.render(root)) renderer.writeToPNG("scene.png");
///
/// The context is made at the first picture: by EGL without a surface, on the first graphics device, or on the default
/// display, whichever works first; the preference NYX_EGL_PLATFORM ("surfaceless", "device", "default") chooses one.
/// Where none can be made, a message names what failed, and pictures stay empty. Several renderers may be used in turn
/// on one thread; each keeps its own buffers.
class NYX_CORE_API NxOffscreenRenderer {
public:
  explicit NxOffscreenRenderer(const NbViewportRegion& viewport);
  ~NxOffscreenRenderer();
  NxOffscreenRenderer(const NxOffscreenRenderer&) = delete;
  NxOffscreenRenderer& operator=(const NxOffscreenRenderer&) = delete;

  void setViewportRegion(const NbViewportRegion& viewport) { m_action.setViewportRegion(viewport); }
  const NbViewportRegion& getViewportRegion() const { return m_action.getViewportRegion(); }
  void setBackgroundColor(const NbColorRGBA& color) { m_action.setBackgroundColor(color); }
  void setNumSamples(int samples) { m_action.setNumSamples(samples); }
  void setHeadlight(bool on) { m_action.setHeadlight(on); }
  void setTransparencyType(NxGLRenderAction::TransparencyType type) { m_action.setTransparencyType(type); }

  /// The action that draws, for everything else that it can be told.
  NxGLRenderAction& getGLRenderAction() { return m_action; }

  /// Draws a picture of a graph. False, after a message, when it could not be drawn; the picture is empty then.
  bool render(NxNode* root);
  bool render(NxPath* path);

  /// The last picture.
  const NxImage& getImage() const { return m_image; }
  /// Its pixels: red, green, blue, alpha, 8 bits each, top row first; null for an empty picture.
  const unsigned char* getBuffer() const { return m_image.isEmpty() ? nullptr : m_image.getBuffer().data(); }
  int getWidth() const { return m_image.getWidth(); }
  int getHeight() const { return m_image.getHeight(); }
  /// False, after a message, when there is no picture or the file cannot be written.
  bool writeToPNG(const std::string& fileName) const { return m_image.writePNG(fileName); }

  /// What the last picture has cost.
  const NxRenderStatistics& getStatistics() const { return m_action.getFrameStatistics(); }
  /// What all pictures of this renderer have cost.
  const NxRenderStatistics& getTotalStatistics() const { return m_action.getTotalStatistics(); }

private:
  template <class Root>
  bool renderFrom(Root* root);

  NxGLRenderAction m_action;
  NxImage m_image;
};
