// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// How a node class is drawn: by the toolkit's own renderer or by OpenGL calls of the class itself.
class NbRenderEngineMode {
public:
  enum RenderMode {
    UNKNOWN = 0,          ///< Not decided; the default.
    NYX_RENDERING = 1,    ///< The toolkit draws what the node puts into the traversal.
    OPENGL_RENDERING = 2, ///< The node calls OpenGL itself.
  };

  constexpr NbRenderEngineMode() = default;

  void setRenderMode(RenderMode mode) { m_mode = mode; }
  RenderMode getRenderMode() const { return m_mode; }

  /// Whether classes derived from the node class take this flag over when they are registered.
  void setChildrenInherit(bool inherit) { m_childrenInherit = inherit; }
  bool isChildrenInherit() const { return m_childrenInherit; }

private:
  RenderMode m_mode = UNKNOWN;
  bool m_childrenInherit = false;
};
