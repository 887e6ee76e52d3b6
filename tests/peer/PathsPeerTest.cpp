// SPDX-License-Identifier: BSD-3-Clause
// Point probes and streamlines in real meshes against numbers that VTK computed.
#include <KerrinExtractor/KiPointProbeIjk.h>
#include <KerrinExtractor/KiPointProbeUnstructured.h>
#include <KerrinExtractor/KiStreamlineExtractIjk.h>
#include <KerrinExtractor/KiStreamlineExtractUnstructured.h>
#include <KerrinMesh/KbMeshFile.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using Vec3 = KbVec3<double>;

std::string dataFolder() {
  const char* folder = std::getenv("KERRIN_DATA_DIR");
  return folder ? folder : KERRIN_DATA_DIR;
}

Vec3 toVec3(const Json& json) { return {json[0].get<double>(), json[1].get<double>(), json[2].get<double>()}; }
double magnitude(double value) { return std::abs(value); }
double magnitude(const Vec3& value) { return value.length(); }

class PathsPeer : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    if (!std::filesystem::exists(dataFolder() + "/reference.json"))
      GTEST_SKIP() << "no reference data in " << dataFolder() << " (KERRIN_DATA_DIR)";
    Json all;
    std::ifstream(dataFolder() + "/reference.json") >> all;
    reference = all["datasets"][GetParam()];
    file = KbReadMesh(dataFolder() + "/" + GetParam());
    ASSERT_TRUE(file) << file.getError();
  }

  Json reference;
  KbMeshFile file;
};

// 1e-4 of the range of a set, vectors by their length.
template <class Set>
double toleranceOf(const Set& set) {
  return 1e-4 * std::max(magnitude(set.getMax()) + magnitude(set.getMin()), 1e-12);
}

template <class Probe, template <class> class Set>
void expectValues(const KbMeshFile& file, const Probe& probe, const Json& values, DataBinding binding) {
  for (const auto& [name, value] : values.items()) {
    const bool isVector = value.is_array();
    if (isVector && value.size() != 3) continue;
    if (isVector) {
      const auto* set = file.getSet<Set<Vec3>>(name, binding);
      ASSERT_TRUE(set) << name;
      EXPECT_LE((probe.getValue(*set) - toVec3(value)).length(), toleranceOf(*set)) << name;
    } else {
      const auto* set = file.getSet<Set<double>>(name, binding);
      ASSERT_TRUE(set) << name;
      EXPECT_NEAR(probe.getValue(*set), value.template get<double>(), toleranceOf(*set)) << name;
    }
  }
}

template <class Probe, template <class> class Set, class Mesh>
void expectProbes(const KbMeshFile& file, const Mesh& mesh, const Json& reference) {
  // Where only some cells were kept, the reference counts those.
  const bool hasOurNumbers = !reference.contains("reference_is_for");
  const std::unique_ptr<Probe> probe(Probe::getNewInstance(mesh, true));
  for (const Json& entry : reference["probes"]) {
    const Vec3 position = toVec3(entry["position"]);
    probe->move(position, nullptr);
    ASSERT_TRUE(probe->isCellFound()) << position;
    std::size_t cell = 0;
    probe->findCells(&position, 1, nullptr, &cell);
    if (hasOurNumbers) {
      EXPECT_EQ(cell, entry["cell"].get<std::size_t>()) << position;
    }
    expectValues<Probe, Set>(file, *probe, entry["point_data"], DataBinding::PER_NODE);
    expectValues<Probe, Set>(file, *probe, entry["cell_data"], DataBinding::PER_CELL);
  }
}

class Probes : public PathsPeer {};

TEST_P(Probes, FindCellsAndValues) {
  ASSERT_FALSE(reference["probes"].empty());
  const KiMesh* mesh = file.getMesh();
  if (const auto* unstructured = dynamic_cast<const KiVolumeMeshUnstructured*>(mesh))
    expectProbes<KiPointProbeUnstructured, KiDataSetI>(file, *unstructured, reference);
  else if (const auto* regular = dynamic_cast<const KiVolumeMeshRegular*>(mesh))
    expectProbes<KiPointProbeIjk, KiDataSetIjk>(file, *regular, reference);
  else if (const auto* rectilinear = dynamic_cast<const KiVolumeMeshRectilinear*>(mesh))
    expectProbes<KiPointProbeIjk, KiDataSetIjk>(file, *rectilinear, reference);
  else if (const auto* curvilinear = dynamic_cast<const KiVolumeMeshCurvilinear*>(mesh))
    expectProbes<KiPointProbeIjk, KiDataSetIjk>(file, *curvilinear, reference);
  else
    FAIL() << file.getMeshTypeName();
}

INSTANTIATE_TEST_SUITE_P(RealMeshes, Probes,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"));

// The point at a part of a line's length.
Vec3 pointAt(const KeXLineMeshCurvilinear& line, double length) {
  const KeXGeometryExplicit& g = line.getGeometry();
  for (std::size_t i = 0; i + 1 < g.getNumNodes(); ++i) {
    const Vec3 step = g.getCoord(i + 1) - g.getCoord(i);
    if (step.length() >= length) return g.getCoord(i) + step * (length / step.length());
    length -= step.length();
  }
  return g.getCoord(g.getNumNodes() - 1);
}

template <class Extractor, template <class> class Set, class Mesh>
void expectLines(const KbMeshFile& file, const Mesh& mesh, const Json& streamlines) {
  const std::unique_ptr<Extractor> extractor(Extractor::getNewInstance(mesh, true));
  extractor->setMaxLength(streamlines["maximum_length"].get<double>());
  for (const Json& entry : streamlines["lines"]) {
    const auto* vectors = file.getSet<Set<Vec3>>(entry["vector"].get<std::string>(), DataBinding::PER_NODE);
    ASSERT_TRUE(vectors);
    const KeXLineMeshCurvilinear& line = *extractor->extract(*vectors, {toVec3(entry["seed"])}, nullptr)[0];
    const auto length = entry["length"].get<double>();
    const std::size_t numNodes = line.getGeometry().getNumNodes();
    ASSERT_GT(numNodes, 1u);
    double ours = 0.0;
    for (std::size_t i = 0; i + 1 < numNodes; ++i)
      ours += (line.getGeometry().getCoord(i + 1) - line.getGeometry().getCoord(i)).length();
    // Ours ends on the border, the reference at its last point before it: up to one of its steps shorter.
    const bool hasLeft = entry["ended"] == "left the data";
    const double longer = 0.01 * length + (hasLeft ? 0.005 * streamlines["maximum_length"].get<double>() : 0.0);
    EXPECT_GE(ours, 0.99 * length) << entry["seed"];
    EXPECT_LE(ours, length + longer) << entry["seed"];
    for (const auto& [fraction, position] : entry["position_at_length_fraction"].items())
      EXPECT_LE((pointAt(line, std::stod(fraction) * length) - toVec3(position)).length(), 0.01 * length)
          << entry["seed"] << " at " << fraction;
    EXPECT_LE((line.getGeometry().getCoord(numNodes - 1) - toVec3(entry["end"])).length(), longer) << entry["seed"];
  }
}

class Streamlines : public PathsPeer {};

TEST_P(Streamlines, FollowTheReferenceWithinOnePerCent) {
  const Json& lines = reference["streamlines"];
  ASSERT_FALSE(lines["lines"].empty());
  const KiMesh* mesh = file.getMesh();
  if (const auto* unstructured = dynamic_cast<const KiVolumeMeshUnstructured*>(mesh))
    expectLines<KiStreamlineExtractUnstructured, KiDataSetI>(file, *unstructured, lines);
  else if (const auto* regular = dynamic_cast<const KiVolumeMeshRegular*>(mesh))
    expectLines<KiStreamlineExtractIjk, KiDataSetIjk>(file, *regular, lines);
  else if (const auto* rectilinear = dynamic_cast<const KiVolumeMeshRectilinear*>(mesh))
    expectLines<KiStreamlineExtractIjk, KiDataSetIjk>(file, *rectilinear, lines);
  else if (const auto* curvilinear = dynamic_cast<const KiVolumeMeshCurvilinear*>(mesh))
    expectLines<KiStreamlineExtractIjk, KiDataSetIjk>(file, *curvilinear, lines);
  else
    FAIL() << file.getMeshTypeName();
}

INSTANTIATE_TEST_SUITE_P(RealMeshes, Streamlines,
                         testing::Values("image_carotid.vtk", "rect_rectgrid2.vtk", "curv_combustor.vtk",
                                         "curv_office.vtk", "tet_cylinder.vtk", "hex_airfoil.vtk",
                                         "mixed_combustor_clip.vtk"));

} // namespace
