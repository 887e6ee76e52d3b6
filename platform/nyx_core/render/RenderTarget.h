// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <epoxy/gl.h>

#include <vector>

namespace nx::render {

/// The framebuffers that a frame goes through: a multisampled one for the opaque shapes, one beside it with the sums
/// of the translucent ones (made when first asked for), and a resolved one with the finished picture. Used and
/// destroyed with its context current.
class RenderTarget {
public:
  RenderTarget() = default;
  ~RenderTarget() { release(); }
  RenderTarget(const RenderTarget&) = delete;
  RenderTarget& operator=(const RenderTarget&) = delete;

  /// Makes the framebuffers anew when size or samples differ. False when the driver cannot have them.
  bool resize(int width, int height, int samples);

  void bindOpaque() const;
  /// False when the driver cannot have them.
  bool bindBlended();
  /// Averages the samples of the opaque picture.
  void resolveOpaque() const;
  /// Averages the samples of the sums, so that their textures can be read.
  void resolveBlended() const;
  /// Binds the finished picture for drawing and reading.
  void bindResult() const;
  GLuint sumTexture() const { return m_resolvedSum; }
  GLuint revealTexture() const { return m_resolvedReveal; }

  /// The finished picture, top row first.
  void read(std::vector<unsigned char>& pixels) const;

private:
  bool makeBlended();
  void release();

  int m_width = 0, m_height = 0, m_samples = 0;
  GLuint m_opaque = 0, m_opaqueColor = 0, m_depth = 0;
  GLuint m_result = 0, m_resultColor = 0;
  GLuint m_blended = 0, m_sum = 0, m_reveal = 0;
  GLuint m_resolved = 0, m_resolvedSum = 0, m_resolvedReveal = 0;
};

} // namespace nx::render
