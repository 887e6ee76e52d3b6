// SPDX-License-Identifier: BSD-3-Clause
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiSkinExtractHexahedronIjk.h>
#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <numeric>
#include <random>
#include <set>

namespace {

using namespace pick;
constexpr std::size_t OPEN = static_cast<std::size_t>(-1);

template <class E, class Mesh>
std::unique_ptr<E> makeSkin(const Mesh& mesh) {
  return std::unique_ptr<E>(E::getNewInstance(mesh, false, nullptr));
}
template <class Mesh>
Surface skinOf(const Mesh& mesh) {
  const auto e = makeSkin<KiSkinExtractUnstructured>(mesh);
  return Surface(e->extract(nullptr));
}

/// Faces by their sorted corners that exactly one cell has, counted without any cleverness.
std::size_t bruteForceCount(const KiVolumeMeshUnstructured& mesh, const std::vector<std::uint8_t>& dead) {
  std::map<std::vector<std::size_t>, std::size_t> faces;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    if (!dead.empty() && dead[c] != 0) continue;
    const KiVolumeCell* cell = mesh.getTopology().getCell(c);
    for (std::size_t f = 0; f < cell->getNumFacets(); ++f) {
      std::vector<std::size_t> corners;
      cell->getFacet(f, corners);
      for (std::size_t& id : corners)
        id = cell->getNodeIndex(id);
      std::sort(corners.begin(), corners.end());
      ++faces[corners];
    }
  }
  return static_cast<std::size_t>(
      std::count_if(faces.begin(), faces.end(), [](const auto& face) { return face.second == 1; }));
}

TEST(Skin, OfEveryShapeIsClosedAndPointsOutwards) {
  for (const auto make : {KbMeshMaker::hexahedra, KbMeshMaker::tetrahedra, KbMeshMaker::wedges, KbMeshMaker::pyramids,
                          KbMeshMaker::mixed}) {
    const KbMeshMaker::Arrays a = make({5, 4, 3}, 0.03, KbMeshMaker::wave);
    const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
    const Surface s = skinOf(mesh);
    EXPECT_EQ(s.numOpenEdges(), 0u);
    EXPECT_EQ(s.polygons.size(), bruteForceCount(mesh, {}));
    EXPECT_NEAR(s.volume(), 1.0, 0.01);
  }
}

TEST(Skin, WithRandomHolesAgreesWithBruteForce) {
  const KbMeshMaker::Arrays a = KbMeshMaker::mixed({12, 9, 11}, 0.03);
  const std::size_t numCells = a.shapes.size();
  std::mt19937 random(7);
  for (int turn = 0; turn < 5; ++turn) {
    std::vector<std::uint8_t> dead(numCells);
    for (std::uint8_t& d : dead)
      d = random() % 5 < static_cast<unsigned>(turn);
    const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells(), dead);
    const Surface s = skinOf(mesh);
    EXPECT_EQ(s.polygons.size(), bruteForceCount(mesh, dead)) << turn;
    EXPECT_EQ(s.numOpenEdges(), 0u) << turn;
  }
}

TEST(Skin, OfALargeMeshHasTheFacesOfTheCube) {
  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({40, 41, 42}, 0.03);
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  const std::unique_ptr<KiSkinExtractUnstructured> e(KiSkinExtractUnstructured::getNewInstance(mesh, true, nullptr));
  const Surface s(e->extract(nullptr));
  EXPECT_EQ(s.polygons.size(), 2u * (40 * 41 + 41 * 42 + 40 * 42));
  EXPECT_EQ(s.vertices.size(), s.polygons.size() + 2); // Euler: quadrangles on a sphere
  EXPECT_EQ(s.numOpenEdges(), 0u);
}

TEST(Skin, InvertedCellsPointOutwardsToo) {
  KbMeshMaker::Arrays a = KbMeshMaker::mixed({4, 4, 4}, 0.02);
  for (std::size_t v = 0; v < a.coordinates.size(); v += 3)
    a.coordinates[v] = -a.coordinates[v];
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  EXPECT_NEAR(skinOf(mesh).volume(), 1.0, 0.01);

  Curvilinear grid({5, 4, 3});
  for (std::size_t v = 0; v < grid.arrays.coordinates.size(); v += 3)
    grid.arrays.coordinates[v] = -grid.arrays.coordinates[v];
  grid.mesh.touchGeometry();
  EXPECT_NEAR(Surface(makeSkin<KiSkinExtractIjk>(grid.mesh)->extract(nullptr)).volume(), 1.0, 0.02);
  const KbVolumeMeshRegular mirrored({3, 3, 3}, {1, 0, 0}, {0, 1, 1});
  EXPECT_NEAR(Surface(makeSkin<KiSkinExtractIjk>(mirrored)->extract(nullptr)).volume(), 1.0, 1e-6);
}

TEST(Skin, OneInvertedCellAmongOthersKeepsTheSurfaceConsistent) {
  KbMeshMaker::Arrays a = KbMeshMaker::tetrahedra({2, 2, 2});
  for (std::size_t cell = 0; cell < a.connectivity.size() / 4; cell += 3)
    std::swap(a.connectivity[4 * cell + 1], a.connectivity[4 * cell + 2]);
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  const Surface s = skinOf(mesh);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.volume(), 1.0, 1e-6);
}

TEST(Skin, CollapsedFacesAreDroppedAndDoubledCornersMerge) {
  // A hexahedron whose upper face is collapsed to a line: a wedge lying on its side.
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0.5f, 1, 1, 0.5f, 1};
  const std::vector<std::int32_t> nodes{0, 1, 2, 3, 4, 5, 5, 4};
  const KbVolumeMeshUnstructured mesh(xyz, KbCells(KiVolumeCell::HEXAHEDRON, nodes));
  const Surface s = skinOf(mesh);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.volume(), 0.5, 1e-6);
  std::multiset<std::size_t> corners;
  for (const auto& p : s.polygons)
    corners.insert(p.size());
  EXPECT_EQ(corners, (std::multiset<std::size_t>{3, 3, 4, 4, 4}));
}

TEST(Skin, ATriangleOfADegenerateHexahedronMatchesAWedge) {
  // The hexahedron's side at x = 1 is a triangle, and so is the wedge's first face.
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 0, 0, 1,
                               1, 0, 1, 0, 1, 1, 2, 0, 0, 2, 1, 0, 2, 0, 1};
  const std::vector<std::int32_t> nodes{0, 1, 2, 3, 4, 5, 2, 6, /* wedge */ 1, 2, 5, 7, 8, 9};
  const std::vector<std::int32_t> offsets{0, 8, 14};
  const std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON, KiVolumeCell::WEDGE};
  const KbVolumeMeshUnstructured mesh(xyz, KbCells(shapes, nodes, offsets));
  const Surface s = skinOf(mesh);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_EQ(s.polygons.size(), 6u + 5u - 2u);
}

TEST(Skin, AFlatCellHidesNothing) {
  // Two cubes with a cell of no thickness on top of the upper one.
  KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({1, 1, 2});
  a.connectivity.insert(a.connectivity.end(), {8, 9, 11, 10, 8, 9, 11, 10});
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  const Surface s = skinOf(mesh);
  EXPECT_EQ(s.polygons.size(), 10u);
  EXPECT_EQ(s.numOpenEdges(), 0u);
}

TEST(Skin, AFaceOfThreeCellsIsNoSkin) {
  const std::vector<float> xyz{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, -1, 1, 1, 1};
  const std::vector<std::int32_t> nodes{0, 1, 2, 3, 0, 2, 1, 4, 0, 1, 2, 5};
  const KbVolumeMeshUnstructured mesh(xyz, KbCells(KiVolumeCell::TETRAHEDRON, nodes));
  EXPECT_EQ(skinOf(mesh).polygons.size(), 9u);
}

TEST(Skin, OfPolyhedraMatchesTheirNeighbours) {
  // A cube as a polyhedron on a cube as a hexahedron.
  const KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({1, 1, 2});
  const std::vector<std::int32_t> offsets{0, 8, 16};
  const std::vector<std::uint8_t> shapes{KiVolumeCell::HEXAHEDRON, KiVolumeCell::POLYHEDRON};
  const std::vector<std::int32_t>& n = a.connectivity;
  std::vector<std::int32_t> faces{6};
  for (const auto& f : {std::array{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}}) {
    faces.push_back(4);
    for (const int c : f)
      faces.push_back(n[8 + static_cast<std::size_t>(c)]);
  }
  const std::vector<std::int32_t> faceOffsets{0, 0, static_cast<std::int32_t>(faces.size())};
  const KbVolumeMeshUnstructured mesh(a.coordinates,
                                      KbCells(shapes, a.connectivity, offsets).setFaces(faces, faceOffsets));
  ASSERT_EQ(mesh.getTopology().getNumCells(), 2u);
  const Surface s = skinOf(mesh);
  EXPECT_EQ(s.polygons.size(), 10u);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.volume(), 1.0, 1e-6);
}

/// Upright prisms on each other, over a regular polygon, from nowhere but the virtual operations.
class Prisms final : public KiVolumeMeshUnstructured {
public:
  Prisms(std::size_t numCorners, std::size_t numPrisms)
      : m_topology(numCorners, numPrisms)
      , m_geometry(numCorners) {}
  const KiVolumeTopologyExplicitI& getTopology() const override { return m_topology; }
  const KiGeometryI& getGeometry() const override { return m_geometry; }

private:
  class Prism final : public KiVolumeCell {
  public:
    Prism(std::size_t numCorners, std::size_t layer)
        : m_n(numCorners)
        , m_layer(layer) {}
    Shape getShape() const override { return POLYHEDRON; }
    std::size_t getNumNodes() const override { return 2 * m_n; }
    std::size_t getNodeIndex(std::size_t local) const override { return m_layer * m_n + local; }
    std::size_t getNumFacets() const override { return m_n + 2; }
    void getFacet(std::size_t facet, std::vector<std::size_t>& local) const override {
      const std::size_t next = (facet + 1) % m_n;
      local = {facet, next, next + m_n, facet + m_n};
      if (facet < m_n) return;
      local.resize(m_n); // the lower end, downwards, or the upper one
      for (std::size_t c = 0; c < m_n; ++c)
        local[c] = facet == m_n ? m_n - 1 - c : m_n + c;
    }

  private:
    std::size_t m_n;
    std::size_t m_layer;
  };
  struct Topology final : KiVolumeTopologyExplicitI {
    Topology(std::size_t n, std::size_t numPrisms)
        : endNode(n * (numPrisms + 1)) {
      for (std::size_t p = 0; p < numPrisms; ++p)
        prisms.emplace_back(n, p);
    }
    std::size_t getTimeStamp() const override { return 1; }
    std::size_t getNumCells() const override { return prisms.size(); }
    const KiVolumeCell* getCell(std::size_t cell) const override { return &prisms[cell]; }
    std::size_t getEndNodeId() const override { return endNode; }
    std::vector<Prism> prisms;
    std::size_t endNode;
  };
  struct Geometry final : KiGeometryI {
    explicit Geometry(std::size_t numCorners)
        : n(numCorners) {}
    std::size_t getTimeStamp() const override { return 1; }
    Vec3 getCoord(std::size_t node) const override {
      const double angle = 2.0 * std::numbers::pi * static_cast<double>(node % n) / static_cast<double>(n);
      return {std::cos(angle), std::sin(angle), static_cast<double>(node / n)};
    }
    std::size_t n;
  };
  Topology m_topology;
  Geometry m_geometry;
};

TEST(Skin, FacesOfManyCornersMatch) {
  const Surface s = skinOf(Prisms(7, 3));
  EXPECT_EQ(s.polygons.size(), 3u * 7u + 2u);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.volume(), 3.0 * 3.5 * std::sin(2.0 * std::numbers::pi / 7.0), 1e-5);
}

TEST(Skin, NeitherCornersNorFacesAreCutOff) {
  constexpr std::size_t n = 70000; // more than 16 bits of both
  const Surface s = skinOf(Prisms(n, 1));
  ASSERT_EQ(s.polygons.size(), n + 2);
  EXPECT_EQ(s.polygons[n].size(), n);
  EXPECT_EQ(s.polygons[n + 1].size(), n);
  EXPECT_EQ(s.numOpenEdges(), 0u);
  EXPECT_NEAR(s.volume(), std::numbers::pi, 1e-4);
}

TEST(Skin, CellRangesSelectTheirUnion) {
  const Unstructured kind({10, 1, 1});
  const auto e = makeSkin<KiSkinExtractUnstructured>(kind.mesh);
  const auto count = [&] { return e->extract(nullptr).getTopology().getNumCells(); };
  EXPECT_EQ(count(), 42u);
  e->addCellRange(0, 1);
  EXPECT_EQ(count(), 6u);
  e->addCellRange(2, 4);
  EXPECT_EQ(count(), 6u + 10u);
  e->addCellRange(1, 3);
  EXPECT_EQ(count(), 18u);
  e->addCellRange(7, OPEN);
  EXPECT_EQ(count(), 18u + 14u);
  e->clearCellRanges();
  e->addCellRange(OPEN, 2);
  EXPECT_EQ(count(), 10u);
  e->clearCellRanges();
  e->addCellRange(20, 30);
  EXPECT_EQ(count(), 0u);
  e->clearCellRanges();
  EXPECT_EQ(count(), 42u);
}

TEST(Skin, StructuredRangesSelectBoxes) {
  const Regular kind({70, 4, 3});
  const auto e = makeSkin<KiSkinExtractIjk>(kind.mesh);
  using Bounds = KbVec3<std::size_t>;
  e->addCellRange(Bounds(10, 1, OPEN), Bounds(66, OPEN, 2));
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 2u * (56 * 3 + 56 * 2 + 3 * 2));
  e->addCellRange(Bounds(OPEN, OPEN, OPEN), Bounds(OPEN, OPEN, OPEN));
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 2u * (70 * 4 + 70 * 3 + 4 * 3));
}

/// The skin of a box is made by arithmetic; a filter has every cell asked, and must come to the same.
template <class Kind>
void expectBoxesLikeCells(const Counts& n) {
  const Kind kind(n);
  std::vector<std::size_t> all(n[0] * n[1] * n[2]);
  std::iota(all.begin(), all.end(), std::size_t{0});
  const auto acceptAll = FormIjk::filter(all, n);
  using Bounds = KbVec3<std::size_t>;
  const std::vector<std::pair<Bounds, Bounds>> boxes{{Bounds(OPEN), Bounds(OPEN)},
                                                     {Bounds(1, 0, 2), Bounds(4, OPEN, OPEN)},
                                                     {Bounds(2, 3, 1), Bounds(3, 4, 2)},
                                                     {Bounds(0, 1, 0), Bounds(OPEN, 2, OPEN)},
                                                     {Bounds(5, 0, 0), Bounds(3, OPEN, OPEN)},
                                                     {Bounds(OPEN, 50, OPEN), Bounds(OPEN)}};
  for (const auto& [min, max] : boxes) {
    const auto e = makeSkin<KiSkinExtractIjk>(kind.mesh);
    e->addCellRange(min, max);
    const std::string box = bytesOf(e->extract(nullptr));
    EXPECT_EQ(box, bytesOf(e->extract(&acceptAll))) << min[0] << ' ' << min[1] << ' ' << min[2];
    const std::unique_ptr<KiSkinExtractIjk> parallel(KiSkinExtractIjk::getNewInstance(kind.mesh, true, nullptr));
    parallel->addCellRange(min, max);
    EXPECT_EQ(bytesOf(parallel->extract(nullptr)), box);
  }
}

TEST(Skin, OfABoxIsThatOfItsCells) {
  for (const Counts& n : {Counts{6, 5, 4}, Counts{1, 1, 1}, Counts{9, 1, 3}, Counts{3, 20, 17}}) {
    expectBoxesLikeCells<Regular>(n);
    expectBoxesLikeCells<Rectilinear>(n);
    expectBoxesLikeCells<Curvilinear>(n);
  }
}

TEST(Skin, FaultedNeighboursBothStayVisible) {
  VertexHexahedronIjk kind({2, 1, 1});
  const auto e = makeSkin<KiSkinExtractIjk>(kind.mesh);
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 10u);
  for (std::size_t z = 0; z < kind.zcorn.size(); ++z)
    if (z % 4 >= 2) kind.zcorn[z] += 0.5f;
  kind.mesh.touchGeometry();
  const Surface s(e->extract(nullptr));
  EXPECT_EQ(s.polygons.size(), 12u);
  EXPECT_EQ(s.numOpenEdges(), 0u);

  HexahedronIjk hexa({2, 1, 1});
  hexa.arrays.coordinates.insert(hexa.arrays.coordinates.end(), {0.5f, 0.1f, 0.1f});
  std::vector<std::int32_t> torn = hexa.arrays.connectivity;
  torn[8] = 12; // the second cell's corner 0 is another node than the first one's corner 1
  const KbVolumeMeshHexahedronIjk tornMesh({2, 1, 1}, hexa.arrays.coordinates, torn);
  EXPECT_EQ(makeSkin<KiSkinExtractHexahedronIjk>(tornMesh)->extract(nullptr).getTopology().getNumCells(), 12u);
}

TEST(Skin, PinchedCornerCellsLeaveNoCollapsedFaces) {
  VertexHexahedronIjk kind({1, 1, 1});
  std::fill(kind.zcorn.begin() + 4, kind.zcorn.end(), 0.0f);
  kind.zcorn[7] = 1.0f; // one corner stands: a pyramid-like rest over two sides
  kind.mesh.touchGeometry();
  const Surface s(makeSkin<KiSkinExtractIjk>(kind.mesh)->extract(nullptr));
  std::multiset<std::size_t> corners;
  for (const auto& p : s.polygons)
    corners.insert(p.size());
  EXPECT_EQ(corners, (std::multiset<std::size_t>{3, 3, 4, 4}));
}

TEST(Skin, BadCellsAreToldOnceAndSkipped) {
  KbMeshMaker::Arrays a = KbMeshMaker::hexahedra({3, 3, 3});
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  a.connectivity[8 * 13] = 1000; // the cell in the middle, after the mesh has checked its cells
  const MessageLog log;
  EXPECT_EQ(skinOf(mesh).polygons.size(), 54u + 6u);
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0],
            "KiSkinExtractUnstructured::extract: cell 13 has a node id that is out of range; such cells are skipped");
}

TEST(Skin, PositionsThatAreNotFiniteAreToldAndTheirFacesLeftOut) {
  Curvilinear kind({3, 3, 3});
  kind.arrays.coordinates[0] = std::numeric_limits<float>::quiet_NaN();
  kind.mesh.touchGeometry();
  const auto e = makeSkin<KiSkinExtractIjk>(kind.mesh);
  const MessageLog log;
  EXPECT_EQ(e->extract(nullptr).getTopology().getNumCells(), 51u);
  EXPECT_EQ(log.lines.size(), 1u);
}

} // namespace
