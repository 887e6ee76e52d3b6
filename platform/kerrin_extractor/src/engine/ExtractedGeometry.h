// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "Array.h"

#include <KerrinExtractor/KeXGeometryExplicit.h>

#include <atomic>
#include <mutex>

namespace kx {

/// Writes one of the triples that extracted vertices are.
inline void setPosition(Array<float>& vertices, std::size_t vertex, const KbVec3<double>& position) {
  for (std::size_t axis = 0; axis < 3; ++axis)
    vertices[3 * vertex + axis] = static_cast<float>(position[axis]);
}

/// The geometry of extracted meshes over an array of float triples, which its owner rewrites.
class ExtractedGeometry final : public KeXGeometryExplicit {
public:
  explicit ExtractedGeometry(const Array<float>& vertices);
  /// A view of a copied array with the time stamp of the original.
  ExtractedGeometry(const Array<float>& vertices, const ExtractedGeometry& original);

  /// Takes a new time stamp after the array has been rewritten.
  void commit();

  std::size_t getTimeStamp() const override { return m_timeStamp; }
  std::size_t getNumNodes() const override { return m_vertices.size() / 3; }
  const KiBuffer* getVertexBuffer() const override { return &m_vertices; }
  KbVec3<double> getCoord(std::size_t node) const override;
  KbVec3<double> getMin() const override;
  KbVec3<double> getMax() const override;

private:
  void findBox() const;

  const Array<float>& m_vertices;
  std::size_t m_timeStamp;
  mutable std::mutex m_mutex;
  mutable std::atomic<bool> m_hasBox{false};
  mutable KbVec3<double> m_low;
  mutable KbVec3<double> m_high;
};

} // namespace kx
