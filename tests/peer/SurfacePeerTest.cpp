// SPDX-License-Identifier: BSD-3-Clause
// Extracts of real surfaces against areas, means, volumes and parts that VTK computed.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiSurfaceExtractIj.h>
#include <KerrinExtractor/KiSurfaceExtractUnstructured.h>

namespace {

using namespace peer;

class SurfacePeer : public PeerTest<> {
protected:
  template <class Set, class Extractor, class Mesh>
  void expectNumbers(const Mesh& mesh) {
    const std::unique_ptr<Extractor> extractor(Extractor::getNewInstance(mesh, true, nullptr));
    const Surface s(extractor->extract(nullptr));
    // Where a quadrangle is not flat, both of its diagonals are right.
    const bool isFlatAll = std::all_of(s.polygons.begin(), s.polygons.end(), [&](const auto& ids) {
      std::vector<Vec3> corners;
      for (const std::size_t id : ids)
        corners.push_back(s.vertices[id]);
      return isFlat(corners);
    });
    const double tolerance = isFlatAll ? 1e-4 : 1e-2;
    const Measures plain(s);
    const double area = reference["area"];
    plain.expectArea(area, tolerance * area);
    EXPECT_EQ(plain.numTriangles, reference["triangles_after_triangulation"].get<std::size_t>());
    EXPECT_EQ(numPartsOf(s), reference["connected_parts"].get<std::size_t>());
    if (reference.contains("enclosed_volume")) {
      const double volume = reference["enclosed_volume"];
      EXPECT_NEAR(std::abs(plain.volume), volume, tolerance * volume);
    }
    const auto expectMean = [&](const Set* set, const char* key) {
      ASSERT_TRUE(set);
      const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*set);
      ASSERT_TRUE(mapped);
      EXPECT_NEAR(Measures(s, mapped).mean(), reference[key].get<double>(),
                  tolerance * (set->getMax() - set->getMin()));
    };
    if (reference.contains("scalar"))
      expectMean(NamedScalar<Mesh, Set>(file, mesh, reference["scalar"]).get(), "area_weighted_mean");
    if (reference.contains("cell_scalar"))
      expectMean(file.getSet<Set>(reference["cell_scalar"].get<std::string>(), DataBinding::PER_CELL),
                 "area_weighted_mean_of_cell_scalar");
  }
};

TEST_P(SurfacePeer, HasAreaMeanVolumeAndParts) {
  if (const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(file.getMesh())) {
    expectNumbers<KiDataSetIj<double>, KiSurfaceExtractIj>(*curvilinear);
    return;
  }
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(file.getMesh());
  ASSERT_TRUE(unstructured) << file.getMeshTypeName();
  expectNumbers<KiDataSetI<double>, KiSurfaceExtractUnstructured>(*unstructured);
}

INSTANTIATE_TEST_SUITE_P(Files, SurfacePeer,
                         testing::Values("surf_blow.vtk", "surf_dfn.inp", "surf_estuary.vtk", "surf_fran.vtk",
                                         "surf_plate.vtk", "surf_shark.ply", "surf_spot_quad.obj", "surf_spot_tri.obj",
                                         "surf_sthelens.vtk", "surf_ucd2d.inp", "surf_usa.vtk"),
                         nameOf<const char*>);

} // namespace
