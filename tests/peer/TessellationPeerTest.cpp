// SPDX-License-Identifier: BSD-3-Clause
// A real mesh of quadratic cells, subdivided, against numbers that VTK computed.
#include "peer/PeerFile.h"
#include "peer/PeerMeasures.h"

#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>

namespace {

using namespace peer;

class TessellationPeer : public PeerTest<> {
protected:
  void SetUp() override {
    PeerTest::SetUp();
    if (!file) return;
    mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh());
    ASSERT_NE(mesh, nullptr);
    stress = file.getSet<KiDataSetI<double>>("von_mises", DataBinding::PER_NODE);
    ASSERT_NE(stress, nullptr);
  }

  const KiVolumeMeshUnstructured* mesh = nullptr;
  const KiDataSetI<double>* stress = nullptr;
  std::unique_ptr<KiTessellator> tessellator{KiTessellator::getNewTessellatorBasic(1e-7, 3)};
};

TEST_P(TessellationPeer, TheSkinHasTheAreaOfItsCurvedFaces) {
  const std::unique_ptr<KiSkinExtractUnstructured> skin(
      KiSkinExtractUnstructured::getNewInstance(*mesh, true, tessellator.get()));
  const Surface s(skin->extract(nullptr));
  const double byCorners = reference["skin"]["area"];
  const double curved = reference["skin"]["area_with_curved_faces_subdivided"]["3"];
  EXPECT_NEAR(s.area(), curved, 0.1 * std::abs(byCorners - curved));
  EXPECT_EQ(s.numOpenEdges(), 0u);
}

TEST_P(TessellationPeer, IsosurfacesHaveTheAreas) {
  const std::unique_ptr<KiTessellator> relative(KiTessellator::getNewTessellatorBasic());
  const std::unique_ptr<KiIsosurfExtractUnstructured> extractor(
      KiIsosurfExtractUnstructured::getNewInstance(*mesh, true, relative.get()));
  for (const Json& iso : reference["isosurfaces"]) {
    const double area = iso["area"];
    const Surface s(extractor->extract(iso["value"], *stress, nullptr));
    EXPECT_NEAR(s.area(), area, 0.01 * area) << iso["value"];
    const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*stress);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      ASSERT_NEAR(mapped->get(v), iso["value"].get<double>(), 1.0) << "of some millions";
  }
}

TEST_P(TessellationPeer, SlicesHaveTheAreasAndMeans) {
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> extractor(
      KiPlaneSliceExtractUnstructured::getNewInstance(*mesh, true, tessellator.get()));
  const double range = stress->getMax() - stress->getMin();
  for (const Json& slice : reference["slices"]) {
    SCOPED_TRACE(slice["plane"].get<std::string>());
    const Vec3 normal = vectorOf(slice["normal"]);
    const Surface s(extractor->extract(normal, normal.normalized().dot(vectorOf(slice["origin"])), nullptr));
    const double area = slice["area"];
    EXPECT_NEAR(s.area(), area, 2e-3 * area);
    const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*stress);
    ASSERT_NE(mapped, nullptr);
    EXPECT_NEAR(Measures(s, mapped).mean(), slice["mean_of_von_mises"].get<double>(), 5e-3 * range);
  }
}

INSTANTIATE_TEST_SUITE_P(Notch, TessellationPeer, testing::Values("quad_notch.vtk"), nameOf<const char*>);

} // namespace
