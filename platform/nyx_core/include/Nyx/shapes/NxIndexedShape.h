// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxMFInt32.h>
#include <Nyx/shapes/NxVertexShape.h>

#include <memory>

namespace nx::detail {
class IndexedGeometry;
}

/// A shape that picks its vertices by number. Each -1 in `coordIndex` ends a face or line.
///
/// A face with an index outside the vertices, or with a vertex that is not finite, is left out after one warning; the
/// rest is drawn. Values that are too few for the shape (12 colours for 20 faces) are left out as a whole in the same
/// way. All lists may refer to the application's memory; the graphics device gets them from there, and gets again only
/// what has changed.
class NYX_CORE_API NxIndexedShape : public NxVertexShape {
  NX_NODE_ABSTRACT_HEADER(NxIndexedShape);

public:
  NxMFInt32 coordIndex;        ///< vertex numbers, -1 between faces or lines; empty
  NxMFInt32 materialIndex;     ///< colour numbers, one a corner (-1 as in coordIndex) or a face, by the binding; empty
  NxMFInt32 normalIndex;       ///< normal numbers in the same way; empty
  NxMFInt32 textureCoordIndex; ///< texture coordinate numbers, one a corner; empty: coordIndex

protected:
  NxIndexedShape();
  ~NxIndexedShape() override;

  virtual bool isFaceSet() const = 0;

  bool fillGeometry(NxState* state, nx::render::DrawRecord& record) override;
  NbBox3f computeBox(NxState* state) override;
  PrimitiveCount countPrimitives(NxState* state) override;

private:
  struct Cache;
  std::shared_ptr<nx::detail::IndexedGeometry> getGeometry(NxState* state, const NxVertexProperty& vertices);

  std::unique_ptr<Cache> m_cache;
};
