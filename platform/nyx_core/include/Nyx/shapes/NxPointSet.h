// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/fields/NxSFInt32.h>
#include <Nyx/shapes/NxVertexShape.h>

#include <memory>

/// The vertices as squares of the draw style's size. Every binding but OVERALL gives a value per point, in order.
/// Points are unlit unless they have normals. A point that is not finite is left out, after one warning.
class NYX_CORE_API NxPointSet : public NxVertexShape {
  NX_NODE_HEADER(NxPointSet);

public:
  NxPointSet();

  NxSFInt32 numPoints; ///< how many of the vertices, from the first on; -1, the default, for all

protected:
  ~NxPointSet() override;

  bool fillGeometry(NxState* state, nx::render::DrawRecord& record) override;
  NbBox3f computeBox(NxState* state) override;
  PrimitiveCount countPrimitives(NxState* state) override;

private:
  struct Cache;
  const Cache& getCache(const NxVertexProperty& vertices);

  std::shared_ptr<const Cache> m_cache;
};
