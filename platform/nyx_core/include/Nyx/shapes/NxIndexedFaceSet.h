// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/shapes/NxIndexedShape.h>

/// Polygons with any number of corners, concave ones too. Without normals they are computed: flat for a crease angle of
/// 0 (NxShapeHints), smooth up to that angle otherwise. The draw style LINES draws the polygons' edges and POINTS their
/// corners, both unlit.
///
///     auto* square = new NxIndexedFaceSet;
///     square->vertexProperty = vertices; // an NxVertexProperty with four vertices
///     const int32_t corners[] = {0, 1, 2, 3, -1};
///     square->coordIndex.setValues(0, 5, corners);
class NYX_CORE_API NxIndexedFaceSet : public NxIndexedShape {
  NX_NODE_HEADER(NxIndexedFaceSet);

public:
  NxIndexedFaceSet();

protected:
  ~NxIndexedFaceSet() override;
  bool isFaceSet() const override { return true; }
};
