// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/actions/NxAction.h>

#include <cstdint>

/// Counts the triangles, lines and points that a graph shows.
class NYX_CORE_API NxGetPrimitiveCountAction : public NxAction {
  NX_ACTION_HEADER(NxGetPrimitiveCountAction);

public:
  NxGetPrimitiveCountAction();
  ~NxGetPrimitiveCountAction() override;

  int64_t getTriangleCount() const { return m_triangles; }
  int64_t getLineCount() const { return m_lines; }
  int64_t getPointCount() const { return m_points; }

  // For shapes.
  void addNumTriangles(int64_t count) { m_triangles += count; }
  void addNumLines(int64_t count) { m_lines += count; }
  void addNumPoints(int64_t count) { m_points += count; }

protected:
  void beginTraversal(NxNode* root) override;
  void callNode(NxNode* node) override;

private:
  int64_t m_triangles = 0;
  int64_t m_lines = 0;
  int64_t m_points = 0;
};
