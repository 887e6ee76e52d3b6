// SPDX-License-Identifier: BSD-3-Clause
#include "render/RenderTarget.h"

#include <cstring>

namespace nx::render {

namespace {

GLuint makeRenderbuffer(GLenum attachment, GLenum format, int width, int height, int samples) {
  GLuint buffer = 0;
  glGenRenderbuffers(1, &buffer);
  glBindRenderbuffer(GL_RENDERBUFFER, buffer);
  glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
  return buffer;
}

GLuint makeTexture(GLenum attachment, GLint format, GLenum channels, int width, int height) {
  GLuint texture = 0;
  glGenTextures(1, &texture);
  glBindTexture(GL_TEXTURE_2D, texture);
  glTexImage2D(GL_TEXTURE_2D, 0, format, width, height, 0, channels, GL_FLOAT, nullptr);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
  glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, GL_TEXTURE_2D, texture, 0);
  return texture;
}

GLuint makeFramebuffer() {
  GLuint framebuffer = 0;
  glGenFramebuffers(1, &framebuffer);
  glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
  return framebuffer;
}

bool isComplete() { return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE; }

constexpr GLenum both[] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1};

} // namespace

bool RenderTarget::resize(int width, int height, int samples) {
  if (m_opaque != 0 && width == m_width && height == m_height && samples == m_samples) return true;
  release();
  m_width = width;
  m_height = height;
  m_samples = samples;
  m_opaque = makeFramebuffer();
  m_opaqueColor = makeRenderbuffer(GL_COLOR_ATTACHMENT0, GL_RGBA8, width, height, samples);
  m_depth = makeRenderbuffer(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24, width, height, samples);
  bool good = isComplete();
  m_result = makeFramebuffer();
  m_resultColor = makeRenderbuffer(GL_COLOR_ATTACHMENT0, GL_RGBA8, width, height, 0);
  good = isComplete() && good;
  if (!good) release();
  return good;
}

void RenderTarget::release() {
  for (GLuint* framebuffer : {&m_opaque, &m_result, &m_blended, &m_resolved}) {
    glDeleteFramebuffers(1, framebuffer);
    *framebuffer = 0;
  }
  for (GLuint* buffer : {&m_opaqueColor, &m_depth, &m_resultColor, &m_sum, &m_reveal}) {
    glDeleteRenderbuffers(1, buffer);
    *buffer = 0;
  }
  for (GLuint* texture : {&m_resolvedSum, &m_resolvedReveal}) {
    glDeleteTextures(1, texture);
    *texture = 0;
  }
}

bool RenderTarget::makeBlended() {
  m_blended = makeFramebuffer();
  m_sum = makeRenderbuffer(GL_COLOR_ATTACHMENT0, GL_RGBA16F, m_width, m_height, m_samples);
  m_reveal = makeRenderbuffer(GL_COLOR_ATTACHMENT1, GL_R16F, m_width, m_height, m_samples);
  glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, m_depth);
  glDrawBuffers(2, both);
  const bool good = isComplete();
  m_resolved = makeFramebuffer();
  m_resolvedSum = makeTexture(GL_COLOR_ATTACHMENT0, GL_RGBA16F, GL_RGBA, m_width, m_height);
  m_resolvedReveal = makeTexture(GL_COLOR_ATTACHMENT1, GL_R16F, GL_RED, m_width, m_height);
  return isComplete() && good;
}

void RenderTarget::bindOpaque() const { glBindFramebuffer(GL_FRAMEBUFFER, m_opaque); }

bool RenderTarget::bindBlended() {
  if (m_blended == 0 && !makeBlended()) return false;
  glBindFramebuffer(GL_FRAMEBUFFER, m_blended);
  return true;
}

void RenderTarget::resolveOpaque() const {
  glBindFramebuffer(GL_READ_FRAMEBUFFER, m_opaque);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_result);
  glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

void RenderTarget::resolveBlended() const {
  glBindFramebuffer(GL_READ_FRAMEBUFFER, m_blended);
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolved);
  // A blit writes what is read to every draw buffer, so each attachment goes by itself.
  for (const GLenum attachment : both) {
    glReadBuffer(attachment);
    glDrawBuffer(attachment);
    glBlitFramebuffer(0, 0, m_width, m_height, 0, 0, m_width, m_height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
  }
}

void RenderTarget::bindResult() const { glBindFramebuffer(GL_FRAMEBUFFER, m_result); }

void RenderTarget::read(std::vector<unsigned char>& pixels) const {
  const size_t rowBytes = 4 * static_cast<size_t>(m_width);
  const auto rows = static_cast<size_t>(m_height);
  std::vector<unsigned char> upward(rowBytes * rows);
  glBindFramebuffer(GL_READ_FRAMEBUFFER, m_result);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, m_width, m_height, GL_RGBA, GL_UNSIGNED_BYTE, upward.data());
  pixels.resize(upward.size());
  for (size_t row = 0; row < rows; ++row)
    std::memcpy(pixels.data() + row * rowBytes, upward.data() + (rows - 1 - row) * rowBytes, rowBytes);
}

} // namespace nx::render
