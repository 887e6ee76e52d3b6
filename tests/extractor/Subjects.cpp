// SPDX-License-Identifier: BSD-3-Clause
#include "extractor/Subjects.h"

#include <KerrinExtractor/KiIsosurfExtractHexahedronIjk.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>

#include <map>
#include <set>

using namespace arrays;

namespace {

class OddFilter final : public KiCellFilterI, public KiCellFilterIjk {
public:
  explicit OddFilter(Counts counts)
      : m_counts(counts) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t cell) const override { return cell % 2 == 0; }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override {
    return acceptCell(i + m_counts[0] * (j + m_counts[1] * k));
  }

private:
  Counts m_counts;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

constexpr int OFFSETS[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

enum class Warp { NONE, AXES, ALL };

/// Lattice nodes over the unit cube and the sets on them.
class LatticeSubject : public Subject {
public:
  LatticeSubject(const SubjectOptions& o, Warp warp)
      : options(o)
      , nodeCounts{o.counts[0] + 1, o.counts[1] + 1, o.counts[2] + 1} {
    const double mirror = o.leftHanded ? -1.0 : 1.0;
    for (std::size_t k = 0; k < nodeCounts[2]; ++k) {
      for (std::size_t j = 0; j < nodeCounts[1]; ++j) {
        for (std::size_t i = 0; i < nodeCounts[0]; ++i) {
          KbVec3<double> u(at(i, 0), at(j, 1), at(k, 2));
          if (warp == Warp::AXES) u = {u[0] * (0.5 + 0.5 * u[0]), u[1], u[2] * (0.7 + 0.3 * u[2])};
          if (warp == Warp::ALL)
            u += {0.02 * std::sin(6.0 * u[1]), 0.02 * std::sin(6.0 * u[2]), 0.02 * std::sin(6.0 * u[0])};
          u[0] *= mirror;
          addNode(u);
        }
      }
    }
  }

protected:
  double at(std::size_t i, std::size_t axis) const {
    return options.counts[axis] > 0 ? static_cast<double>(i) / static_cast<double>(options.counts[axis]) : 0.0;
  }
  void addNode(const KbVec3<double>& p) {
    nodes.push_back(p);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      coordinates.push_back(static_cast<float>(p[axis]));
      vectors.push_back(static_cast<float>(p[axis]));
    }
    values.push_back(static_cast<float>(options.field(p)));
  }
  std::size_t node(std::size_t i, std::size_t j, std::size_t k) const {
    return i + nodeCounts[0] * (j + nodeCounts[1] * k);
  }
  std::vector<std::size_t> latticeCell(std::size_t i, std::size_t j, std::size_t k) const {
    std::vector<std::size_t> corners;
    for (const auto& o : OFFSETS)
      corners.push_back(node(i + static_cast<std::size_t>(o[0]), j + static_cast<std::size_t>(o[1]),
                             k + static_cast<std::size_t>(o[2])));
    return corners;
  }
  void addLatticeCells() {
    for (std::size_t k = 0; k < options.counts[2]; ++k)
      for (std::size_t j = 0; j < options.counts[1]; ++j)
        for (std::size_t i = 0; i < options.counts[0]; ++i)
          cells.push_back(latticeCell(i, j, k));
    numberCells();
  }
  /// Once all cells are there.
  void numberCells() {
    for (std::size_t c = 0; c < cells.size(); ++c) {
      cellValues.push_back(static_cast<float>(c));
      for (int axis = 0; axis < 3; ++axis)
        cellVectors.push_back(static_cast<float>(c));
      if (options.firstDeadCell < cells.size()) dead.push_back(c >= options.firstDeadCell);
    }
  }

  SubjectOptions options;
  Counts nodeCounts;
};

/// Extraction over any extractor class and any mesh; `Base` has made the arrays.
template <Access A, class Extractor, class Mesh>
class ExtractingSubject : public LatticeSubject {
public:
  using LatticeSubject::LatticeSubject;

  const KeXSurfaceMeshUnstructured& extract(const Request& r) override {
    const OddFilter* filter = r.filtered ? &*m_filter : nullptr;
    if (r.perCell) return m_extractor->extract(r.isovalue, cellForm(*m_cellSet), filter);
    return m_extractor->extract(r.isovalue, nodeForm(*m_nodeSet), filter);
  }
  const KeXDataSetI<double>* mapScalars(bool perCell) override {
    return perCell ? m_extractor->extractScalarSet(cellForm(*m_cellSet))
                   : m_extractor->extractScalarSet(nodeForm(*m_nodeSet));
  }
  const KeXDataSetI<KbVec3<double>>* mapVectors(bool perCell) override {
    return perCell ? m_extractor->extractVec3Set(cellForm(*m_cellVectors))
                   : m_extractor->extractVec3Set(nodeForm(*m_nodeVectors));
  }
  KiBaseExtractor& extractor() override { return *m_extractor; }
  void touchValues() override {
    m_nodeSet->touch();
    m_cellSet->touch();
  }
  std::size_t inputCell(std::size_t cell) const override {
    const KeXSurfaceTopologyExplicitI& t = m_extractor->getExtract().getTopology();
    if (!t.hasStructuredInputCells()) return t.getInputCellIndexI(cell);
    return t.getInputCellIndexI(cell) +
           options.counts[0] * (t.getInputCellIndexJ(cell) + options.counts[1] * t.getInputCellIndexK(cell));
  }

protected:
  void finish(std::unique_ptr<Mesh> mesh) {
    m_mesh = std::move(mesh);
    m_extractor.reset(Extractor::getNewInstance(*m_mesh, options.parallel, nullptr));
    m_filter = std::make_unique<OddFilter>(options.counts);
    m_nodeSet = std::make_unique<Set<A, float>>("nodes", DataBinding::PER_NODE, values, nodeCounts);
    m_cellSet = std::make_unique<Set<A, float>>("cells", DataBinding::PER_CELL, cellValues, options.counts);
    m_nodeVectors =
        std::make_unique<Set<A, float, KbVec3<double>>>("nodeVectors", DataBinding::PER_NODE, vectors, nodeCounts);
    m_cellVectors = std::make_unique<Set<A, float, KbVec3<double>>>("cellVectors", DataBinding::PER_CELL, cellVectors,
                                                                    options.counts);
  }

private:
  static constexpr bool nodesAreFlat = !std::is_same_v<Extractor, KiIsosurfExtractIjk>;
  static constexpr bool cellsAreFlat = std::is_same_v<Extractor, KiIsosurfExtractUnstructured>;
  template <class T>
  static const auto& nodeForm(const Set<A, float, T>& set) {
    if constexpr (nodesAreFlat)
      return static_cast<const KiDataSetI<T>&>(set);
    else
      return static_cast<const KiDataSetIjk<T>&>(set);
  }
  template <class T>
  static const auto& cellForm(const Set<A, float, T>& set) {
    if constexpr (cellsAreFlat)
      return static_cast<const KiDataSetI<T>&>(set);
    else
      return static_cast<const KiDataSetIjk<T>&>(set);
  }

  std::unique_ptr<Mesh> m_mesh;
  std::unique_ptr<Extractor> m_extractor;
  std::unique_ptr<OddFilter> m_filter;
  std::unique_ptr<Set<A, float>> m_nodeSet;
  std::unique_ptr<Set<A, float>> m_cellSet;
  std::unique_ptr<Set<A, float, KbVec3<double>>> m_nodeVectors;
  std::unique_ptr<Set<A, float, KbVec3<double>>> m_cellVectors;
};

enum class Cells { HEXAHEDRA, TETRAHEDRA, MIXED };

template <Access A, class Index, Cells C>
class UnstructuredSubject final
    : public ExtractingSubject<A, KiIsosurfExtractUnstructured, UnstructuredMesh<A, Index, float>> {
public:
  explicit UnstructuredSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractUnstructured, UnstructuredMesh<A, Index, float>>(o, Warp::ALL) {
    m_offsets.push_back(0);
    for (std::size_t k = 0; k < o.counts[2]; ++k)
      for (std::size_t j = 0; j < o.counts[1]; ++j)
        for (std::size_t i = 0; i < o.counts[0]; ++i)
          addLatticeCell(i, j, k);
    this->numberCells();
    CellArrays<Index> arrays;
    arrays.connectivity = m_connectivity;
    arrays.numCells = m_shapes.size();
    arrays.numNodes = this->values.size();
    arrays.dead = this->dead;
    m_uniformShape.assign(1, C == Cells::TETRAHEDRA ? KiVolumeCell::TETRAHEDRON : KiVolumeCell::HEXAHEDRON);
    if (C == Cells::MIXED) {
      arrays.offsets = m_offsets;
      arrays.shapes = m_shapes;
      arrays.facets = m_facets;
    } else {
      arrays.shapes = m_uniformShape;
    }
    this->finish(std::make_unique<UnstructuredMesh<A, Index, float>>(this->coordinates, std::move(arrays)));
  }

private:
  void add(KiVolumeCell::Shape shape, const std::vector<std::size_t>& ids) {
    for (const std::size_t id : ids)
      m_connectivity.push_back(static_cast<Index>(id));
    m_offsets.push_back(static_cast<Index>(m_connectivity.size()));
    m_shapes.push_back(static_cast<std::uint8_t>(shape));
    m_facets.emplace_back();
    this->cells.push_back(ids);
  }
  void addLatticeCell(std::size_t i, std::size_t j, std::size_t k) {
    const std::vector<std::size_t> h = this->latticeCell(i, j, k);
    if (C == Cells::HEXAHEDRA) {
      add(KiVolumeCell::HEXAHEDRON, h);
    } else if (C == Cells::TETRAHEDRA) {
      // Around the diagonal 0 - 6, every other one inverted.
      const std::size_t ring[6] = {1, 2, 3, 7, 4, 5};
      for (std::size_t t = 0; t < 6; ++t)
        add(KiVolumeCell::TETRAHEDRON, t % 2 == 0
                                           ? std::vector<std::size_t>{h[0], h[ring[t]], h[ring[(t + 1) % 6]], h[6]}
                                           : std::vector<std::size_t>{h[0], h[6], h[ring[(t + 1) % 6]], h[ring[t]]});
    } else if ((i + j) % 3 == 0) {
      add(KiVolumeCell::WEDGE, {h[0], h[1], h[2], h[4], h[5], h[6]});
      add(KiVolumeCell::WEDGE, {h[4], h[7], h[6], h[0], h[3], h[2]});
    } else if (k % 3 == 0) {
      add(KiVolumeCell::HEXAHEDRON, h);
    } else {
      constexpr std::size_t FACES[6][4] = {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4},
                                           {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}};
      if (k % 3 == 1) {
        KbVec3<double> centre;
        for (const std::size_t n : h)
          centre += this->nodes[n] / 8.0;
        this->addNode(centre);
        for (const auto& f : FACES)
          add(KiVolumeCell::PYRAMID, {h[f[3]], h[f[2]], h[f[1]], h[f[0]], this->values.size() - 1});
      } else {
        add(KiVolumeCell::POLYHEDRON, h);
        for (const auto& f : FACES)
          m_facets.back().emplace_back(f, f + 4);
      }
    }
  }

  std::vector<Index> m_connectivity;
  std::vector<Index> m_offsets;
  std::vector<std::uint8_t> m_shapes;
  std::vector<std::uint8_t> m_uniformShape;
  std::vector<std::vector<std::vector<std::size_t>>> m_facets;
};

template <Access A>
class HexahedronSubject final
    : public ExtractingSubject<A, KiIsosurfExtractHexahedronIjk, HexahedronIjkMesh<A, float>> {
public:
  explicit HexahedronSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractHexahedronIjk, HexahedronIjkMesh<A, float>>(o, Warp::ALL) {
    this->addLatticeCells();
    for (const std::vector<std::size_t>& cell : this->cells)
      for (const std::size_t id : cell)
        m_connectivity.push_back(static_cast<std::int32_t>(id));
    this->finish(
        std::make_unique<HexahedronIjkMesh<A, float>>(o.counts, this->coordinates, m_connectivity, this->dead));
  }

private:
  std::vector<std::int32_t> m_connectivity;
};

template <Access A>
class CornerSubject final : public ExtractingSubject<A, KiIsosurfExtractIjk, CornerMesh> {
public:
  explicit CornerSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractIjk, CornerMesh>(o, Warp::ALL) {
    this->addLatticeCells();
    this->finish(std::make_unique<CornerMesh>(
        o.counts,
        [this](std::size_t i, std::size_t j, std::size_t k, std::size_t c) {
          return this->nodes[this->node(i + static_cast<std::size_t>(OFFSETS[c][0]),
                                        j + static_cast<std::size_t>(OFFSETS[c][1]),
                                        k + static_cast<std::size_t>(OFFSETS[c][2]))];
        },
        this->dead));
  }
};

template <Access A>
class RegularSubject final : public ExtractingSubject<A, KiIsosurfExtractIjk, RegularMesh<A>> {
public:
  explicit RegularSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractIjk, RegularMesh<A>>(o, Warp::NONE) {
    this->addLatticeCells();
    this->finish(std::make_unique<RegularMesh<A>>(o.counts, KbVec3<double>(0.0),
                                                  KbVec3<double>(o.leftHanded ? -1.0 : 1.0, 1.0, 1.0), this->dead));
  }
};

template <Access A>
class RectilinearSubject final : public ExtractingSubject<A, KiIsosurfExtractIjk, RectilinearMesh<A>> {
public:
  explicit RectilinearSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractIjk, RectilinearMesh<A>>(o, Warp::AXES) {
    this->addLatticeCells();
    std::array<std::vector<double>, 3> axes;
    for (std::size_t i = 0; i < this->nodeCounts[0]; ++i)
      axes[0].push_back(this->nodes[this->node(i, 0, 0)][0]);
    for (std::size_t j = 0; j < this->nodeCounts[1]; ++j)
      axes[1].push_back(this->nodes[this->node(0, j, 0)][1]);
    for (std::size_t k = 0; k < this->nodeCounts[2]; ++k)
      axes[2].push_back(this->nodes[this->node(0, 0, k)][2]);
    this->finish(std::make_unique<RectilinearMesh<A>>(o.counts, std::move(axes), this->dead));
  }
};

template <Access A>
class CurvilinearSubject final : public ExtractingSubject<A, KiIsosurfExtractIjk, CurvilinearMesh<A, float>> {
public:
  explicit CurvilinearSubject(const SubjectOptions& o)
      : ExtractingSubject<A, KiIsosurfExtractIjk, CurvilinearMesh<A, float>>(o, Warp::ALL) {
    this->addLatticeCells();
    this->finish(std::make_unique<CurvilinearMesh<A, float>>(o.counts, this->coordinates, this->dead));
  }
};

template <class Kind>
std::unique_ptr<Subject> make(const SubjectOptions& options) {
  return std::make_unique<Kind>(options);
}

} // namespace

const std::vector<SubjectKind>& subjectKinds() {
  static const std::vector<SubjectKind> kinds{
      {"HexahedraRaw32", make<UnstructuredSubject<Access::RAW, std::int32_t, Cells::HEXAHEDRA>>},
      {"HexahedraRaw64", make<UnstructuredSubject<Access::RAW, std::int64_t, Cells::HEXAHEDRA>>},
      {"HexahedraVirtual", make<UnstructuredSubject<Access::VIRTUAL, std::int32_t, Cells::HEXAHEDRA>>},
      {"TetrahedraRaw", make<UnstructuredSubject<Access::RAW, std::int32_t, Cells::TETRAHEDRA>>},
      {"TetrahedraVirtual", make<UnstructuredSubject<Access::VIRTUAL, std::int32_t, Cells::TETRAHEDRA>>},
      {"MixedRaw", make<UnstructuredSubject<Access::RAW, std::int64_t, Cells::MIXED>>},
      {"MixedVirtual", make<UnstructuredSubject<Access::VIRTUAL, std::int32_t, Cells::MIXED>>},
      {"HexahedronIjkRaw", make<HexahedronSubject<Access::RAW>>},
      {"HexahedronIjkVirtual", make<HexahedronSubject<Access::VIRTUAL>>},
      {"VertexHexahedronRawSet", make<CornerSubject<Access::RAW>>},
      {"VertexHexahedronVirtual", make<CornerSubject<Access::VIRTUAL>>},
      {"RegularRaw", make<RegularSubject<Access::RAW>>},
      {"RegularVirtual", make<RegularSubject<Access::VIRTUAL>>},
      {"RectilinearRaw", make<RectilinearSubject<Access::RAW>>},
      {"RectilinearVirtual", make<RectilinearSubject<Access::VIRTUAL>>},
      {"CurvilinearRaw", make<CurvilinearSubject<Access::RAW>>},
      {"CurvilinearVirtual", make<CurvilinearSubject<Access::VIRTUAL>>},
  };
  return kinds;
}

Surface::Surface(const KeXSurfaceMeshUnstructured& mesh) {
  for (std::size_t v = 0; v < mesh.getGeometry().getNumNodes(); ++v)
    vertices.push_back(mesh.getGeometry().getCoord(v));
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell* cell = mesh.getTopology().getCell(c);
    std::vector<std::size_t>& polygon = polygons.emplace_back();
    for (std::size_t i = 0; i < cell->getNumNodes(); ++i)
      polygon.push_back(cell->getNodeIndex(i));
  }
}

KbVec3<double> Surface::normal(std::size_t polygon) const {
  const std::vector<std::size_t>& p = polygons[polygon];
  KbVec3<double> sum;
  for (std::size_t i = 1; i + 1 < p.size(); ++i)
    sum += (vertices[p[i]] - vertices[p[0]]).cross(vertices[p[i + 1]] - vertices[p[0]]);
  return sum;
}

KbVec3<double> Surface::centre(std::size_t polygon) const {
  KbVec3<double> sum;
  for (const std::size_t v : polygons[polygon])
    sum += vertices[v] / static_cast<double>(polygons[polygon].size());
  return sum;
}

double Surface::area() const {
  double sum = 0.0;
  for (const std::vector<std::size_t>& p : polygons)
    for (std::size_t i = 1; i + 1 < p.size(); ++i)
      sum += 0.5 * (vertices[p[i]] - vertices[p[0]]).cross(vertices[p[i + 1]] - vertices[p[0]]).length();
  return sum;
}

std::size_t Surface::numOpenEdges(const std::function<bool(const KbVec3<double>&)>& isOnBoundary) const {
  std::map<std::pair<std::size_t, std::size_t>, long> balance;
  for (const std::vector<std::size_t>& p : polygons) {
    for (std::size_t i = 0; i < p.size(); ++i) {
      const std::size_t a = p[i];
      const std::size_t b = p[(i + 1) % p.size()];
      balance[{std::min(a, b), std::max(a, b)}] += a < b ? 1 : -1;
    }
  }
  std::size_t open = 0;
  for (const auto& [edge, sum] : balance)
    if (sum != 0 && !(isOnBoundary && isOnBoundary(vertices[edge.first]) && isOnBoundary(vertices[edge.second])))
      ++open;
  return open;
}

long Surface::eulerNumber() const {
  std::set<std::pair<std::size_t, std::size_t>> edges;
  std::set<std::size_t> used;
  for (const std::vector<std::size_t>& p : polygons) {
    for (std::size_t i = 0; i < p.size(); ++i) {
      edges.insert(std::minmax(p[i], p[(i + 1) % p.size()]));
      used.insert(p[i]);
    }
  }
  return static_cast<long>(used.size()) - static_cast<long>(edges.size()) + static_cast<long>(polygons.size());
}

std::string bytesOf(const KeXSurfaceMeshUnstructured& mesh) {
  const auto bytes = [](const KiBuffer* b) {
    return b->getByteSize() > 0 ? std::string(static_cast<const char*>(b->getData()), b->getByteSize()) : std::string();
  };
  std::string all = bytes(mesh.getTopology().getIndexBuffer()) + bytes(mesh.getGeometry().getVertexBuffer());
  const KeXSurfaceTopologyExplicitI& topology = mesh.getTopology();
  for (std::size_t c = 0; c < topology.getNumCells(); ++c)
    for (const std::size_t index :
         {topology.getInputCellIndexI(c), topology.getInputCellIndexJ(c), topology.getInputCellIndexK(c)})
      all.append(" ").append(std::to_string(index));
  return all;
}
