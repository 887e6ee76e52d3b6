// SPDX-License-Identifier: BSD-3-Clause
#include "src/shapes/SmoothNormals.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace nx::detail;

namespace {

constexpr int32_t cubeFaces[] = {0, 2, 3, 1, -1, 4, 5, 7, 6, -1, 0, 1, 5, 4, -1,
                                 2, 6, 7, 3, -1, 0, 4, 6, 2, -1, 1, 3, 7, 5, -1};

std::vector<float> cubeVertices() {
  std::vector<float> xyz;
  for (int i = 0; i < 8; ++i)
    xyz.insert(xyz.end(), {i & 1 ? 1.F : -1.F, i & 2 ? 1.F : -1.F, i & 4 ? 1.F : -1.F});
  return xyz;
}

PolygonList cube(const std::vector<float>& xyz) {
  return PolygonList(cubeFaces, std::size(cubeFaces), xyz.data(), 8, 3);
}

/// A sphere of quadrangles, each pole a fan of triangles.
struct Sphere {
  std::vector<float> xyz;
  std::vector<int32_t> index;

  Sphere(int rings, int sectors) {
    add(0, 0, 1);
    for (int r = 1; r < rings; ++r) {
      for (int s = 0; s < sectors; ++s) {
        const double theta = M_PI * r / rings, phi = 2 * M_PI * s / sectors;
        add(std::sin(theta) * std::cos(phi), std::sin(theta) * std::sin(phi), std::cos(theta));
      }
    }
    add(0, 0, -1);
    const int last = static_cast<int>(xyz.size() / 3) - 1;
    for (int s = 0; s < sectors; ++s) {
      const int next = (s + 1) % sectors;
      face({0, 1 + s, 1 + next});
      for (int r = 0; r + 2 < rings; ++r) {
        const int a = 1 + r * sectors, b = a + sectors;
        face({a + s, b + s, b + next, a + next});
      }
      face({last, last - sectors + next, last - sectors + s});
    }
  }
  void add(double x, double y, double z) {
    xyz.insert(xyz.end(), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
  }
  void face(std::initializer_list<int> corners) {
    index.insert(index.end(), corners.begin(), corners.end());
    index.push_back(-1);
  }
};

} // namespace

TEST(SmoothNormals, ASphereIsSmoothAndPointsOutwards) {
  const Sphere sphere(24, 48);
  const size_t n = sphere.xyz.size() / 3;
  const SmoothNormals smooth =
      makeSmoothNormals(PolygonList(sphere.index.data(), sphere.index.size(), sphere.xyz.data(), n, 3), 0.5F);
  EXPECT_TRUE(smooth.extra.empty());
  EXPECT_TRUE(smooth.cornerVertex.empty());
  ASSERT_EQ(smooth.normals.size(), sphere.xyz.size());
  for (size_t i = 0; i < n; ++i) {
    double dot = 0;
    for (size_t k = 0; k < 3; ++k)
      dot += double{smooth.normals[3 * i + k]} * sphere.xyz[3 * i + k];
    EXPECT_GT(dot, 0.995) << "vertex " << i;
  }
}

TEST(SmoothNormals, ACubeIsSplitAtEachCornerIntoItsThreeFaces) {
  const std::vector<float> xyz = cubeVertices();
  const SmoothNormals smooth = makeSmoothNormals(cube(xyz), 0.5F);
  ASSERT_EQ(smooth.extra.size(), 16U); // 24 corners, of which 8 keep the vertex
  ASSERT_EQ(smooth.normals.size(), 3 * 24U);
  const float expected[6][3] = {{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}};
  for (size_t face = 0; face < 6; ++face) {
    for (size_t k = 0; k < 4; ++k) {
      const uint32_t vertex = smooth.cornerVertex[5 * face + k];
      EXPECT_EQ(vertex < 8 ? vertex : smooth.extra[vertex - 8], static_cast<uint32_t>(cubeFaces[5 * face + k]));
      for (size_t c = 0; c < 3; ++c)
        EXPECT_NEAR(smooth.normals[3 * vertex + c], expected[face][c], 1e-6) << "face " << face;
    }
  }
}

TEST(SmoothNormals, AWideAngleKeepsTheCubeWhole) {
  const std::vector<float> xyz = cubeVertices();
  const SmoothNormals smooth = makeSmoothNormals(cube(xyz), 1.6F);
  EXPECT_TRUE(smooth.extra.empty());
  for (size_t i = 0; i < 8; ++i) {
    for (size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(smooth.normals[3 * i + c], xyz[3 * i + c] / std::sqrt(3.F), 1e-6);
  }
}

TEST(SmoothNormals, LargeFacesWeighMore) {
  // Two triangles at the edge 0-1: one in the plane z = 0 with area 2, one in the plane y = 0 with area 1.
  const float xyz[] = {0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 2};
  const int32_t index[] = {0, 1, 2, -1, 1, 0, 3, -1};
  const SmoothNormals smooth = makeSmoothNormals(PolygonList(index, 8, xyz, 4, 3), 3.1F);
  ASSERT_TRUE(smooth.extra.empty());
  EXPECT_NEAR(smooth.normals[1], 1 / std::sqrt(5.0), 1e-6);
  EXPECT_NEAR(smooth.normals[2], 2 / std::sqrt(5.0), 1e-6);
}

TEST(SmoothNormals, DegenerateAndTinyFacesDoNoHarm) {
  const float xyz[] = {0, 0, 0, 1e-18F, 0, 0, 0, 1e-18F, 0, 1, 0, 0, 0, 1, 0};
  const int32_t index[] = {0, 1, 2, -1, 0, 0, 3, -1, 0, 3, 4, -1};
  const SmoothNormals smooth = makeSmoothNormals(PolygonList(index, 12, xyz, 5, 3), 0.5F);
  EXPECT_TRUE(smooth.extra.empty());
  EXPECT_FLOAT_EQ(smooth.normals[2], 1);
  for (const float value : smooth.normals)
    EXPECT_TRUE(std::isfinite(value));
}

TEST(SmoothNormals, AConeTipWithManyFacesStaysCheap) {
  // A search among all pairs of the faces at this tip would take seconds.
  constexpr int count = 20000;
  std::vector<float> xyz{0, 0, 1};
  std::vector<int32_t> index;
  for (int i = 0; i < count; ++i) {
    const double phi = 2 * M_PI * i / count;
    xyz.insert(xyz.end(), {static_cast<float>(std::cos(phi)), static_cast<float>(std::sin(phi)), 0});
    index.insert(index.end(), {0, 1 + i, 1 + (i + 1) % count, -1});
  }
  const SmoothNormals smooth =
      makeSmoothNormals(PolygonList(index.data(), index.size(), xyz.data(), xyz.size() / 3, 3), 0.5F);
  EXPECT_FLOAT_EQ(smooth.normals[2], 1); // the tip's mean
  EXPECT_EQ(smooth.extra.size(), static_cast<size_t>(count));
  for (size_t i = 0; i < smooth.extra.size(); ++i)
    EXPECT_NEAR(smooth.normals[3 * (count + 1 + i) + 2], std::sqrt(0.5), 1e-3);
}
