// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PolygonSource.h"
#include "SurfaceMesh.h"

namespace kx {

/// The polygons of an extracted surface, with its vertex numbers as ids.
class WrittenPolygons final : public PolygonSource {
public:
  /// The surface must outlive this object.
  explicit WrittenPolygons(const SurfaceData& surface)
      : m_surface(surface) {
    m_points.array = surface.vertices.data();
    std::size_t polygon = 0;
    std::size_t begin = 0;
    for (std::size_t n = 0; n < surface.indices.size(); ++n) {
      if (surface.indices[n] >= 0) continue;
      if (polygon++ % PolygonBatch::SIZE == 0) m_begins.push_back(begin);
      begin = n + 1;
    }
  }

  std::size_t numPolygons() const override { return m_surface.numCells(); }
  std::size_t endId() const override { return m_surface.numVertices(); }
  const PointView& points() const override { return m_points; }
  std::size_t inputCell(std::size_t polygon) const override { return m_surface.inputCells[polygon]; }
  void read(std::size_t begin, PolygonBatch& batch) const override {
    const std::size_t count = std::min(PolygonBatch::SIZE, numPolygons() - begin);
    const std::int32_t* index = m_surface.indices.data() + m_begins[begin / PolygonBatch::SIZE];
    batch.clear();
    for (std::size_t n = 0; n < count; ++n) {
      std::size_t size = 0;
      while (index[size] >= 0)
        ++size;
      batch.add(index, size);
      index += size + 1;
    }
  }

private:
  const SurfaceData& m_surface;
  PointView m_points;
  std::vector<std::size_t> m_begins; ///< in the indices, of the first polygon of each batch
};

} // namespace kx
