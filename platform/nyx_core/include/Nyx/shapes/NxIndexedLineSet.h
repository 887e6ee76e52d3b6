// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/shapes/NxIndexedShape.h>

/// Polylines with width and pattern of the draw style. Bindings per face give values per polyline. Lines are unlit
/// unless they have normals; the draw style POINTS draws their corners.
class NYX_CORE_API NxIndexedLineSet : public NxIndexedShape {
  NX_NODE_HEADER(NxIndexedLineSet);

public:
  NxIndexedLineSet();

protected:
  ~NxIndexedLineSet() override;
  bool isFaceSet() const override { return false; }
};
