// SPDX-License-Identifier: BSD-3-Clause
// Points that a display picks on extracted polygons: they lie on its triangles, rounded to float.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>

#include <memory>
#include <random>

namespace {

using namespace pick;

constexpr double N = 16.0; // cells along each side of the unit cube

double distanceToCentre(const Vec3& p) { return (p - Vec3(0.5)).length(); }

Vec3 rounded(const Vec3& p) { return Vec3(KbVec3<float>(p)); }

/// A random point of a triangle, border included.
template <class Random>
Vec3 pointIn(const Vec3& a, const Vec3& b, const Vec3& c, Random& random) {
  std::uniform_real_distribution<double> any(-0.1, 1.1);
  double u = std::clamp(any(random), 0.0, 1.0);
  double v = std::clamp(any(random), 0.0, 1.0);
  if (u + v > 1.0) {
    u = 1.0 - u;
    v = 1.0 - v;
  }
  return a + (b - a) * u + (c - a) * v;
}

/// Picks on both kinds of triangles that a display may make of a polygon; fails where the polygon does not know the
/// point, or yields weights that do not lead back to it, or as near as the warp of the polygon lets them.
void expectPickable(const KeXSurfaceMeshUnstructured& mesh, bool areWarped) {
  const double greatestWarp = areWarped ? 0.2 / N : 2e-6;
  const KeXGeometryExplicit& geometry = mesh.getGeometry();
  std::mt19937 random(5);
  std::vector<double> weights;
  std::size_t numPicked = 0;
  std::size_t numWarped = 0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell& cell = *mesh.getTopology().getCell(c);
    std::vector<Vec3> corners;
    for (std::size_t i = 0; i < cell.getNumNodes(); ++i)
      corners.push_back(geometry.getCoord(cell.getNodeIndex(i)));
    for (const std::size_t apex : {std::size_t{0}, std::size_t{1}}) {
      for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const Vec3& a = corners[apex];
        const Vec3& b = corners[(apex + i) % corners.size()];
        const Vec3& d = corners[(apex + i + 1) % corners.size()];
        if ((b - a).cross(d - a).length() < 1e-3 / (N * N)) continue; // nobody hits a sliver
        const Vec3 p = rounded(pointIn(a, b, d, random));
        ASSERT_TRUE(cell.isPointInsideCell(geometry, p, weights)) << "cell " << c << " point " << p;
        ASSERT_EQ(weights.size(), corners.size());
        Vec3 q;
        double sum = 0.0;
        for (std::size_t n = 0; n < corners.size(); ++n) {
          q += corners[n] * weights[n];
          sum += weights[n];
        }
        EXPECT_NEAR(sum, 1.0, 1e-9);
        EXPECT_LE((p - q).length(), greatestWarp);
        ++numPicked;
        numWarped += (p - q).length() > 1e-5;
      }
      const Vec3 normal = (corners[1] - corners[0]).cross(corners[2] - corners[0]).normalized();
      EXPECT_FALSE(cell.isPointInsideCell(geometry, corners[0] + normal * (1.0 / N), weights));
    }
  }
  EXPECT_GT(numPicked, 1000u);
  EXPECT_EQ(numWarped > 100, areWarped);
}

TEST(PickedPolygon, IsosurfacesOfHexahedraKnowTheirPoints) {
  const auto a = KbMeshMaker::hexahedra({16, 16, 16}, 0.03, distanceToCentre);
  const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
  const KbScalarSetI set("distance", DataBinding::PER_NODE, a.values);
  const std::unique_ptr<KiIsosurfExtractUnstructured> e(
      KiIsosurfExtractUnstructured::getNewInstance(mesh, false, nullptr));
  expectPickable(e->extract(0.4, set, nullptr), true);
}

TEST(PickedPolygon, IsosurfacesOfGridsKnowTheirPoints) {
  const auto a = KbMeshMaker::lattice({16, 16, 16}, 0.0, distanceToCentre);
  const KbVolumeMeshRegular mesh({16, 16, 16}, {0, 0, 0}, {1, 1, 1});
  const KbScalarSetIjk set("distance", DataBinding::PER_NODE, a.values, {17, 17, 17});
  const std::unique_ptr<KiIsosurfExtractIjk> e(KiIsosurfExtractIjk::getNewInstance(mesh, false, nullptr));
  expectPickable(e->extract(0.4, set, nullptr), true);
}

TEST(PickedPolygon, SkinsKnowTheirPoints) {
  auto a = KbMeshMaker::hexahedra({16, 16, 16}, 0.0, distanceToCentre);
  for (const bool areWarped : {false, true}) {
    std::mt19937 random(9);
    std::uniform_real_distribution<float> shift(-0.1f / static_cast<float>(N), 0.1f / static_cast<float>(N));
    for (float& x : a.coordinates)
      x += areWarped ? shift(random) : 0.0f;
    const KbVolumeMeshUnstructured mesh(a.coordinates, a.cells());
    const std::unique_ptr<KiSkinExtractUnstructured> e(KiSkinExtractUnstructured::getNewInstance(mesh, false, nullptr));
    expectPickable(e->extract(nullptr), areWarped);
  }
}

} // namespace
