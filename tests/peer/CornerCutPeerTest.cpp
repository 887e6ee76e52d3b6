// SPDX-License-Identifier: BSD-3-Clause
// Plane slices and fences of corner-point grids against areas and means that VTK computed from their active cells.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinMesh/KbMeshFile.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <memory>

namespace {

using pick::Vec3;

std::string dataDirectory() {
  const char* fromEnvironment = std::getenv("KERRIN_DATA_DIR");
  return fromEnvironment ? fromEnvironment : KERRIN_DATA_DIR;
}

Vec3 vectorOf(const nlohmann::json& numbers) { return {numbers[0], numbers[1], numbers[2]}; }

class CornerCutPeer : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    std::ifstream stream(dataDirectory() + "/reference.json");
    if (!stream) GTEST_SKIP() << "no reference.json in " << dataDirectory();
    slices = nlohmann::json::parse(stream)["datasets"][GetParam()]["slices_of_active_cells"];
    ASSERT_GT(slices.size(), 5u);
    file = KbReadMesh(dataDirectory() + "/" + GetParam());
    ASSERT_TRUE(file) << file.getError();
    mesh = dynamic_cast<const KiVolumeMeshVertexHexahedronIjk*>(file.getMesh());
    porosity = file.getSet<KiDataSetIjk<double>>("PORO", DataBinding::PER_CELL);
    ASSERT_TRUE(mesh && porosity);
  }
  /// Cuts each plane by `cut(e, normal, origin)` and compares.
  template <class Extractor, class Cut>
  void compare(Extractor& e, const Cut& cut) {
    for (const nlohmann::json& slice : slices) {
      SCOPED_TRACE(slice["plane"].get<std::string>());
      const Vec3 normal = vectorOf(slice["normal"]).normalized();
      const pick::Surface s(cut(e, normal, vectorOf(slice["origin"])));
      const KeXDataSetI<double>* values = e.extractScalarSet(*porosity);
      ASSERT_TRUE(values);
      ASSERT_EQ(values->getSize(), s.polygons.size());
      double area = 0.0;
      double sum = 0.0;
      for (std::size_t p = 0; p < s.polygons.size(); ++p) {
        const double part = s.vectorArea(p).length();
        area += part;
        sum += part * values->get(p);
      }
      const double expected = slice["area"];
      EXPECT_NEAR(area, expected, 2e-3 * expected);
      EXPECT_NEAR(sum / area, slice["mean_of_PORO"].get<double>(), 5e-3 * (porosity->getMax() - porosity->getMin()));
    }
  }

  nlohmann::json slices;
  KbMeshFile file;
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
                         [](const auto& parameter) {
                           const std::string name = parameter.param;
                           return name.substr(0, name.find('.'));
                         });

} // namespace
