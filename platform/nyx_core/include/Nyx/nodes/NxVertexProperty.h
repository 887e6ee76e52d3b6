// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxMFUInt32.h>
#include <Nyx/fields/NxMFVec2f.h>
#include <Nyx/fields/NxMFVec3f.h>
#include <Nyx/fields/NxSFEnum.h>
#include <Nyx/nodes/NxPropertyNode.h>
#include <memory>

namespace nx::render {
class Source;
}

/// Vertices and the values that go with them, for a shape's `vertexProperty` field or, as a node in the graph, for
/// shapes below that have none of their own. The lists may refer to the application's memory (`setValuesPointer`); they
/// go to the graphics device from there.
class NYX_CORE_API NxVertexProperty : public NxPropertyNode {
  NX_NODE_HEADER(NxVertexProperty);

public:
  NxVertexProperty();

  /// How values are spread over a shape. The two forms without INDEXED take the values in order; PER_FACE_INDEXED takes
  /// them by the shape's own index field, in order where that is empty; PER_VERTEX_INDEXED by that field or, where it
  /// is empty, by coordIndex.
  enum Binding { OVERALL = 2, PER_FACE = 5, PER_FACE_INDEXED = 6, PER_VERTEX = 7, PER_VERTEX_INDEXED = 8 };

  NxMFVec3f vertex;         ///< coordinates
  NxMFVec2f texCoord;       ///< one per vertex, or by the shape's textureCoordIndex
  NxMFVec3f normal;         ///< computed where there are none
  NxSFEnum normalBinding;   ///< PER_VERTEX_INDEXED
  NxMFUInt32 orderedRGBA;   ///< packed colours 0xRRGGBBAA; they replace the material's diffuse colour and transparency
  NxSFEnum materialBinding; ///< OVERALL
  NxMFVec3f tangent;        ///< kept for shaders; the built-in look does not use it
  NxSFEnum tangentBinding;  ///< OVERALL

  /// What graphics devices know these arrays by.
  const std::shared_ptr<const nx::render::Source>& getRenderSource() const { return m_source; }
  /// What the packed colours let through: 0 nothing, 1 some of them, 2 all of them.
  int getTranslucency() const;

  void doAction(NxAction* action) override;

protected:
  ~NxVertexProperty() override;

private:
  std::shared_ptr<const nx::render::Source> m_source;
  mutable uint64_t m_scannedChange = 0;
  mutable int m_translucency = 0;
};
