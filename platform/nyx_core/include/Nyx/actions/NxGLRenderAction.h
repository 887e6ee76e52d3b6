// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>
#include <Nyx/base/NbBox3f.h>
#include <Nyx/base/NbColorRGBA.h>
#include <Nyx/base/NbViewportRegion.h>
#include <Nyx/render/NxRenderStatistics.h>

namespace nx::render {
class Device;
struct DrawRecord;
} // namespace nx::render

/// Draws a graph. A traversal collects what the shapes are to look like; then everything is drawn at once. Arrays stay
/// on the graphics side from picture to picture, and only those that have changed are sent again.
///
/// The action draws with the OpenGL context that is current at apply(), always the same one, 4.1 core at least, into
/// the framebuffer that is bound, which must not be multisampled itself (setNumSamples is). It leaves depth test,
/// blending and the like as it needed them, and must be destroyed while that context is current. NxOffscreenRenderer
/// draws without a window. A graph with shapes but no camera before them gives an empty picture and a message.
class NYX_CORE_API NxGLRenderAction : public NxAction {
  NX_ACTION_HEADER(NxGLRenderAction);

public:
  explicit NxGLRenderAction(const NbViewportRegion& viewport);
  ~NxGLRenderAction() override;

  void setViewportRegion(const NbViewportRegion& viewport);
  const NbViewportRegion& getViewportRegion() const;

  /// ORDER_INDEPENDENT blends translucent surfaces by weights that fall with the distance, so that no order has to be
  /// kept; NO_TRANSPARENCY draws everything opaque.
  enum TransparencyType { NO_TRANSPARENCY = 0, ORDER_INDEPENDENT = 1 };
  void setTransparencyType(TransparencyType type); ///< ORDER_INDEPENDENT at first
  TransparencyType getTransparencyType() const;

  /// Samples a pixel; 0, as at first, for no multisampling. More than the device can do count as what it can.
  void setNumSamples(int samples);
  int getNumSamples() const;

  void setBackgroundColor(const NbColorRGBA& color); ///< opaque black at first
  const NbColorRGBA& getBackgroundColor() const;

  /// A white light that shines along the camera's direction, in addition to the graph's lights; on at first.
  void setHeadlight(bool on);
  bool hasHeadlight() const;

  /// Light from everywhere, which a material's ambientColor reflects; (0.2, 0.2, 0.2) at first.
  void setAmbientLight(const NbColor& color);
  const NbColor& getAmbientLight() const;

  /// Whether the last apply() has drawn a picture.
  bool hasDrawn() const;
  const NxRenderStatistics& getFrameStatistics() const;
  const NxRenderStatistics& getTotalStatistics() const;

  /// Adds a shape to the picture, under the camera and the lights of the present state. For shapes.
  void addRecord(nx::render::DrawRecord&& record);
  /// The box around the graph that is being drawn, worked out at the first call of a traversal. For cameras.
  const NbBox3f& getSceneBox();

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  friend class NxOffscreenRenderer;
  struct Data;

  /// Draws with a device of its own in place of the current context.
  void setOffscreenDevice(std::unique_ptr<nx::render::Device> device);
  bool hasDevice() const;
  std::vector<unsigned char>& getPixels();
  uint32_t findView();
  uint32_t findLightSet();

  std::unique_ptr<Data> m_data;
};
