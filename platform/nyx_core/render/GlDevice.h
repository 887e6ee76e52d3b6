// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "render/BufferCache.h"
#include "render/Context.h"
#include "render/ProgramCache.h"
#include "render/RenderTarget.h"

namespace nx::render {

/// The device on OpenGL 4.1 core.
class GlDevice final : public Device {
public:
  GlDevice(std::unique_ptr<Context> context, MessageFunction message);
  ~GlDevice() override;

  /// Asks the context for its limits. False, after a message, when it cannot serve.
  bool start();

  bool render(const Frame& frame, std::vector<unsigned char>& pixels) override;
  const NxRenderStatistics& frameStatistics() const override { return m_frameStatistics; }
  const NxRenderStatistics& totalStatistics() const override { return m_totalStatistics; }
  int maxSamples() const override { return m_maxSamples; }

private:
  struct Resources;
  enum class Pass : int { Opaque = 1, Translucent = 2 };

  bool prepareTarget(const Frame& frame);
  std::vector<const DrawRecord*> sorted(const Frame& frame) const;
  bool isDrawable(const DrawRecord& record) const;
  void drawPass(const Frame& frame, const std::vector<const DrawRecord*>& records, Pass pass);
  void draw(const Frame& frame, const DrawRecord& record, Pass pass);
  void compositeBlended();
  void finishStatistics();

  std::unique_ptr<Context> m_context;
  MessageFunction m_message;
  std::unique_ptr<Resources> m_resources; ///< all GL objects; made and destroyed with the context current
  NxRenderStatistics m_frameStatistics, m_totalStatistics;
  int m_maxSamples = 0, m_maxSize = 0, m_maxBufferTexels = 0;
};

} // namespace nx::render
