// SPDX-License-Identifier: BSD-3-Clause
// Outlines of real surfaces against the open, branching and sharp edges that VTK counted.
#include <KerrinExtractor/KeXLineMeshUnstructured.h>
#include <KerrinExtractor/KiOutlineExtractUnstructured.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbSurfaceMeshUnstructured.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <tuple>

namespace {

using Vec3 = KbVec3<double>;

std::string dataDirectory() {
  const char* fromEnvironment = std::getenv("KERRIN_DATA_DIR");
  return fromEnvironment ? fromEnvironment : KERRIN_DATA_DIR;
}

/// A surface whose nodes at one place are one node, as the reference counts.
struct Merged {
  explicit Merged(const KiSurfaceMeshUnstructured& mesh) {
    std::map<std::tuple<double, double, double>, std::int64_t> ids;
    for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
      const KiSurfaceCell& cell = *mesh.getTopology().getCell(c);
      shapes.push_back(static_cast<std::uint8_t>(cell.getShape()));
      for (std::size_t n = 0; n < cell.getNumNodes(); ++n) {
        const Vec3 p = mesh.getGeometry().getCoord(cell.getNodeIndex(n));
        const auto [entry, isNew] = ids.try_emplace({p[0], p[1], p[2]}, static_cast<std::int64_t>(ids.size()));
        if (isNew) coordinates.insert(coordinates.end(), {p[0], p[1], p[2]});
        connectivity.push_back(entry->second);
      }
      offsets.push_back(static_cast<std::int64_t>(connectivity.size()));
    }
    surface = std::make_unique<KbSurfaceMeshUnstructured>(coordinates, KbCells(shapes, connectivity, offsets));
  }
  std::vector<double> coordinates;
  std::vector<std::uint8_t> shapes;
  std::vector<std::int64_t> connectivity;
  std::vector<std::int64_t> offsets{0};
  std::unique_ptr<KbSurfaceMeshUnstructured> surface;
};

struct Row {
  const char* file;
  double freedom = 0.0;     ///< of the edges, where faces are not flat: what is sharp depends on their normals
  std::size_t numFolds = 0; ///< pairs of faces on the same side of an edge, which the reference takes for flat
};
class OutlinePeer : public testing::TestWithParam<Row> {};

TEST_P(OutlinePeer, HasTheEdgesOfTheReference) {
  std::ifstream stream(dataDirectory() + "/reference.json");
  if (!stream) GTEST_SKIP() << "no reference.json in " << dataDirectory();
  const nlohmann::json numbers = nlohmann::json::parse(stream)["datasets"][GetParam().file]["edges"];
  const KbMeshFile file = KbReadMesh(dataDirectory() + "/" + GetParam().file);
  ASSERT_TRUE(file) << file.getError();
  const auto* mesh = dynamic_cast<const KiSurfaceMeshUnstructured*>(file.getMesh());
  ASSERT_TRUE(mesh) << file.getMeshTypeName();
  const Merged merged(*mesh);
  const std::unique_ptr<KiOutlineExtractUnstructured> outline(
      KiOutlineExtractUnstructured::getNewInstance(*merged.surface, true, nullptr));
  const KeXLineMeshUnstructured& lines = outline->extract(nullptr);
  double length = 0.0;
  for (std::size_t c = 0; c < lines.getTopology().getNumCells(); ++c) {
    const KiLineCell& cell = *lines.getTopology().getCell(c);
    length += (lines.getGeometry().getCoord(cell.getNodeIndex(1)) - lines.getGeometry().getCoord(cell.getNodeIndex(0)))
                  .length();
  }
  std::size_t expected = 0;
  double expectedLength = 0.0;
  for (const char* kind : {"open", "non_manifold", "sharper_than_30_degrees"}) {
    expected += numbers[kind]["edges"].get<std::size_t>();
    expectedLength += numbers[kind]["length"].get<double>();
  }
  const auto numEdges = static_cast<double>(expected + GetParam().numFolds);
  EXPECT_NEAR(static_cast<double>(lines.getTopology().getNumCells()), numEdges, GetParam().freedom * numEdges);
  EXPECT_NEAR(length, expectedLength, std::max(GetParam().freedom, 1e-3) * expectedLength);
}

std::string nameOf(const testing::TestParamInfo<Row>& info) {
  const std::string name = info.param.file;
  return name.substr(0, name.find('.'));
}
// Without surf_usa.vtk, a flat map: the reference calls edges sharp between polygons of which one is turned over.
INSTANTIATE_TEST_SUITE_P(Surfaces, OutlinePeer,
                         testing::Values(Row{"surf_blow.vtk"}, Row{"surf_dfn.inp"}, Row{"surf_estuary.vtk"},
                                         Row{"surf_fran.vtk"}, Row{"surf_plate.vtk"}, Row{"surf_shark.ply", 0.02},
                                         Row{"surf_spot_quad.obj"}, Row{"surf_spot_tri.obj"},
                                         Row{"surf_ucd2d.inp", 0.0, 2}),
                         nameOf);

} // namespace
