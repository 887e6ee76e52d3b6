// SPDX-License-Identifier: BSD-3-Clause
// Plane slices and fences of corner-point grids against areas and means that VTK computed from their active cells.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiVolumeMeshVertexHexahedronIjk.h>

#include <cmath>

namespace {

using namespace peer;

class CornerCutPeer : public PeerTest<> {
protected:
  void SetUp() override {
    PeerTest::SetUp();
    if (!file) return;
    ASSERT_GT(reference["slices_of_active_cells"].size(), 5u);
    mesh = dynamic_cast<const KiVolumeMeshVertexHexahedronIjk*>(file.getMesh());
    porosity = file.getSet<KiDataSetIjk<double>>("PORO", DataBinding::PER_CELL);
    ASSERT_TRUE(mesh && porosity);
  }
  /// Cuts each plane by `cut(e, normal, origin)` and compares.
  template <class Extractor, class Cut>
  void compare(Extractor& e, const Cut& cut) {
    for (const Json& slice : reference["slices_of_active_cells"]) {
      SCOPED_TRACE(slice["plane"].get<std::string>());
      const Vec3 normal = vectorOf(slice["normal"]).normalized();
      const Surface s(cut(e, normal, vectorOf(slice["origin"])));
      const KeXDataSetI<double>* values = e.extractScalarSet(*porosity);
      ASSERT_TRUE(values);
      ASSERT_EQ(values->getSize(), s.polygons.size());
      const Measures ours(s, values);
      const double area = slice["area"];
      ours.expectArea(area, 2e-3 * area);
      EXPECT_NEAR(ours.mean(), slice["mean_of_PORO"].get<double>(), 5e-3 * (porosity->getMax() - porosity->getMin()));
    }
  }

  const KiVolumeMeshVertexHexahedronIjk* mesh = nullptr;
  const KiDataSetIjk<double>* porosity = nullptr;
};

TEST_P(CornerCutPeer, PlaneSlicesHaveAreaAndMean) {
  const std::unique_ptr<KiPlaneSliceExtractIjk> e(KiPlaneSliceExtractIjk::getNewInstance(*mesh, true, nullptr));
  compare(
      *e, [](auto& extractor, const Vec3& normal, const Vec3& origin) -> auto& {
        return extractor.extract(normal, normal.dot(origin), nullptr);
      });
}

TEST_P(CornerCutPeer, StraightFencesHaveAreaAndMean) {
  const std::unique_ptr<KiFenceSliceExtractIjk> e(KiFenceSliceExtractIjk::getNewInstance(*mesh, true, nullptr));
  compare(
      *e, [](auto& extractor, const Vec3& normal, const Vec3& origin) -> auto& {
        // Up and down where the plane is steep, so that the joints run through few of the warped cells: around a joint
        // faces are cut by triangles.
        const Vec3 start = std::abs(normal[2]) < 0.9 ? Vec3(0, 0, 1) : Vec3(1, 0, 0);
        const Vec3 direction = start - normal * normal.dot(start);
        const Vec3 along = normal.cross(direction).normalized() * 1e5;
        // With the inside on the side of the plane's: where the plane is a layer of faces, those of one side are shown.
        return extractor.extract(direction, {origin + along, origin, origin - along * 0.003, origin - along}, nullptr);
      });
}

INSTANTIATE_TEST_SUITE_P(CornerPoints, CornerCutPeer,
                         testing::Values("cpgrid_dome.grdecl", "cpgrid_emerald_hole.grdecl", "cpgrid_pillar.grdecl"),
                         nameOf<const char*>);

} // namespace
