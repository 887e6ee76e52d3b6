// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "render/Device.h"

namespace nx::render {

/// An OpenGL context that can be made current, and the one that was current before brought back.
class Context {
public:
  virtual ~Context() = default;
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  virtual bool enter() = 0;
  virtual void leave() = 0;

  /// True when pictures are read back instead of being drawn into the framebuffer that is bound.
  virtual bool isOffscreen() const = 0;

protected:
  Context() = default;
};

std::unique_ptr<Context> makeEglContext(const std::string& platform, MessageFunction message);

/// Makes a context current for a scope.
class ContextScope {
public:
  explicit ContextScope(Context& context)
      : m_context(context)
      , m_entered(context.enter()) {}
  ~ContextScope() {
    if (m_entered) m_context.leave();
  }
  ContextScope(const ContextScope&) = delete;
  ContextScope& operator=(const ContextScope&) = delete;
  explicit operator bool() const { return m_entered; }

private:
  Context& m_context;
  bool m_entered;
};

} // namespace nx::render
