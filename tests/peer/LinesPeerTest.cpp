// SPDX-License-Identifier: BSD-3-Clause
// Isolines, clip lines, clip points and lines of real meshes against numbers that VTK computed from the same files.
#include <KerrinExtractor/KiClipLineExtractIj.h>
#include <KerrinExtractor/KiClipLineExtractUnstructured.h>
#include <KerrinExtractor/KiClipPointExtract.h>
#include <KerrinExtractor/KiIsolineExtractIj.h>
#include <KerrinExtractor/KiIsolineExtractUnstructured.h>
#include <KerrinExtractor/KiTessellatedLineExtract.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

namespace {

using Vec3 = KbVec3<double>;

std::string dataFolder() {
  const char* folder = std::getenv("KERRIN_DATA_DIR");
  return folder ? folder : KERRIN_DATA_DIR;
}

double length(const KeXLineMeshUnstructured& mesh) {
  double sum = 0.0;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiLineCell* cell = mesh.getTopology().getCell(c);
    sum += (mesh.getGeometry().getCoord(cell->getNodeIndex(1)) - mesh.getGeometry().getCoord(cell->getNodeIndex(0)))
               .length();
  }
  return sum;
}

/// A file, its mesh and its entry in the reference numbers.
class LinesPeer : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    std::ifstream stream(dataFolder() + "/reference.json");
    if (!stream) GTEST_SKIP() << "no reference.json in " << dataFolder();
    m_numbers = nlohmann::json::parse(stream).at("datasets").at(GetParam());
    m_file = KbReadMesh(dataFolder() + "/" + GetParam());
    if (!m_file) GTEST_SKIP() << m_file.getError();
  }
  static Vec3 vectorOf(const nlohmann::json& numbers) {
    return {numbers.at(0).get<double>(), numbers.at(1).get<double>(), numbers.at(2).get<double>()};
  }
  /// Warped faces may be cut along either diagonal or not at all; triangles leave no choice.
  double toleranceOf(double reference) const {
    const nlohmann::json& shapes = m_numbers.at("facts").at("cell_types");
    return (shapes.size() == 1 && shapes.contains("Triangle") ? 1e-4 : 1e-2) * reference;
  }

  KbMeshFile m_file;
  nlohmann::json m_numbers;
};

class SurfacePeer : public LinesPeer {};
class LinePeer : public LinesPeer {};

TEST_P(SurfacePeer, IsolinesHaveTheLength) {
  if (!m_numbers.contains("isolines")) GTEST_SKIP() << "no isolines in the reference";
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(m_file.getMesh());
  const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(m_file.getMesh());
  ASSERT_TRUE(unstructured || curvilinear) << m_file.getMeshTypeName();
  const std::string scalar = m_numbers.at("isolines").at(0).at("scalar").get<std::string>();
  std::vector<double> isovalues;
  for (const nlohmann::json& line : m_numbers.at("isolines"))
    isovalues.push_back(line.at("value").get<double>());

  std::vector<double> heights;
  std::unique_ptr<KbScalarSetI> heightSet;
  std::unique_ptr<KiIsolineExtractUnstructured> extractor;
  std::unique_ptr<KiIsolineExtractIj> extractorIj;
  std::vector<const KeXLineMeshUnstructured*> lines;
  if (unstructured) {
    const auto* set = m_file.getSet<KiDataSetI<double>>(scalar, DataBinding::PER_NODE);
    if (scalar == "(z coordinate)") {
      for (std::size_t n = 0; n < unstructured->getTopology().getEndNodeId(); ++n)
        heights.push_back(unstructured->getGeometry().getCoord(n)[2]);
      heightSet = std::make_unique<KbScalarSetI>("z", DataBinding::PER_NODE, heights);
      set = heightSet.get();
    }
    ASSERT_NE(set, nullptr) << scalar;
    extractor.reset(KiIsolineExtractUnstructured::getNewInstance(*unstructured, true));
    lines = extractor->extract(isovalues, *set, nullptr);
  } else {
    const auto* set = m_file.getSet<KiDataSetIj<double>>(scalar, DataBinding::PER_NODE);
    ASSERT_NE(set, nullptr) << scalar;
    extractorIj.reset(KiIsolineExtractIj::getNewInstance(*curvilinear, true));
    lines = extractorIj->extract(isovalues, *set, nullptr);
  }
  ASSERT_EQ(lines.size(), isovalues.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const double reference = m_numbers.at("isolines").at(i).at("length").get<double>();
    EXPECT_NEAR(length(*lines[i]), reference, toleranceOf(reference)) << scalar << " = " << isovalues[i];
  }
}

TEST_P(SurfacePeer, PlanesCutTheLength) {
  const auto* unstructured = dynamic_cast<const KiSurfaceMeshUnstructured*>(m_file.getMesh());
  const auto* curvilinear = dynamic_cast<const KiSurfaceMeshCurvilinear*>(m_file.getMesh());
  ASSERT_TRUE(unstructured || curvilinear) << m_file.getMeshTypeName();
  const std::unique_ptr<KiClipLineExtractUnstructured> extractor(
      unstructured ? KiClipLineExtractUnstructured::getNewInstance(*unstructured, true, nullptr) : nullptr);
  const std::unique_ptr<KiClipLineExtractIj> extractorIj(
      curvilinear ? KiClipLineExtractIj::getNewInstance(*curvilinear, true, nullptr) : nullptr);
  for (const nlohmann::json& cut : m_numbers.at("plane_cuts")) {
    const Vec3 normal = vectorOf(cut.at("normal"));
    const double distance = normal.dot(vectorOf(cut.at("origin")));
    const double reference = cut.at("length").get<double>();
    const double ours = length(unstructured ? extractor->extract(normal, distance, nullptr)
                                            : extractorIj->extract(normal, distance, nullptr));
    EXPECT_NEAR(ours, reference, toleranceOf(reference)) << cut.at("plane");
  }
}

TEST_P(LinePeer, LengthAndCrossingsAreThoseOfTheFile) {
  const auto* mesh = dynamic_cast<const KiLineMeshUnstructured*>(m_file.getMesh());
  ASSERT_NE(mesh, nullptr) << m_file.getMeshTypeName();
  const std::unique_ptr<KiTessellatedLineExtract> whole(KiTessellatedLineExtract::getNewInstance(*mesh, true));
  const KeXLineMeshUnstructured& line = whole->extract(nullptr, nullptr);
  EXPECT_EQ(line.getTopology().getNumCells(), m_numbers.at("segments").get<std::size_t>());
  const double reference = m_numbers.at("length").get<double>();
  EXPECT_NEAR(length(line), reference, 1e-5 * reference);
  const std::unique_ptr<KiClipPointExtract> clip(KiClipPointExtract::getNewInstance(*mesh, true, nullptr));
  for (const nlohmann::json& crossing : m_numbers.at("plane_crossings")) {
    if (crossing.at("ends_on_the_plane").get<std::size_t>() > 0) continue; // what counts there is a matter of taste
    const Vec3 normal = vectorOf(crossing.at("normal"));
    const KeXPointMeshCurvilinear& points = clip->extract(normal, normal.dot(vectorOf(crossing.at("origin"))), nullptr);
    EXPECT_EQ(points.getTopology().getNumCells(), crossing.at("crossings").get<std::size_t>()) << crossing.at("plane");
  }
}

const auto nameOf = [](const auto& tested) {
  std::string name = tested.param;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
};

INSTANTIATE_TEST_SUITE_P(Files, SurfacePeer,
                         testing::Values("surf_blow.vtk", "surf_dfn.inp", "surf_estuary.vtk", "surf_fran.vtk",
                                         "surf_plate.vtk", "surf_shark.ply", "surf_spot_quad.obj", "surf_spot_tri.obj",
                                         "surf_sthelens.vtk", "surf_ucd2d.inp", "surf_usa.vtk"),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Files, LinePeer,
                         testing::Values("line_earth.vtp", "line_faults.vtk", "line_political.vtp", "line_track.vtk"),
                         nameOf);

} // namespace
