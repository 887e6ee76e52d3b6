// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/fields/NxSFFloat.h>
#include <Nyx/nodes/NxPropertyNode.h>

/// What is known of the faces below. Back faces are left out of solids whose vertex ordering is known; all other faces
/// are lit from both sides.
class NYX_CORE_API NxShapeHints : public NxPropertyNode {
  NX_NODE_HEADER(NxShapeHints);

public:
  NxShapeHints();

  /// Order of the corners of a face seen from outside.
  enum VertexOrdering { UNKNOWN_ORDERING = 0, CLOCKWISE = 1, COUNTERCLOCKWISE = 2 };
  enum ShapeType { UNKNOWN_SHAPE_TYPE = 0, SOLID = 1 };
  enum FaceType { UNKNOWN_FACE_TYPE = 0, CONVEX = 1 };

  NxSFEnum vertexOrdering; ///< UNKNOWN_ORDERING
  NxSFEnum shapeType;      ///< UNKNOWN_SHAPE_TYPE
  NxSFEnum faceType;       ///< CONVEX; any face is triangulated properly, whatever this says
  NxSFFloat creaseAngle;   ///< radians, 0.5: computed normals are smooth between faces that meet at less; 0: flat

  void doAction(NxAction* action) override;

protected:
  ~NxShapeHints() override;
};
