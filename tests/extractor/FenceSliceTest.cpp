// SPDX-License-Identifier: BSD-3-Clause
// Curtains through volume meshes: areas by closed formulas and by brute force, and no gap at the joints.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiFenceSliceExtractHexahedronIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>

#include <cmath>
#include <memory>
#include <random>
#include <set>
#include <utility>

namespace {

using namespace pick;
using Polyline = std::vector<Vec3>;

constexpr double FAR = 100.0;

enum class Cells { TETRAHEDRA, HEXAHEDRA, WEDGES, PYRAMIDS, MIXED, POLYHEDRA, BLOCKS };

/// Cells that fill the unit cube; inner nodes are moved at random, so that no face inside is flat, and those on the
/// hull stay.
struct Cube {
  Cube(Cells cells, std::size_t n, double jitter, unsigned seed = 1)
      : arrays(make(cells, n)) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> move(-static_cast<float>(jitter), static_cast<float>(jitter));
    const std::size_t numNodes = arrays.coordinates.size() / 3;
    for (std::size_t node = 0; node < numNodes; ++node) {
      float* p = arrays.coordinates.data() + 3 * node;
      for (std::size_t axis = 0; axis < 3; ++axis)
        if (p[axis] > 0.001f && p[axis] < 0.999f) p[axis] += move(random) / static_cast<float>(n);
    }
    KbCells all = arrays.cells();
    if (cells == Cells::POLYHEDRA || cells == Cells::BLOCKS) {
      makePolyhedra(cells == Cells::BLOCKS ? 2 : 1);
      all = KbCells(KiVolumeCell::POLYHEDRON, arrays.connectivity, offsets).setFaces(faces, faceOffsets);
    }
    mesh = std::make_unique<KbVolumeMeshUnstructured>(arrays.coordinates, all);
  }

  KbMeshMaker::Arrays arrays;
  std::vector<std::int32_t> faces;
  std::vector<std::int32_t> faceOffsets{0};
  std::vector<std::int32_t> offsets{0};
  std::unique_ptr<KbVolumeMeshUnstructured> mesh;

  Vec3 point(std::size_t node) const {
    const float* p = arrays.coordinates.data() + 3 * node;
    return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
  }

private:
  static KbMeshMaker::Arrays make(Cells cells, std::size_t n) {
    const Counts counts{n, n, n};
    switch (cells) {
    case Cells::TETRAHEDRA:
      return KbMeshMaker::tetrahedra(counts, 0.0, linear);
    case Cells::WEDGES:
      return KbMeshMaker::wedges(counts, 0.0, linear);
    case Cells::PYRAMIDS:
      return KbMeshMaker::pyramids(counts, 0.0, linear);
    case Cells::MIXED:
      return KbMeshMaker::mixed(counts, 0.0, linear);
    default:
      return KbMeshMaker::hexahedra(counts, 0.0, linear);
    }
  }
  /// Polyhedra of so many hexahedra in a row along x: their long faces have two corners a hexahedron more than four.
  void makePolyhedra(std::size_t length) {
    const std::vector<std::int32_t> hexahedra = std::exchange(arrays.connectivity, {});
    const auto cornerOf = [&](std::size_t cell, std::size_t corner) { return hexahedra[8 * cell + corner]; };
    for (std::size_t first = 0; first < hexahedra.size() / 8; first += length) {
      const std::size_t last = first + length - 1;
      faces.push_back(6);
      const auto addFace = [&](const std::vector<std::int32_t>& ids) {
        faces.push_back(static_cast<std::int32_t>(ids.size()));
        faces.insert(faces.end(), ids.begin(), ids.end());
      };
      addFace({cornerOf(first, 3), cornerOf(first, 0), cornerOf(first, 4), cornerOf(first, 7)});
      addFace({cornerOf(last, 1), cornerOf(last, 2), cornerOf(last, 6), cornerOf(last, 5)});
      // Along an edge at the left of each long face, and back along the one at its right.
      constexpr std::size_t SIDES[4][4] = {{0, 1, 5, 4}, {7, 6, 2, 3}, {3, 2, 1, 0}, {4, 5, 6, 7}};
      for (const auto& side : SIDES) {
        std::vector<std::int32_t> ids{cornerOf(first, side[0])};
        for (std::size_t cell = first; cell <= last; ++cell)
          ids.push_back(cornerOf(cell, side[1]));
        ids.push_back(cornerOf(last, side[2]));
        for (std::size_t cell = last + 1; cell-- > first;)
          ids.push_back(cornerOf(cell, side[3]));
        addFace(ids);
      }
      std::set<std::int32_t> nodes;
      for (std::size_t c = 8 * first; c < 8 * (last + 1); ++c)
        nodes.insert(hexahedra[c]);
      arrays.connectivity.insert(arrays.connectivity.end(), nodes.begin(), nodes.end());
      faceOffsets.push_back(static_cast<std::int32_t>(faces.size()));
      offsets.push_back(static_cast<std::int32_t>(arrays.connectivity.size()));
    }
  }
};

std::unique_ptr<KiFenceSliceExtractUnstructured> fenceOn(const Cube& cube, bool parallel = false) {
  return std::unique_ptr<KiFenceSliceExtractUnstructured>(
      KiFenceSliceExtractUnstructured::getNewInstance(*cube.mesh, parallel, nullptr));
}

/// The distance of a point from the line through `q` along `direction`.
double distanceFromLine(const Vec3& p, const Vec3& q, const Vec3& direction) {
  const Vec3 d = direction.normalized();
  return ((p - q) - d * d.dot(p - q)).length();
}

/// Edges that are not run through as often one way as the other, but for those on the cube's hull and on the lines
/// through the two ends of an open fence.
std::size_t numGaps(const Surface& s, const Vec3& direction, const Polyline& polyline) {
  std::map<std::pair<std::size_t, std::size_t>, int> edges;
  for (const std::vector<std::size_t>& ids : s.polygons)
    for (std::size_t c = 0; c < ids.size(); ++c) {
      const std::size_t a = ids[c];
      const std::size_t b = ids[(c + 1) % ids.size()];
      edges[std::minmax(a, b)] += a < b ? 1 : -1;
    }
  const auto isOnHull = [](const Vec3& p, const Vec3& q) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      for (const double side : {0.0, 1.0})
        if (std::abs(p[axis] - side) < 1e-6 && std::abs(q[axis] - side) < 1e-6) return true;
    return false;
  };
  const bool isClosed = distanceFromLine(polyline.front(), polyline.back(), direction) < 1e-9;
  std::size_t gaps = 0;
  for (const auto& [edge, balance] : edges) {
    const Vec3& p = s.vertices[edge.first];
    const Vec3& q = s.vertices[edge.second];
    if (balance == 0 || isOnHull(p, q)) continue;
    bool isAtEnd = false;
    for (const Vec3& end : {polyline.front(), polyline.back()})
      isAtEnd |= !isClosed && distanceFromLine(p, end, direction) < 1e-6 && distanceFromLine(q, end, direction) < 1e-6;
    gaps += !isAtEnd;
  }
  return gaps;
}

/// The part of a convex polygon with n . p <= d.
Polyline clipped(const Polyline& polygon, const Vec3& n, double d) {
  Polyline result;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Vec3& p = polygon[i];
    const Vec3& q = polygon[(i + 1) % polygon.size()];
    const double a = n.dot(p) - d;
    const double b = n.dot(q) - d;
    if (a <= 0.0) result.push_back(p);
    if ((a < 0.0 && b > 0.0) || (a > 0.0 && b < 0.0)) result.push_back(p + (q - p) * (a / (a - b)));
  }
  return result;
}

double areaOf(const Polyline& polygon) {
  Vec3 sum;
  for (std::size_t c = 1; c + 1 < polygon.size(); ++c)
    sum += (polygon[c] - polygon[0]).cross(polygon[c + 1] - polygon[0]);
  return 0.5 * sum.length();
}

/// The strip of one segment, long enough for everything near the unit cube.
Polyline stripOf(const Vec3& direction, const Vec3& a, const Vec3& b) {
  const Vec3 d = direction.normalized();
  const auto flat = [&d](const Vec3& p) { return p - d * d.dot(p); };
  return {flat(a) - d * FAR, flat(b) - d * FAR, flat(b) + d * FAR, flat(a) + d * FAR};
}

/// The area of a fence within the unit cube.
double areaInCube(const Vec3& direction, const Polyline& polyline) {
  double area = 0.0;
  for (std::size_t s = 0; s + 1 < polyline.size(); ++s) {
    Polyline strip = stripOf(direction, polyline[s], polyline[s + 1]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      Vec3 normal(0.0);
      normal[axis] = 1.0;
      strip = clipped(clipped(strip, normal, 1.0), -normal, 0.0);
    }
    area += areaOf(strip);
  }
  return area;
}

/// The same within each tetrahedron.
std::vector<double> areasInTetrahedra(const Cube& cube, const Vec3& direction, const Polyline& polyline) {
  std::vector<double> areas;
  for (std::size_t c = 0; c < cube.arrays.connectivity.size(); c += 4) {
    std::array<Vec3, 4> p;
    for (std::size_t i = 0; i < 4; ++i)
      p[i] = cube.point(static_cast<std::size_t>(cube.arrays.connectivity[c + i]));
    double area = 0.0;
    for (std::size_t s = 0; s + 1 < polyline.size(); ++s) {
      Polyline strip = stripOf(direction, polyline[s], polyline[s + 1]);
      for (std::size_t i = 0; i < 4; ++i) {
        const Vec3 &a = p[(i + 1) % 4], &b = p[(i + 2) % 4], &e = p[(i + 3) % 4];
        Vec3 normal = (b - a).cross(e - a);
        if (normal.dot(p[i] - a) > 0.0) normal = -normal;
        strip = clipped(strip, normal, normal.dot(a));
      }
      area += areaOf(strip);
    }
    areas.push_back(area);
  }
  return areas;
}

Polyline randomPolyline(std::mt19937& random, std::size_t numPoints, double low, double high) {
  std::uniform_real_distribution<double> at(low, high);
  Polyline polyline;
  for (std::size_t i = 0; i < numPoints; ++i)
    polyline.emplace_back(at(random), at(random), at(random));
  return polyline;
}

class FenceSlice : public testing::TestWithParam<Cells> {};

TEST_P(FenceSlice, HasTheAreaOfTheCurtainAndNoGap) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> component(-1.0, 1.0);
  for (unsigned round = 0; round < 40; ++round) {
    const Cube cube(GetParam(), 4, 0.15, round);
    const Vec3 direction(component(random), component(random), component(random));
    const Polyline polyline = randomPolyline(random, 2 + round % 5, -0.2, 1.2);
    MessageLog log;
    const auto fence = fenceOn(cube);
    const Surface s(fence->extract(direction, polyline, nullptr));
    EXPECT_NEAR(s.area(), areaInCube(direction, polyline), 1e-4) << round;
    EXPECT_EQ(numGaps(s, direction, polyline), 0u) << round;
    EXPECT_TRUE(log.lines.empty());
    for (const std::vector<std::size_t>& polygon : s.polygons)
      EXPECT_EQ(std::set<std::size_t>(polygon.begin(), polygon.end()).size(), polygon.size());
  }
}

TEST_P(FenceSlice, JointsOnTheLatticeLeaveNoGap) {
  // Along faces and edges of the cells, through nodes, around corners, back on itself, closed.
  const double h = 0.25;
  const std::vector<Polyline> polylines{
      {{h, h, 0}, {3 * h, h, 0}, {3 * h, 3 * h, 0}, {h, 3 * h, 0}, {h, h, 0}},
      {{h, h, 0}, {2 * h, 2 * h, 0}, {3 * h, h, 0}},
      {{0.1, h, 0.3}, {2 * h, h, 0}, {0.9, h, -4}},
      {{0.1, 0.1, 0}, {2 * h, 2 * h, 0}, {0.9, 0.3, 0}},
      {{h, 0.1, 0}, {h, 0.6, 0}, {0.8, 0.6, 0}},
      {{0.3, 0.3, 0}, {2 * h, 0.4, 0}, {2 * h, 0.6, 0}, {0.4, 2 * h, 0}, {0.3, 0.3, 0}},
      {{0, 0, 0}, {1, 1, 0}, {0.9, 0, 0}, {0, 1, 0}},
      {{0.3, 0.3, 0}, {0.8, 0.3, 0}, {0.4, 0.3, 0}, {0.4, 0.9, 0}},
  };
  for (const double jitter : {0.0, 0.2}) {
    const Cube cube(GetParam(), 4, jitter);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      for (std::size_t p = 0; p < polylines.size(); ++p) {
        SCOPED_TRACE(std::to_string(jitter) + ", axis " + std::to_string(axis) + ", polyline " + std::to_string(p));
        Vec3 direction(0.0);
        direction[axis] = -2.0;
        Polyline polyline; // turned to the axis
        for (const Vec3& q : polylines[p]) {
          Vec3 turned;
          for (std::size_t a = 0; a < 3; ++a)
            turned[(axis + 1 + a) % 3] = q[a];
          polyline.push_back(turned);
        }
        const auto fence = fenceOn(cube);
        const Surface s(fence->extract(direction, polyline, nullptr));
        EXPECT_NEAR(s.area(), areaInCube(direction, polyline), 1e-5);
        EXPECT_EQ(numGaps(s, direction, polyline), 0u);
      }
    }
  }
}

TEST_P(FenceSlice, JointsAlongDiagonalsOfTheLatticeLeaveNoGap) {
  // Thirds and slanting directions: what lies on a joint does so but for a rounding.
  const double t = 1.0 / 3.0;
  const std::vector<Vec3> directions{{1, 1, 1}, {1, 1, 0}, {0, -1, 1}, {1, 2, 0}};
  const std::vector<Polyline> polylines{{{t, 0, t}, {t, 2 * t, t}, {2 * t, 0, 2 * t}},
                                        {{0, t, t}, {2 * t, t, t}, {t, 2 * t, t}, {0, t, t}},
                                        {{0.1, 0.2, 0.3}, {t, t, 0}, {2 * t, 0.1, 1.0}}};
  for (const double jitter : {0.0, 0.15}) {
    const Cube cube(GetParam(), 6, jitter);
    for (std::size_t d = 0; d < directions.size(); ++d)
      for (std::size_t p = 0; p < polylines.size(); ++p) {
        SCOPED_TRACE(std::to_string(jitter) + ", direction " + std::to_string(d) + ", polyline " + std::to_string(p));
        const auto fence = fenceOn(cube);
        const Surface s(fence->extract(directions[d], polylines[p], nullptr));
        EXPECT_NEAR(s.area(), areaInCube(directions[d], polylines[p]), 1e-5);
        EXPECT_EQ(numGaps(s, directions[d], polylines[p]), 0u);
      }
  }
}

TEST_P(FenceSlice, MapsLinearFieldsExactly) {
  const Cube cube(GetParam(), 4, 0.25);
  // The field belongs to the places before they were moved: take the coordinates themselves as a set.
  const KbVec3SetI positions("positions", DataBinding::PER_NODE, cube.arrays.coordinates);
  std::vector<float> flat;
  for (std::size_t c = 0; c < cube.mesh->getTopology().getNumCells(); ++c)
    flat.push_back(static_cast<float>(c));
  const KbScalarSetI numbers("numbers", DataBinding::PER_CELL, flat);
  const auto fence = fenceOn(cube);
  const auto& mesh = fence->extract({0.3, -0.2, 1.0}, {{0.1, 0.2, 0}, {0.55, 0.61, 0}, {0.9, 0.2, 0.4}}, nullptr);
  const KeXDataSetI<Vec3>* mapped = fence->extractVec3Set(positions);
  const KeXDataSetI<double>* cells = fence->extractScalarSet(numbers);
  ASSERT_TRUE(mapped && cells);
  ASSERT_GT(mapped->getSize(), 50u);
  ASSERT_EQ(mapped->getSize(), mesh.getGeometry().getNumNodes());
  for (std::size_t v = 0; v < mapped->getSize(); ++v)
    EXPECT_LT((mapped->get(v) - mesh.getGeometry().getCoord(v)).length(), 2e-7);
  ASSERT_EQ(cells->getSize(), mesh.getTopology().getNumCells());
  for (std::size_t c = 0; c < cells->getSize(); ++c)
    EXPECT_EQ(cells->get(c), static_cast<double>(mesh.getTopology().getInputCellIndexI(c)));
}

TEST_P(FenceSlice, OneLongSegmentIsThePlaneSlice) {
  const Cube cube(GetParam(), 6, 0.2);
  const auto fence = fenceOn(cube);
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> plane(
      KiPlaneSliceExtractUnstructured::getNewInstance(*cube.mesh, false, nullptr));
  const Vec3 normal(1.0, 2.0, 0.5); // to the left of the segment, the inside of the fence
  const Vec3 direction(0.0, 0.25, -1.0);
  const Vec3 along = normal.cross(direction);
  const Vec3 middle(0.5, 0.45, 0.4);
  const Surface a(fence->extract(direction, {middle - along * 3.0, middle + along * 3.0}, nullptr));
  const Surface b(plane->extract(-normal, -normal.normalized().dot(middle), nullptr));
  ASSERT_GT(b.polygons.size(), 20u);
  ASSERT_EQ(a.polygons.size(), b.polygons.size());
  EXPECT_EQ(a.vertices.size(), b.vertices.size());
  for (std::size_t p = 0; p < a.polygons.size(); ++p)
    EXPECT_LT((a.vectorArea(p) - b.vectorArea(p)).length(), 1e-6);
}

std::string nameOf(const testing::TestParamInfo<Cells>& info) {
  constexpr std::array NAMES{"Tetrahedra", "Hexahedra", "Wedges", "Pyramids", "Mixed", "Polyhedra", "Blocks"};
  return NAMES[static_cast<std::size_t>(info.param)];
}
INSTANTIATE_TEST_SUITE_P(Cells, FenceSlice,
                         testing::Values(Cells::TETRAHEDRA, Cells::HEXAHEDRA, Cells::WEDGES, Cells::PYRAMIDS,
                                         Cells::MIXED, Cells::POLYHEDRA, Cells::BLOCKS),
                         nameOf);

TEST(FenceSliceLaws, EachTetrahedronHasItsOwnPart) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> component(-1.0, 1.0);
  for (unsigned round = 0; round < 30; ++round) {
    const Cube cube(Cells::TETRAHEDRA, 3, 0.3, round);
    const Vec3 direction(component(random), component(random), component(random));
    const Polyline polyline = randomPolyline(random, 2 + round % 7, 0.0, 1.0);
    const std::vector<double> expected = areasInTetrahedra(cube, direction, polyline);
    const auto fence = fenceOn(cube);
    const auto& mesh = fence->extract(direction, polyline, nullptr);
    const Surface s(mesh);
    std::vector<double> found(expected.size(), 0.0);
    for (std::size_t p = 0; p < s.polygons.size(); ++p)
      found[mesh.getTopology().getInputCellIndexI(p)] += s.vectorArea(p).length();
    for (std::size_t c = 0; c < expected.size(); ++c)
      EXPECT_NEAR(found[c], expected[c], 1e-6) << "cell " << c << ", round " << round;
  }
}

TEST(FenceSliceLaws, IsTheSumOfItsSegments) {
  std::mt19937 random(11);
  const Cube cube(Cells::MIXED, 4, 0.2);
  const Polyline polyline = randomPolyline(random, 9, 0.0, 1.0);
  const Vec3 direction(0.2, 0.1, 1.0);
  const auto fence = fenceOn(cube);
  const double whole = Surface(fence->extract(direction, polyline, nullptr)).area();
  double sum = 0.0;
  for (std::size_t s = 0; s + 1 < polyline.size(); ++s)
    sum += Surface(fence->extract(direction, {polyline[s], polyline[s + 1]}, nullptr)).area();
  EXPECT_NEAR(whole, sum, 1e-5);
  EXPECT_GT(whole, 1.0);
}

TEST(FenceSliceLaws, FacesTheRightOfTheWay) {
  const Cube cube(Cells::HEXAHEDRA, 4, 0.2);
  const auto fence = fenceOn(cube);
  // With z towards the viewer the way goes along x, then turns left.
  const Surface s(fence->extract({0, 0, 1}, {{0.1, 0.3, 0}, {0.7, 0.3, 0}, {0.7, 0.9, 0}}, nullptr));
  ASSERT_GT(s.polygons.size(), 10u);
  for (std::size_t p = 0; p < s.polygons.size(); ++p) {
    const Vec3 area = s.vectorArea(p);
    if (area.length() < 1e-9) continue;
    EXPECT_GT(area[0] - area[1], 0.99 * area.length());
  }
}

TEST(FenceSliceLaws, PointsThatRepeatChangeNothing) {
  const Cube cube(Cells::HEXAHEDRA, 4, 0.2);
  const auto fence = fenceOn(cube);
  const Vec3 direction(0.1, 0.2, 1.0);
  const Vec3 a(0.1, 0.2, 0.3), b(0.8, 0.3, 0.1), c(0.6, 0.9, 0.2);
  const std::string expected = bytesOf(fence->extract(direction, {a, b, c}, nullptr));
  const Surface s(fence->extract(direction, {a, a, b + direction * 0.7, b, b - direction * 3.0, c, c}, nullptr));
  const auto again = fenceOn(cube);
  const Surface plain(again->extract(direction, {a, b, c}, nullptr));
  EXPECT_EQ(s.polygons, plain.polygons);
  EXPECT_EQ(bytesOf(again->getExtract()), expected);
  for (std::size_t v = 0; v < s.vertices.size(); ++v)
    EXPECT_LT((s.vertices[v] - plain.vertices[v]).length(), 1e-6);
}

TEST(FenceSliceLaws, APointOnTheWayAddsNoArea) {
  const Cube cube(Cells::POLYHEDRA, 4, 0.2);
  const auto fence = fenceOn(cube);
  const Polyline straight{{0.1, 0.2, 0}, {0.9, 0.6, 0}};
  const Polyline broken{{0.1, 0.2, 0}, {0.3, 0.3, 0}, {0.5, 0.4, 5.0}, {0.9, 0.6, 0}};
  const double area = Surface(fence->extract({0, 0, 1}, straight, nullptr)).area();
  const Surface s(fence->extract({0, 0, 1}, broken, nullptr));
  EXPECT_NEAR(s.area(), area, 1e-6);
  EXPECT_EQ(numGaps(s, {0, 0, 1}, broken), 0u);
}

TEST(FenceSliceLaws, FarFromTheOriginItIsTheSame) {
  Cube cube(Cells::HEXAHEDRA, 4, 0.2);
  const Vec3 offset(456789.0, 6543210.0, -2345.0);
  std::vector<double> moved;
  for (std::size_t i = 0; i < cube.arrays.coordinates.size(); ++i)
    moved.push_back(static_cast<double>(cube.arrays.coordinates[i]) + offset[i % 3]);
  const KbVolumeMeshUnstructured mesh(moved, cube.arrays.cells());
  const std::unique_ptr<KiFenceSliceExtractUnstructured> fence(
      KiFenceSliceExtractUnstructured::getNewInstance(mesh, false, nullptr));
  const Polyline polyline{{0.125, 0.25, 0}, {0.875, 0.25, 0.5}, {0.5, 0.75, 0}, {0.125, 0.25, 0}};
  Polyline there;
  for (const Vec3& p : polyline)
    there.push_back(p + offset);
  const auto here = fenceOn(cube);
  const Surface a(here->extract({0, 0, 1}, polyline, nullptr));
  const Surface b(fence->extract({0, 0, 1}, there, nullptr));
  EXPECT_EQ(a.polygons, b.polygons);
}

TEST(FenceSliceLaws, BadParametersAreToldOnce) {
  const Cube cube(Cells::HEXAHEDRA, 2, 0.0);
  const auto fence = fenceOn(cube);
  const double nan = std::nan("");
  struct Row {
    Vec3 direction;
    Polyline polyline;
    const char* text;
  };
  const std::vector<Row> rows{
      {{0, 0, 1}, {}, "the polyline is empty"},
      {{1, 0, 0}, {{0, 0, 0}}, "the polyline has fewer than two points that differ across the direction"},
      {{0, 0, 1}, {{0.5, 0.5, 0}, {0.5, 0.5, 1}}, "the polyline has fewer than two points that differ across"},
      {{0, 0, 0}, {{0, 0, 0}, {1, 1, 0}}, "the direction of the curtain has no finite length"},
      {{nan, 0, 0}, {{0, 0, 0}, {1, 1, 0}}, "the direction of the curtain has no finite length"},
      {{0, 0, 1}, {{0, 0, 0}, {1, nan, 0}}, "the polyline has a point that is not finite"},
      {{0, 0, 1}, {{0, 0, 0}, {1e300, 0, 0}}, "the polyline has a point that is not finite"},
  };
  for (const Row& row : rows) {
    MessageLog log;
    const auto& mesh = fence->extract(row.direction, row.polyline, nullptr);
    EXPECT_EQ(mesh.getTopology().getNumCells(), 0u);
    EXPECT_EQ(mesh.getGeometry().getNumNodes(), 0u);
    ASSERT_EQ(log.lines.size(), 1u) << row.text;
    EXPECT_EQ(log.lines[0].find(std::string("KiFenceSliceExtractUnstructured::extract: ") + row.text), 0u)
        << log.lines[0];
    const Surface good(fence->extract({0, 0, 1}, {{0.1, 0.1, 0}, {0.9, 0.9, 0}}, nullptr));
    EXPECT_NEAR(good.area(), 0.8 * std::sqrt(2.0), 1e-6);
  }
}

/// Every kind: top and bottom of a warped lattice rise alike, so that the area is the polyline's length.
template <class Kind>
class FenceKinds : public testing::Test {};
using Kinds =
    testing::Types<KindOf<Unstructured, KiFenceSliceExtractUnstructured>,
                   KindOf<HexahedronIjk, KiFenceSliceExtractHexahedronIjk>,
                   KindOf<VertexHexahedronIjk, KiFenceSliceExtractIjk>, KindOf<Regular, KiFenceSliceExtractIjk>,
                   KindOf<Rectilinear, KiFenceSliceExtractIjk>, KindOf<Curvilinear, KiFenceSliceExtractIjk>>;
TYPED_TEST_SUITE(FenceKinds, Kinds);

TYPED_TEST(FenceKinds, AreaIsLengthTimesHeight) {
  const typename TypeParam::Kind kind({40, 37, 20});
  const std::unique_ptr<typename TypeParam::Extractor> fence(
      TypeParam::Extractor::getNewInstance(kind.mesh, true, nullptr));
  const Polyline polyline{{0.1, 0.2, 0}, {0.5, 0.25, 0}, {0.7, 0.8, 0}, {0.3, 0.6, 0}, {0.1, 0.2, 0}};
  double length = 0.0;
  for (std::size_t s = 0; s + 1 < polyline.size(); ++s)
    length += (polyline[s + 1] - polyline[s]).length();
  const auto& mesh = fence->extract({0, 0, 1}, polyline, nullptr);
  const Surface s(mesh);
  EXPECT_NEAR(s.area(), length, 2e-5);
  std::size_t onHull = 0; // open edges along top and bottom alone
  for (const Vec3& v : s.vertices)
    onHull += v[2] < 0.04 || v[2] > 0.96;
  EXPECT_LE(s.numOpenEdges(), onHull);
  // Another fence on the living extractor is that of a fresh one.
  const Polyline other{{0.2, -1.0, 0}, {0.3, 2.0, 0}};
  const std::unique_ptr<typename TypeParam::Extractor> fresh(
      TypeParam::Extractor::getNewInstance(kind.mesh, false, nullptr));
  EXPECT_EQ(bytesOf(fence->extract({0.1, 0, 1}, other, nullptr)), bytesOf(fresh->extract({0.1, 0, 1}, other, nullptr)));
}

} // namespace
