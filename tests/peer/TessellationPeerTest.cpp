// SPDX-License-Identifier: BSD-3-Clause
// A real mesh of quadratic cells, subdivided, against numbers that VTK computed.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KiTessellator.h>
#include <KerrinMesh/KbMeshFile.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <memory>

namespace {

class TessellationPeer : public testing::Test {
protected:
  void SetUp() override {
    const char* fromEnvironment = std::getenv("KERRIN_DATA_DIR");
    const std::string directory = fromEnvironment ? fromEnvironment : KERRIN_DATA_DIR;
    std::ifstream json(directory + "/reference.json");
    if (!json) GTEST_SKIP() << "no reference.json in " << directory;
    reference = nlohmann::json::parse(json)["datasets"]["quad_notch.vtk"];
    file = KbReadMesh(directory + "/quad_notch.vtk");
    ASSERT_TRUE(static_cast<bool>(file)) << file.getError();
    mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh());
    ASSERT_NE(mesh, nullptr);
    stress = file.getSet<KiDataSetI<double>>("von_mises", DataBinding::PER_NODE);
    ASSERT_NE(stress, nullptr);
  }

  nlohmann::json reference;
  KbMeshFile file;
  const KiVolumeMeshUnstructured* mesh = nullptr;
  const KiDataSetI<double>* stress = nullptr;
  std::unique_ptr<KiTessellator> tessellator{KiTessellator::getNewTessellatorBasic(1e-7, 3)};
};

TEST_F(TessellationPeer, TheSkinHasTheAreaOfItsCurvedFaces) {
  const std::unique_ptr<KiSkinExtractUnstructured> skin(
      KiSkinExtractUnstructured::getNewInstance(*mesh, true, tessellator.get()));
  const pick::Surface s(skin->extract(nullptr));
  const double byCorners = reference["skin"]["area"];
  const double curved = reference["skin"]["area_with_curved_faces_subdivided"]["3"];
  EXPECT_NEAR(s.area(), curved, 0.1 * std::abs(byCorners - curved));
  EXPECT_EQ(s.numOpenEdges(), 0u);
}

TEST_F(TessellationPeer, IsosurfacesHaveTheAreas) {
  const std::unique_ptr<KiTessellator> relative(KiTessellator::getNewTessellatorBasic());
  const std::unique_ptr<KiIsosurfExtractUnstructured> extractor(
      KiIsosurfExtractUnstructured::getNewInstance(*mesh, true, relative.get()));
  for (const nlohmann::json& iso : reference["isosurfaces"]) {
    const double area = iso["area"];
    const pick::Surface s(extractor->extract(iso["value"], *stress, nullptr));
    EXPECT_NEAR(s.area(), area, 0.01 * area) << iso["value"];
    const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*stress);
    ASSERT_NE(mapped, nullptr);
    for (std::size_t v = 0; v < mapped->getSize(); ++v)
      ASSERT_NEAR(mapped->get(v), iso["value"].get<double>(), 1.0) << "of some millions";
  }
}

TEST_F(TessellationPeer, SlicesHaveTheAreasAndMeans) {
  const std::unique_ptr<KiPlaneSliceExtractUnstructured> extractor(
      KiPlaneSliceExtractUnstructured::getNewInstance(*mesh, true, tessellator.get()));
  const double range = stress->getMax() - stress->getMin();
  for (const nlohmann::json& slice : reference["slices"]) {
    SCOPED_TRACE(slice["plane"].get<std::string>());
    const KbVec3<double> normal(slice["normal"][0], slice["normal"][1], slice["normal"][2]);
    const KbVec3<double> origin(slice["origin"][0], slice["origin"][1], slice["origin"][2]);
    const pick::Surface s(extractor->extract(normal, normal.normalized().dot(origin), nullptr));
    const double area = slice["area"];
    EXPECT_NEAR(s.area(), area, 2e-3 * area);
    const KeXDataSetI<double>* mapped = extractor->extractScalarSet(*stress);
    ASSERT_NE(mapped, nullptr);
    double sum = 0.0;
    for (std::size_t p = 0; p < s.polygons.size(); ++p) {
      double mean = 0.0;
      for (const std::size_t v : s.polygons[p])
        mean += mapped->get(v) / static_cast<double>(s.polygons[p].size());
      sum += mean * s.vectorArea(p).length();
    }
    EXPECT_NEAR(sum / s.area(), slice["mean_of_von_mises"].get<double>(), 5e-3 * range);
  }
}

} // namespace
