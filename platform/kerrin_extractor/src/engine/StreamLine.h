// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "ExtractedGeometry.h"
#include "InputAddress.h"

#include <KerrinExtractor/KeXLineMeshCurvilinear.h>

#include <cstdint>
#include <vector>

namespace kx {

class CellHit;

/// One extracted path: its points, the cell of each and the shape functions there, from which any set is mapped.
class StreamLine final : public KeXLineMeshCurvilinear {
public:
  StreamLine();
  const KeXTopologyI& getTopology() const override { return m_topology; }
  const KeXGeometryExplicit& getGeometry() const override { return m_geometry; }

  /// Collects points, up to `finish`, which gives back what memory was too much; `commit` makes them the line's
  /// content, under new time stamps.
  void clear();
  void add(const KbVec3<double>& point, const CellHit& hit);
  /// Whether the last of the collected points is no other than this one.
  bool endsAt(const KbVec3<double>& point) const;
  void finish();
  void commit(const InputAddress& input);

  std::size_t numPoints() const { return m_cells.size(); }
  std::size_t numSegments() const { return m_cells.empty() ? 0 : m_cells.size() - 1; }
  std::size_t cell(std::size_t point) const { return m_cells[point]; }
  const float* weights(std::size_t point) const { return m_weights.data() + m_weightBegins[point]; }

private:
  /// Segment i begins in the input cell of point i.
  class Topology final : public KeXTopologyI {
  public:
    explicit Topology(const StreamLine& line)
        : m_line(line) {}
    std::size_t getTimeStamp() const override { return m_timeStamp; }
    std::size_t getNumCells() const override { return m_line.numSegments(); }
    bool hasStructuredInputCells() const override { return m_input.isStructured; }
    std::size_t getInputCellIndexI(std::size_t cell) const override { return m_input.index(m_line.cell(cell), 0); }
    std::size_t getInputCellIndexJ(std::size_t cell) const override { return m_input.index(m_line.cell(cell), 1); }
    std::size_t getInputCellIndexK(std::size_t cell) const override { return m_input.index(m_line.cell(cell), 2); }
    void commit(const InputAddress& input);

  private:
    const StreamLine& m_line;
    InputAddress m_input;
    std::size_t m_timeStamp = 0;
  };

  std::vector<float> m_collected;
  Array<float> m_vertices;
  std::vector<std::size_t> m_cells;
  std::vector<float> m_weights;
  std::vector<std::uint32_t> m_weightBegins;
  Topology m_topology;
  ExtractedGeometry m_geometry;
};

} // namespace kx
