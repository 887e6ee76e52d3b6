// SPDX-License-Identifier: BSD-3-Clause
// Real meshes against numbers that were computed from them by other means.
#include "MeshTestTools.h"

#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>
#include <KerrinMesh/KbVolumeMeshUnstructured.h>
#include <KerrinMesh/KbVolumeMeshVertexHexahedronIjk.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <limits>

namespace {

using namespace meshtest;
using nlohmann::json;

std::filesystem::path dataFolder() {
  const char* variable = std::getenv("KERRIN_DATA_DIR");
  return variable ? variable : KERRIN_DATA_DIR;
}

/// The reference numbers; null when the folder is not there.
const json& reference() {
  static const json numbers = [] {
    std::ifstream stream(dataFolder() / "reference.json");
    return stream ? json::parse(stream) : json();
  }();
  return numbers;
}

/// A name for a test of a file.
std::string fileName(const testing::TestParamInfo<std::string>& test) {
  std::string name = test.param;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

class KbRealMeshes : public testing::TestWithParam<std::string> {
protected:
  void SetUp() override {
    if (reference().is_null()) GTEST_SKIP() << "no reference.json in " << dataFolder();
  }
  const json& numbers() const { return reference().at("datasets").at(GetParam()); }
  std::string path() const { return (dataFolder() / GetParam()).string(); }
};

/// Least and greatest value of one component over the values per node or cell.
void expectRange(const KbMeshFile::Set& set, const json& expected, std::size_t numNodes, std::size_t numCells) {
  SCOPED_TRACE(set.name);
  const auto* raw = dynamic_cast<const KiRawArrays*>(set.set);
  ASSERT_NE(raw, nullptr);
  const KiRawArray values = raw->getRawArray(KiRawArrays::VALUES);
  const std::size_t components = set.numComponents;
  ASSERT_EQ(values.size, components * (set.binding == DataBinding::PER_NODE ? numNodes : numCells));
  for (std::size_t c = 0; c < components; ++c) {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (std::size_t i = c; i < values.size; i += components) {
      low = std::min(low, rawValue(values, i));
      high = std::max(high, rawValue(values, i));
    }
    const json& range = components == 1 ? expected.at("range") : expected.at("range").at(c);
    const double tolerance = 1e-6 * (std::abs(low) + std::abs(high));
    EXPECT_NEAR(low, range.at(0).get<double>(), tolerance);
    EXPECT_NEAR(high, range.at(1).get<double>(), tolerance);
  }
}

void expectArrays(const KbMeshFile& file, const json& arrays, DataBinding binding) {
  for (const json& array : arrays) {
    const std::string name = array.at("name");
    const auto components = array.at("components").get<std::size_t>();
    const KbMeshFile::Set* set = file.findSet(name, binding);
    if (components != 1 && components != 3) {
      EXPECT_EQ(set, nullptr) << name;
      continue;
    }
    ASSERT_NE(set, nullptr) << name;
    if (set->numComponents != 0) expectRange(*set, array, file.getNumNodes(), file.getNumCells());
  }
}

TEST_P(KbRealMeshes, FactsAgree) {
  const json& facts = numbers().at("facts");
  const KbMeshFile file = KbReadMesh(path());
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getNumNodes(), facts.at("points").get<std::size_t>());
  const bool polylines = facts.at("cell_types").contains("PolyLine");
  const json& numCells = polylines ? numbers().at("segments") : facts.at("cells");
  EXPECT_EQ(file.getNumCells(), numCells.get<std::size_t>());
  const json& bounds = facts.at("bounds");
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double size = bounds.at(2 * axis + 1).get<double>() - bounds.at(2 * axis).get<double>();
    const double tolerance = 1e-6 * (size + std::abs(bounds.at(2 * axis + 1).get<double>()));
    EXPECT_NEAR(file.getMin()[axis], bounds.at(2 * axis).get<double>(), tolerance);
    EXPECT_NEAR(file.getMax()[axis], bounds.at(2 * axis + 1).get<double>(), tolerance);
  }
  expectArrays(file, facts.at("point_arrays"), DataBinding::PER_NODE);
  if (!polylines) expectArrays(file, facts.at("cell_arrays"), DataBinding::PER_CELL);
}

INSTANTIATE_TEST_SUITE_P(, KbRealMeshes,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk", "surf_blow.vtk", "surf_dfn.inp",
                                         "surf_estuary.vtk", "surf_fran.vtk", "surf_plate.vtk", "surf_shark.ply",
                                         "surf_spot_quad.obj", "surf_spot_tri.obj", "surf_sthelens.vtk",
                                         "surf_ucd2d.inp", "surf_usa.vtk", "line_earth.vtp", "line_faults.vtk",
                                         "line_political.vtp", "line_track.vtk"),
                         fileName);

/// Unstructured meshes of linear cells: their volume, and that cells which VTK finds upright are upright here.
class KbRealUnstructuredVolumes : public KbRealMeshes {};

TEST_P(KbRealUnstructuredVolumes, VolumeAgrees) {
  const KbMeshFile file = KbReadMesh(path());
  ASSERT_TRUE(file) << file.getError();
  const auto& mesh = dynamic_cast<const KbVolumeMeshUnstructured&>(*file.getMesh());
  const auto& topology = mesh.getTopology();
  double volume = 0.0;
  std::size_t numInverted = 0;
  for (std::size_t c = 0; c < topology.getNumCells(); ++c) {
    const double own = cellVolume(*topology.getCell(c), mesh.getGeometry());
    volume += std::abs(own);
    if (own < 0.0) ++numInverted;
  }
  const double expected = std::abs(numbers().at("volume").get<double>());
  EXPECT_NEAR(volume, expected, (GetParam() == "hex_can.vtu" ? 2e-3 : 1e-4) * expected);
  EXPECT_EQ(numInverted, numbers().at("cells_with_negative_volume").get<std::size_t>());
}

INSTANTIATE_TEST_SUITE_P(, KbRealUnstructuredVolumes,
                         testing::Values("tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk", "hex_can.vtu",
                                         "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk"),
                         fileName);

/// Corner-point grids: volumes of all and of the active cells, and how many neighbours do not meet.
class KbRealCornerPointGrids : public KbRealMeshes {};

TEST_P(KbRealCornerPointGrids, VolumesCountsAndFaultsAgree) {
  const KbMeshFile file = KbReadMesh(path());
  ASSERT_TRUE(file) << file.getError();
  EXPECT_EQ(file.getMapAxes().size(), 6u);
  const auto& mesh = dynamic_cast<const KbVolumeMeshVertexHexahedronIjk&>(*file.getMesh());
  const auto& topology = mesh.getTopology();
  const json& counts = numbers().at("cells_i_j_k");
  ASSERT_EQ(topology.getNumCellsI(), counts.at(0).get<std::size_t>());
  ASSERT_EQ(topology.getNumCellsJ(), counts.at(1).get<std::size_t>());
  ASSERT_EQ(topology.getNumCellsK(), counts.at(2).get<std::size_t>());
  EXPECT_EQ(file.getNumCells() - file.getNumDeadCells(), numbers().at("active_cells").get<std::size_t>());

  const auto corners = [&mesh](std::size_t i, std::size_t j, std::size_t k) {
    std::array<Point, 8> points;
    mesh.getGeometry().getCellCorners(i, j, k, points.data());
    return points;
  };
  const auto meet = [](const std::array<Point, 8>& a, const std::array<Point, 8>& b,
                       const std::array<std::array<std::size_t, 2>, 4>& pairs) {
    return std::all_of(pairs.begin(), pairs.end(), [&](const auto& pair) { return a[pair[0]] == b[pair[1]]; });
  };
  double all = 0.0;
  double active = 0.0;
  double porous = 0.0;
  std::size_t tornI = 0;
  std::size_t tornJ = 0;
  const auto* poro = file.getSet<KiDataSetIjk<double>>("PORO");
  ASSERT_NE(poro, nullptr);
  for (std::size_t k = 0; k < topology.getNumCellsK(); ++k) {
    for (std::size_t j = 0; j < topology.getNumCellsJ(); ++j) {
      for (std::size_t i = 0; i < topology.getNumCellsI(); ++i) {
        const auto own = corners(i, j, k);
        const double volume = std::abs(hexahedronVolume(own));
        all += volume;
        if (topology.isDead(i, j, k)) continue;
        active += volume;
        porous += volume * poro->get(i, j, k);
        if (i + 1 < topology.getNumCellsI() && !topology.isDead(i + 1, j, k) &&
            !meet(own, corners(i + 1, j, k), {{{1, 0}, {2, 3}, {5, 4}, {6, 7}}}))
          ++tornI;
        if (j + 1 < topology.getNumCellsJ() && !topology.isDead(i, j + 1, k) &&
            !meet(own, corners(i, j + 1, k), {{{3, 0}, {2, 1}, {7, 4}, {6, 5}}}))
          ++tornJ;
      }
    }
  }
  const auto expectNear = [this](const char* name, double value) {
    const double expected = numbers().at(name).get<double>();
    EXPECT_NEAR(value, expected, 1e-5 * expected) << name;
  };
  expectNear("volume_all_cells", all);
  expectNear("volume_active_cells", active);
  expectNear("pore_volume_active", porous);
  const json& torn = numbers().at("neighbour_pairs_both_active_that_do_not_match");
  EXPECT_EQ(tornI, torn.at("i").get<std::size_t>());
  EXPECT_EQ(tornJ, torn.at("j").get<std::size_t>());
}

INSTANTIATE_TEST_SUITE_P(, KbRealCornerPointGrids,
                         testing::Values("cpgrid_dome.grdecl", "cpgrid_emerald_hole.grdecl", "cpgrid_pillar.grdecl"),
                         [](const auto& test) { return test.param.substr(7, test.param.find('.') - 7); });

} // namespace
