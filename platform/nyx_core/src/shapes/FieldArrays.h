// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <Nyx/nodes/NxVertexProperty.h>

#include "src/shapes/IndexedGeometry.h"

namespace nx::detail {

/// A field's values as an array for the device, in the memory where they are.
template <class Field>
render::Array fieldArray(const NxVertexProperty& owner, render::Stream stream, const Field& field) {
  return {owner.getRenderSource(),
          stream,
          field.getChangeId(),
          field.getValues(),
          sizeof(typename Field::ValueType),
          static_cast<size_t>(field.getNum()),
          nullptr,
          0};
}

inline VertexArrays vertexArrays(const NxVertexProperty& vertices) {
  return {fieldArray(vertices, render::Stream::Position, vertices.vertex),
          fieldArray(vertices, render::Stream::Normal, vertices.normal),
          fieldArray(vertices, render::Stream::Color, vertices.orderedRGBA),
          fieldArray(vertices, render::Stream::TexCoord, vertices.texCoord)};
}

/// The coordinates as floats, one vertex after another.
inline const float* coordinates(const NxVertexProperty& vertices) {
  return vertices.vertex.getNum() > 0 ? vertices.vertex[0].getValue() : nullptr;
}

} // namespace nx::detail
