// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/elements/NxValueElement.h>

/// What is known of the faces below; see NxShapeHints for the meanings.
struct NxShapeHintsValue {
  int vertexOrdering = 0; ///< an NxShapeHints::VertexOrdering
  int shapeType = 0;      ///< an NxShapeHints::ShapeType
  int faceType = 1;       ///< an NxShapeHints::FaceType
  float creaseAngle = 0.5f;

  friend bool operator==(const NxShapeHintsValue& a, const NxShapeHintsValue& b) {
    return a.vertexOrdering == b.vertexOrdering && a.shapeType == b.shapeType && a.faceType == b.faceType &&
           a.creaseAngle == b.creaseAngle;
  }
};

/// The shape hints for what comes below.
class NYX_CORE_API NxShapeHintsElement : public NxValueElement<NxShapeHintsElement, NxShapeHintsValue> {
  NX_ELEMENT_HEADER(NxShapeHintsElement);
};
