// SPDX-License-Identifier: BSD-3-Clause
#include "Tessellation.h"

#include "Array.h"
#include "Blocks.h"
#include "PolygonWriter.h"

#include "src/contract/CellFaces.h"

#include <KerrinExtractor/KiRawArrays.h>
#include <KerrinExtractor/KxTimeStamp.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <optional>

namespace kx {
namespace {

constexpr std::size_t CHUNK = 64; // cells of one step, whose edges fit a cache
using Vertex = EdgeSplitter::Vertex;

/// What a cell yields.
enum Kind : std::uint8_t { NOTHING, TETRAHEDRA, WHOLE };

class Tetrahedron final : public KiVolumeCell {
public:
  void show(const std::array<std::size_t, 4>& nodes) { m_nodes = nodes; }
  std::size_t getNumNodes() const override { return 4; }
  std::size_t getNodeIndex(std::size_t local) const override { return m_nodes[local]; }

private:
  std::array<std::size_t, 4> m_nodes{};
};

void raise(double& shared, double value) {
  const std::atomic_ref<double> greatest(shared);
  double seen = greatest.load(std::memory_order_relaxed);
  while (value > seen && !greatest.compare_exchange_weak(seen, value, std::memory_order_relaxed)) {
  }
}

/// Calls `visit(corners)` for the tetrahedra of a cell.
template <class Visit>
void pullTetrahedra(const CellForm& form, const Visit& visit) {
  const auto code =
      static_cast<std::size_t>((static_cast<int>(form.shape) - static_cast<int>(ReferenceShape::TETRAHEDRON)) % 4);
  const auto* begin = form.nodes.data();
  const auto apex = static_cast<std::size_t>(std::min_element(begin, begin + form.numCorners) - begin);
  const CellFaces& faces = CELL_FACES[code];
  for (std::size_t f = 0; f < faces.numFaces; ++f) {
    const CellFace& face = faces.faces[f];
    const std::size_t n = face.numCorners;
    std::size_t first = 0;
    for (std::size_t c = 1; c < n; ++c)
      if (form.nodes[face.corners[c]] < form.nodes[face.corners[first]]) first = c;
    if (form.nodes[face.corners[first]] == form.nodes[apex]) continue;
    const auto corner = [&](std::size_t step) -> std::size_t { return face.corners[(first + step) % n]; };
    for (std::size_t c = 1; c + 1 < n; ++c) {
      const std::array<std::size_t, 4> corners{corner(0), corner(c), corner(c + 1), apex};
      if (form.nodes[corners[0]] == form.nodes[corners[1]] || form.nodes[corners[1]] == form.nodes[corners[2]] ||
          form.nodes[corners[2]] == form.nodes[corners[0]])
        continue;
      visit(corners);
    }
  }
}

} // namespace

/// The mesh in the form of the contract, over plain arrays.
class Tessellation::Mesh final : public KiVolumeMeshUnstructured {
public:
  class Topology final : public KiVolumeTopologyExplicitI, public KiRawArrays {
  public:
    std::size_t getTimeStamp() const override { return timeStamp; }
    std::size_t getNumCells() const override { return numCells; }
    std::size_t getEndNodeId() const override { return endNode; }
    std::size_t getBeginNodeId() const override { return beginNode; }
    const KiVolumeCell* getCell(std::size_t cell) const override {
      if (cell >= numCells) return nullptr;
      const std::size_t begin = beginOf(cell);
      if (hasPolyhedra && shapes[cell] == KiVolumeCell::POLYHEDRON) return source->getCell((*sources)[cell]);
      thread_local Tetrahedron view;
      view.show({node(begin), node(begin + 1), node(begin + 2), node(begin + 3)});
      return &view;
    }
    KiRawArray getRawArray(Role role) const override {
      switch (role) {
      case CONNECTIVITY:
        return isWide ? KiRawArray{wide.data(), wide.size(), KiRawArray::INT64}
                      : KiRawArray{narrow.data(), narrow.size(), KiRawArray::INT32};
      case OFFSETS:
        if (!hasPolyhedra) return {};
        return isWide ? KiRawArray{wideOffsets.data(), wideOffsets.size(), KiRawArray::INT64}
                      : KiRawArray{narrowOffsets.data(), narrowOffsets.size(), KiRawArray::INT32};
      case SHAPES:
        return {shapes.data(), shapes.size(), KiRawArray::UINT8};
      default:
        return {};
      }
    }

    std::size_t node(std::size_t i) const {
      return isWide ? static_cast<std::size_t>(wide[i]) : static_cast<std::size_t>(narrow[i]);
    }
    std::size_t beginOf(std::size_t cell) const {
      if (!hasPolyhedra) return 4 * cell;
      return isWide ? static_cast<std::size_t>(wideOffsets[cell]) : static_cast<std::size_t>(narrowOffsets[cell]);
    }

    std::size_t timeStamp = KxTimeStamp::getTimeStamp();
    std::size_t numCells = 0;
    std::size_t beginNode = 0;
    std::size_t endNode = 0;
    bool hasPolyhedra = false;
    bool isWide = false;
    Array<std::int32_t> narrow;
    Array<std::int64_t> wide;
    std::vector<std::int32_t> narrowOffsets; ///< only with polyhedra, whose nodes are those of the source
    std::vector<std::int64_t> wideOffsets;
    std::vector<std::uint8_t> shapes{KiVolumeCell::TETRAHEDRON}; ///< a single entry without polyhedra
    const KiVolumeTopologyExplicitI* source = nullptr;
    const IndexArray* sources = nullptr;
  };

  class Geometry final : public KiGeometryI, public KiRawArrays {
  public:
    std::size_t getTimeStamp() const override { return timeStamp; }
    KbVec3<double> getCoord(std::size_t node) const override {
      return {coordinates[3 * node], coordinates[3 * node + 1], coordinates[3 * node + 2]};
    }
    KiRawArray getRawArray(Role role) const override {
      return role == COORDINATES ? KiRawArray{coordinates.data(), coordinates.size(), KiRawArray::FLOAT64}
                                 : KiRawArray{};
    }

    std::size_t timeStamp = KxTimeStamp::getTimeStamp();
    Array<double> coordinates;
  };

  const KiVolumeTopologyExplicitI& getTopology() const override { return topology; }
  const KiGeometryI& getGeometry() const override { return geometry; }

  Topology topology;
  Geometry geometry;
};

/// The tetrahedra of one step.
struct Tessellation::Part {
  std::optional<EdgeSplitter> splitter;
  std::vector<std::uint32_t> corners;
  struct Cell {
    std::size_t source;
    std::uint32_t end; ///< of its corners; a whole cell has none
  };
  std::vector<Cell> cells;
  std::size_t numTetrahedra = 0;
  std::size_t numWhole = 0;
};

Tessellation::Tessellation()
    : m_mesh(std::make_unique<Mesh>()) {}
Tessellation::~Tessellation() = default;

const KiVolumeMeshUnstructured& Tessellation::mesh() const { return *m_mesh; }

std::vector<std::size_t> Tessellation::nameSources(SurfaceData& output) const {
  const Mesh::Topology& topology = m_mesh->topology;
  std::vector<std::size_t> cells(output.numVertices(), NO_CELL);
  std::size_t index = 0;
  for (std::size_t polygon = 0; polygon < output.numCells(); ++polygon, ++index) {
    const std::size_t part = output.inputCells[polygon];
    const std::size_t source = m_sources[part];
    const bool hasForm = !topology.hasPolyhedra || topology.shapes[part] != KiVolumeCell::POLYHEDRON;
    output.inputCells.set(polygon, source);
    for (; output.indices[index] >= 0; ++index)
      if (std::size_t& cell = cells[static_cast<std::size_t>(output.indices[index])]; hasForm && cell == NO_CELL)
        cell = source;
  }
  return cells;
}

void Tessellation::clear() {
  Mesh::Topology& topology = m_mesh->topology;
  topology.numCells = 0;
  topology.beginNode = 0;
  topology.endNode = 0;
  topology.narrow.clear();
  topology.wide.clear();
  topology.shapes.assign(1, KiVolumeCell::TETRAHEDRON);
  topology.timeStamp = KxTimeStamp::getTimeStamp();
  m_mesh->geometry.coordinates.clear();
  m_mesh->geometry.timeStamp = KxTimeStamp::getTimeStamp();
  m_sources.resize(0, 0);
  m_blends = NodeBlends();
  m_middles.clear();
}

bool Tessellation::loadForm(const MeshView& mesh, std::size_t cell, CellForm& form) const {
  if (!form.loadVolume(mesh, cell)) return false;
  if (!m_middles.isEmpty()) form.join(m_middles);
  return true;
}

void Tessellation::build(Run& run, const MeshView& mesh, const KiTessellator& tessellator, const double* values,
                         Faults& faults) {
  clear();
  checkCells(run, mesh, values, faults);
  // Linear cells have to know the edges that they share with quadratic ones.
  bool hasLinear = false;
  CellForm form;
  for (std::size_t cell = 0; cell < mesh.numCells && !hasLinear; ++cell)
    hasLinear = m_kinds[cell] == TETRAHEDRA && form.loadVolume(mesh, cell) && !form.isQuadratic();
  for (std::size_t cell = 0; cell < mesh.numCells && hasLinear; ++cell) {
    if (m_kinds[cell] != TETRAHEDRA || !form.loadVolume(mesh, cell) || !form.isQuadratic()) continue;
    for (std::size_t e = 0; e < form.numEdges(); ++e) {
      const auto [a, b] = form.edge(e);
      m_middles.add(form.nodes[a], form.nodes[b], form.nodes[form.numCorners + e]);
    }
  }

  std::vector<Part> parts(numBlocksOf(mesh.numCells, CHUNK));
  const SplitField field{values, m_spreads.data()};
  run.phase("subdivide cells", parts.size(), [&](std::size_t p) {
    parts[p].splitter.emplace(tessellator, mesh.points, values ? &field : nullptr);
    subdivide(parts[p], mesh, p * CHUNK, std::min((p + 1) * CHUNK, mesh.numCells));
    parts[p].splitter->finish();
  });
  m_spreads = {};
  m_kinds = {};

  m_blends = NodeBlends(mesh.endNode);
  EdgeSplitter::KnownEdges known;
  std::vector<std::vector<std::size_t>> ids(parts.size());
  for (std::size_t p = 0; p < parts.size(); ++p)
    ids[p] = parts[p].splitter->numberNodes(known, m_blends);
  write(run, mesh, parts, ids);
}

void Tessellation::checkCells(Run& run, const MeshView& mesh, const double* values, Faults& faults) {
  m_kinds.assign(mesh.numCells, NOTHING);
  m_spreads.assign(values ? mesh.endNode : 0, 0.0);
  run.phase("look at cells", numBlocksOf(mesh.numCells, CHUNK), [&](std::size_t chunk) {
    CellForm form;
    std::vector<std::vector<std::size_t>> faces;
    std::vector<std::size_t> polyhedron;
    for (std::size_t cell = chunk * CHUNK; cell < std::min((chunk + 1) * CHUNK, mesh.numCells); ++cell) {
      if (mesh.hasClosedCells() && !mesh.isOpen(cell)) continue;
      const bool isForm = form.loadVolume(mesh, cell);
      if (!isForm && !mesh.loadPolyhedron(cell, faces, polyhedron)) {
        faults.add(Faults::UNREADABLE_CELL, cell);
        continue;
      }
      const std::size_t* begin = isForm ? form.nodes.data() : polyhedron.data();
      const std::size_t* end = begin + (isForm ? form.numNodes : polyhedron.size());
      if (!std::all_of(begin, end, [&](std::size_t id) { return mesh.hasNode(id); })) {
        faults.add(Faults::NODE_OUT_OF_RANGE, cell);
        continue;
      }
      if (!std::all_of(begin, end, [&](std::size_t id) { return kx::isFinite(mesh.points[id]); })) {
        faults.add(Faults::COORDINATE_NOT_FINITE, cell);
        continue;
      }
      if (values) {
        const auto [least, greatest] =
            std::minmax_element(begin, end, [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
        if (!std::all_of(begin, end, [&](std::size_t id) { return std::isfinite(values[id]); })) continue;
        const double spread = values[*greatest] - values[*least];
        for (const std::size_t* id = begin; id != end; ++id)
          raise(m_spreads[*id], spread);
      }
      m_kinds[cell] = isForm ? TETRAHEDRA : WHOLE;
    }
  });
  // Where values hardly change at all, what they do is not worth a subdivision.
  constexpr double LEAST_SPREAD = 1e-3;
  const double greatest = m_spreads.empty() ? 0.0 : *std::max_element(m_spreads.begin(), m_spreads.end());
  for (double& spread : m_spreads)
    spread = std::max(spread, LEAST_SPREAD * greatest);
}

void Tessellation::subdivide(Part& part, const MeshView& mesh, std::size_t begin, std::size_t end) const {
  CellForm form;
  for (std::size_t cell = begin; cell < end; ++cell) {
    if (m_kinds[cell] == NOTHING) continue;
    if (m_kinds[cell] == WHOLE) {
      part.cells.push_back({cell, static_cast<std::uint32_t>(part.corners.size())});
      ++part.numWhole;
      continue;
    }
    loadForm(mesh, cell, form);
    std::array<Vertex, 8> corners;
    for (std::size_t c = 0; c < form.numCorners; ++c)
      corners[c] = part.splitter->corner(form, c);
    const std::size_t before = part.corners.size();
    pullTetrahedra(form, [&](const std::array<std::size_t, 4>& t) {
      part.splitter->refine(form, std::array<Vertex, 4>{corners[t[0]], corners[t[1]], corners[t[2]], corners[t[3]]},
                            [&](const std::array<Vertex, 4>& piece) {
                              for (const Vertex& v : piece)
                                part.corners.push_back(v.node);
                            });
    });
    part.numTetrahedra += (part.corners.size() - before) / 4;
    if (part.corners.size() > before) part.cells.push_back({cell, static_cast<std::uint32_t>(part.corners.size())});
  }
}

void Tessellation::write(Run& run, const MeshView& mesh, const std::vector<Part>& parts,
                         const std::vector<std::vector<std::size_t>>& ids) {
  struct Begin {
    std::size_t cell = 0;
    std::size_t node = 0;
  };
  std::vector<Begin> begins(parts.size() + 1);
  bool hasWhole = false;
  for (std::size_t p = 0; p < parts.size(); ++p) {
    begins[p + 1] = {begins[p].cell + parts[p].numTetrahedra + parts[p].numWhole,
                     begins[p].node + parts[p].corners.size()};
    hasWhole |= parts[p].numWhole > 0;
  }
  Mesh::Topology& topology = m_mesh->topology;
  topology.source = std::visit(
      [](const auto& cells) -> const KiVolumeTopologyExplicitI* {
        if constexpr (requires { cells.topology->getCell(std::size_t(0)); })
          return cells.topology;
        else
          return nullptr;
      },
      mesh.cells);
  topology.sources = &m_sources;
  topology.numCells = begins.back().cell;
  topology.hasPolyhedra = hasWhole;
  topology.beginNode = mesh.beginNode;
  topology.endNode = m_blends.endId();
  const std::size_t numNodes = begins.back().node;
  topology.isWide = std::max(topology.endNode, numNodes) > static_cast<std::size_t>(std::numeric_limits<int>::max());
  topology.narrow.resize(topology.isWide ? 0 : numNodes);
  topology.wide.resize(topology.isWide ? numNodes : 0);
  const std::size_t numShapes = hasWhole ? topology.numCells : 1;
  topology.shapes.assign(numShapes, KiVolumeCell::TETRAHEDRON);
  topology.narrowOffsets.assign(hasWhole && !topology.isWide ? numShapes + 1 : 0, 0);
  topology.wideOffsets.assign(hasWhole && topology.isWide ? numShapes + 1 : 0, 0);
  m_sources.resize(topology.numCells, mesh.numCells);
  run.phase("write cells", parts.size(), [&](std::size_t p) {
    std::size_t cell = begins[p].cell;
    std::size_t node = begins[p].node;
    std::size_t corner = 0;
    const auto endCell = [&](std::size_t source) {
      m_sources.set(cell++, source);
      if (!hasWhole) return;
      if (topology.isWide)
        topology.wideOffsets[cell] = static_cast<std::int64_t>(node);
      else
        topology.narrowOffsets[cell] = static_cast<std::int32_t>(node);
    };
    for (const Part::Cell& own : parts[p].cells) {
      if (corner == own.end) {
        topology.shapes[cell] = KiVolumeCell::POLYHEDRON;
        endCell(own.source);
      }
      while (corner < own.end) {
        for (std::size_t c = 0; c < 4; ++c, ++node, ++corner) {
          const std::size_t id = ids[p][parts[p].corners[corner]];
          if (topology.isWide)
            topology.wide[node] = static_cast<std::int64_t>(id);
          else
            topology.narrow[node] = static_cast<std::int32_t>(id);
        }
        endCell(own.source);
      }
    }
  });
  Array<double>& coordinates = m_mesh->geometry.coordinates;
  coordinates.resize(3 * topology.endNode);
  std::fill_n(coordinates.data(), 3 * std::min(topology.beginNode, topology.endNode), 0.0);
  for (std::size_t id = topology.beginNode; id < topology.endNode; ++id) {
    const KbVec3<double> p = m_blends.isAdded(id) ? m_blends.position(id) : mesh.points[id];
    for (std::size_t axis = 0; axis < 3; ++axis)
      coordinates[3 * id + axis] = p[axis];
  }
  topology.timeStamp = KxTimeStamp::getTimeStamp();
  m_mesh->geometry.timeStamp = KxTimeStamp::getTimeStamp();
}

} // namespace kx
