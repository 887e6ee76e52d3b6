// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "PointView.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace kx {

/// A few polygons by the ids of their corners.
class PolygonBatch {
public:
  static constexpr std::size_t SIZE = 64;

  void clear() {
    m_numPolygons = 0;
    m_begins[0] = 0;
  }
  /// The next polygon; without corners if it is left out.
  template <class Ids>
  void add(const Ids& ids, std::size_t count) {
    const std::size_t begin = m_begins[m_numPolygons];
    if (begin + count > m_ids.size()) m_ids.resize(2 * (begin + count) + 4 * SIZE);
    for (std::size_t c = 0; c < count; ++c)
      m_ids[begin + c] = static_cast<std::size_t>(ids[c]);
    m_begins[++m_numPolygons] = begin + count;
  }

  std::size_t numPolygons() const { return m_numPolygons; }
  const std::size_t* corners(std::size_t polygon) const { return m_ids.data() + m_begins[polygon]; }
  std::size_t numCorners(std::size_t polygon) const { return m_begins[polygon + 1] - m_begins[polygon]; }

private:
  std::vector<std::size_t> m_ids; ///< of all corners; may be longer than they are
  std::array<std::size_t, SIZE + 1> m_begins{};
  std::size_t m_numPolygons = 0;
};

/// Polygons over points with ids, which are read wherever they are kept instead of being written down: as often as
/// asked for, by several threads at once.
class PolygonSource {
public:
  virtual ~PolygonSource() = default;
  virtual std::size_t numPolygons() const = 0;
  virtual std::size_t endId() const = 0; ///< of the points
  virtual const PointView& points() const = 0;
  virtual std::size_t inputCell(std::size_t polygon) const = 0;
  /// Reads up to `PolygonBatch::SIZE` polygons from a multiple of it on, without a look at their positions.
  virtual void read(std::size_t begin, PolygonBatch& batch) const = 0;
};

/// Polygons that are read by a reader as `PolygonWriter` uses it, which also offers `readNodes(face)`: `read(face)`
/// without a look at the positions. `faceAt(n)` is what it is asked for, and tells its cell.
template <class FaceAt, class MakeReader>
class ReaderPolygons final : public PolygonSource {
public:
  ReaderPolygons(std::size_t numPolygons, std::size_t endId, const PointView& points, FaceAt faceAt,
                 MakeReader makeReader)
      : m_numPolygons(numPolygons)
      , m_endId(endId)
      , m_points(points)
      , m_faceAt(std::move(faceAt))
      , m_makeReader(std::move(makeReader)) {}

  std::size_t numPolygons() const override { return m_numPolygons; }
  std::size_t endId() const override { return m_endId; }
  const PointView& points() const override { return m_points; }
  std::size_t inputCell(std::size_t polygon) const override { return m_faceAt(polygon).cell; }
  void read(std::size_t begin, PolygonBatch& batch) const override {
    auto reader = m_makeReader();
    batch.clear();
    for (std::size_t n = begin; n < std::min(begin + PolygonBatch::SIZE, m_numPolygons); ++n) {
      const bool isShown = reader.readNodes(m_faceAt(n));
      batch.add(reader.corners.ids, isShown ? reader.corners.count : 0);
    }
  }

private:
  std::size_t m_numPolygons;
  std::size_t m_endId;
  const PointView& m_points;
  FaceAt m_faceAt;
  MakeReader m_makeReader;
};

template <class FaceAt, class MakeReader>
std::unique_ptr<PolygonSource> readPolygons(std::size_t numPolygons, std::size_t endId, const PointView& points,
                                            FaceAt faceAt, MakeReader makeReader) {
  return std::make_unique<ReaderPolygons<FaceAt, MakeReader>>(numPolygons, endId, points, std::move(faceAt),
                                                              std::move(makeReader));
}

} // namespace kx
