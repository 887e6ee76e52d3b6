// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/base/NbBox3f.h>
#include <Nyx/nodes/NxNode.h>

#include <string>

class NxState;

namespace nx::render {
struct DrawRecord;
}

/// What all shapes have in common: what the state says about how they are drawn, and the answers to the actions that
/// ask about shapes.
class NYX_CORE_API NxShape : public NxNode {
  NX_NODE_ABSTRACT_HEADER(NxShape);

public:
  bool affectsState() const override { return false; }

  void GLRender(NxGLRenderAction* action) override;
  void getBoundingBox(NxGetBoundingBoxAction* action) override;
  void getPrimitiveCount(NxGetPrimitiveCountAction* action) override;

protected:
  struct PrimitiveCount {
    int triangles = 0, lines = 0, points = 0;
  };

  NxShape();
  ~NxShape() override;

  /// Completes a record, in which all but the geometry is set, with the shape's arrays. False: there is nothing to
  /// draw.
  virtual bool fillGeometry(NxState* state, nx::render::DrawRecord& record) = 0;
  /// The box of what the shape draws, in its own coordinates; empty when it draws nothing.
  virtual NbBox3f computeBox(NxState* state) = 0;
  /// What would be drawn in the state's draw style.
  virtual PrimitiveCount countPrimitives(NxState* state) = 0;

  /// Posts a warning as "<class>::<operation>".
  void warn(const char* operation, const std::string& text) const;
};
