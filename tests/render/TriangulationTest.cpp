// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/Triangulation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>

using namespace nx::detail;

namespace {

struct Polygon {
  std::vector<float> xyz;
  std::vector<int32_t> index;

  void add(double x, double y, double z = 0) {
    index.push_back(static_cast<int32_t>(xyz.size() / 3));
    xyz.insert(xyz.end(), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
  }
  size_t numVertices() const { return xyz.size() / 3; }
  PolygonList list(size_t minCorners = 3) const {
    return PolygonList(index.data(), index.size(), xyz.data(), numVertices(), minCorners);
  }
  const float* at(uint32_t vertex) const { return xyz.data() + 3 * size_t{vertex}; }
};

double signedArea(const float* a, const float* b, const float* c) {
  return 0.5 * ((double{b[0]} - a[0]) * (double{c[1]} - a[1]) - (double{b[1]} - a[1]) * (double{c[0]} - a[0]));
}

double shoelace(const Polygon& polygon) {
  double area = 0;
  const size_t n = polygon.index.size();
  for (size_t i = 0; i < n; ++i) {
    const float* p = polygon.at(static_cast<uint32_t>(i));
    const float* q = polygon.at(static_cast<uint32_t>((i + 1) % n));
    area += 0.5 * (double{p[0]} * q[1] - double{q[0]} * p[1]);
  }
  return area;
}

/// A star-shaped polygon is simple whatever its radii are.
Polygon randomStar(std::mt19937& random, int numCorners) {
  std::uniform_real_distribution<double> radius(0.1, 2.0);
  Polygon polygon;
  for (int i = 0; i < numCorners; ++i) {
    const double angle = 2 * M_PI * i / numCorners;
    const double r = radius(random);
    polygon.add(r * std::cos(angle), r * std::sin(angle));
  }
  return polygon;
}

} // namespace

TEST(Triangulation, RandomSimplePolygonsKeepTheirAreaAndOverlapNowhere) {
  std::mt19937 random(7);
  for (int round = 0; round < 500; ++round) {
    const Polygon polygon = randomStar(random, 3 + round % 40);
    const PrimitiveList list = makeTriangles(polygon.list(), nullptr);
    ASSERT_EQ(list.vertices.size(), 3 * (polygon.index.size() - 2));
    double area = 0, absolute = 0;
    for (size_t i = 0; i < list.vertices.size(); i += 3) {
      const double a =
          signedArea(polygon.at(list.vertices[i]), polygon.at(list.vertices[i + 1]), polygon.at(list.vertices[i + 2]));
      area += a;
      absolute += std::abs(a);
    }
    // Equal sums with and without sign: no triangle is turned over, so none overlaps another.
    EXPECT_NEAR(area, shoelace(polygon), 1e-5) << "round " << round;
    EXPECT_NEAR(absolute, area, 1e-5) << "round " << round;
  }
}

TEST(Triangulation, ClockwisePolygonsKeepTheirOrientation) {
  std::mt19937 random(11);
  Polygon polygon = randomStar(random, 17);
  std::reverse(polygon.xyz.begin(), polygon.xyz.end()); // turns the order, and swaps x with z
  for (size_t i = 0; i < polygon.xyz.size(); i += 3)
    std::swap(polygon.xyz[i], polygon.xyz[i + 2]);
  ASSERT_LT(shoelace(polygon), 0);
  const PrimitiveList list = makeTriangles(polygon.list(), nullptr);
  double area = 0;
  for (size_t i = 0; i < list.vertices.size(); i += 3)
    area +=
        signedArea(polygon.at(list.vertices[i]), polygon.at(list.vertices[i + 1]), polygon.at(list.vertices[i + 2]));
  EXPECT_NEAR(area, shoelace(polygon), 1e-5);
}

TEST(Triangulation, ConcaveQuadranglesSplitAtTheRightDiagonal) {
  for (int reflex = 0; reflex < 4; ++reflex) {
    Polygon polygon;
    const double corners[4][2] = {{0.2, 0.2}, {1, 0}, {0, 0}, {0, 1}}; // an arrow head, reflex at its first corner
    for (int i = 0; i < 4; ++i)
      polygon.add(corners[(i + 4 - reflex) % 4][0], corners[(i + 4 - reflex) % 4][1]);
    const PrimitiveList list = makeTriangles(polygon.list(), nullptr);
    EXPECT_EQ(list.perFace, 2U);
    double absolute = 0;
    for (size_t i = 0; i < list.vertices.size(); i += 3)
      absolute += std::abs(
          signedArea(polygon.at(list.vertices[i]), polygon.at(list.vertices[i + 1]), polygon.at(list.vertices[i + 2])));
    EXPECT_NEAR(absolute, std::abs(shoelace(polygon)), 1e-7) << "reflex corner " << reflex;
  }
}

TEST(Triangulation, HopelessPolygonsEnd) {
  Polygon pentagram;
  for (int i = 0; i < 5; ++i)
    pentagram.add(std::cos(4 * M_PI * i / 5), std::sin(4 * M_PI * i / 5));
  Polygon point, line, touching;
  for (int i = 0; i < 9; ++i) {
    point.add(1, 2, 3);
    line.add(i % 4, 0);
  }
  for (const auto& [x, y] : std::vector<std::pair<int, int>>{{0, 0}, {2, 0}, {1, 1}, {2, 2}, {0, 2}, {1, 1}})
    touching.add(x, y);
  for (const Polygon* polygon : {&pentagram, &point, &line, &touching}) {
    const PrimitiveList list = makeTriangles(polygon->list(), nullptr);
    EXPECT_EQ(list.vertices.size(), 3 * (polygon->index.size() - 2));
    for (const uint32_t vertex : list.vertices)
      EXPECT_LT(vertex, polygon->numVertices());
  }
}

TEST(Triangulation, PolygonsInSpaceAreSeenAlongTheirNormal) {
  // An L in the plane x + y + z = 0: six corners, one of them reflex.
  const double l[6][2] = {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}};
  Polygon polygon;
  for (const auto& c : l)
    polygon.add(c[0] * M_SQRT1_2 + c[1] / std::sqrt(6.0), -c[0] * M_SQRT1_2 + c[1] / std::sqrt(6.0),
                -2 * c[1] / std::sqrt(6.0));
  const PrimitiveList list = makeTriangles(polygon.list(), nullptr);
  double area = 0;
  for (size_t i = 0; i < list.vertices.size(); i += 3) {
    const float *a = polygon.at(list.vertices[i]), *b = polygon.at(list.vertices[i + 1]),
                *c = polygon.at(list.vertices[i + 2]);
    const double u[3] = {double{b[0]} - a[0], double{b[1]} - a[1], double{b[2]} - a[2]};
    const double v[3] = {double{c[0]} - a[0], double{c[1]} - a[1], double{c[2]} - a[2]};
    area += 0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
  }
  EXPECT_NEAR(area, 3.0, 1e-5);
}

TEST(PolygonList, UniformListsAreSeenAsSuchWithAndWithoutTheLastSeparator) {
  Polygon p;
  for (int i = 0; i < 6; ++i)
    p.add(i, i * i);
  p.index = {0, 1, 2, -1, 3, 4, 5, -1};
  EXPECT_EQ(p.list().uniformSize(), 3U);
  p.index.pop_back();
  EXPECT_EQ(p.list().uniformSize(), 3U);
  EXPECT_EQ(p.list().numFaces(), 2U);
  p.index = {0, 1, 2, 3, -1, 2, 3, 4, 5};
  EXPECT_EQ(p.list().uniformSize(), 4U);
  p.index = {0, 1, 2, -1, 0, 1, 2, 3, -1};
  EXPECT_EQ(p.list().uniformSize(), 0U);
  EXPECT_EQ(p.list().numFaces(), 2U);
}

TEST(PolygonList, FaultyFacesAreLeftOutAndNamed) {
  Polygon p;
  for (int i = 0; i < 4; ++i)
    p.add(i & 1, i >> 1);
  p.index = {0, 1, 2, -1, 0, 1, 9, -1, 1, 3, 2, -1, -7, 0, 1, -1};
  const PolygonList list = p.list();
  std::vector<size_t> faces;
  list.forEach([&](size_t face, size_t, size_t) { faces.push_back(face); });
  EXPECT_EQ(faces, (std::vector<size_t>{0, 2}));
  EXPECT_EQ(list.numFaces(), 4U);
  EXPECT_EQ(list.fault(), "face 1 is left out: its index 9 is outside the 4 vertices (2 faulty faces in all)");
  EXPECT_EQ(makeTriangles(list, nullptr).faces, (std::vector<uint32_t>{0, 2}));
}

TEST(PolygonList, FacesWithNaNVerticesAreLeftOut) {
  Polygon p;
  for (int i = 0; i < 4; ++i)
    p.add(i & 1, i >> 1);
  p.xyz[3 * 3 + 1] = std::numeric_limits<float>::quiet_NaN();
  p.index = {0, 1, 2, -1, 1, 3, 2, -1};
  const PolygonList list = p.list();
  EXPECT_EQ(list.fault(), "face 1 is left out: its vertex 3 is not finite");
  EXPECT_EQ(makeTriangles(list, nullptr).vertices, (std::vector<uint32_t>{0, 1, 2}));
}

TEST(PolygonList, ShortFacesAreSkippedAndCounted) {
  Polygon p;
  for (int i = 0; i < 4; ++i)
    p.add(i & 1, i >> 1);
  p.index = {0, 1, -1, -1, 0, 1, 2, -1};
  const PolygonList list = p.list();
  EXPECT_TRUE(list.fault().empty());
  EXPECT_EQ(list.numFaces(), 3U);
  EXPECT_EQ(makeTriangles(list, nullptr).faces, (std::vector<uint32_t>{2}));
}

TEST(AreFinite, FindsASingleBadValueAnywhere) {
  for (const size_t size : {1U, 7U, 8U, 1023U, 1024U, 2500U}) {
    std::vector<float> values(size, 3e38F);
    EXPECT_TRUE(areFinite(values.data(), size));
    for (const size_t bad : {size_t{0}, size / 2, size - 1}) {
      for (const float value : {std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()}) {
        const float kept = std::exchange(values[bad], value);
        EXPECT_FALSE(areFinite(values.data(), size)) << size << " " << bad;
        values[bad] = kept;
      }
    }
  }
}

TEST(Segments, SharedEdgesComeOnceWhenAsked) {
  Polygon p;
  for (int i = 0; i < 4; ++i)
    p.add(i & 1, i >> 1);
  p.index = {0, 1, 2, -1, 1, 3, 2, -1}; // the edge 1-2 in both directions
  EXPECT_EQ(makeSegments(p.list(), nullptr, true, true).vertices,
            (std::vector<uint32_t>{0, 1, 0, 2, 1, 2, 1, 3, 2, 3}));
  const PrimitiveList all = makeSegments(p.list(), nullptr, true, false);
  EXPECT_EQ(all.vertices.size(), 12U);
  EXPECT_EQ(all.faces, (std::vector<uint32_t>{0, 0, 0, 1, 1, 1}));
}

TEST(Segments, PolylinesAreOpen) {
  Polygon p;
  for (int i = 0; i < 5; ++i)
    p.add(i, 0);
  p.index = {0, 1, 2, -1, 3, 4};
  const PrimitiveList list = makeSegments(p.list(2), nullptr, false, false);
  EXPECT_EQ(list.vertices, (std::vector<uint32_t>{0, 1, 1, 2, 3, 4}));
  EXPECT_EQ(list.faces, (std::vector<uint32_t>{0, 0, 1}));
}

TEST(Points, SharedVerticesComeOnceWhenAsked) {
  Polygon p;
  for (int i = 0; i < 4; ++i)
    p.add(i & 1, i >> 1);
  p.index = {0, 1, 2, -1, 1, 3, 2, -1};
  EXPECT_EQ(makePoints(p.list(), nullptr, true).vertices, (std::vector<uint32_t>{0, 1, 2, 3}));
  EXPECT_EQ(makePoints(p.list(), nullptr, false).faces, (std::vector<uint32_t>{0, 0, 0, 1, 1, 1}));
}
