// SPDX-License-Identifier: BSD-3-Clause
// Isosurfaces, plane slices and fences of real meshes against areas that VTK computed.
#include <KerrinExtractor/KiFenceSliceExtractIjk.h>
#include <KerrinExtractor/KiFenceSliceExtractUnstructured.h>
#include <KerrinExtractor/KiIsosurfExtractIjk.h>
#include <KerrinExtractor/KiIsosurfExtractUnstructured.h>
#include <KerrinExtractor/KiPlaneSliceExtractIjk.h>
#include <KerrinExtractor/KiPlaneSliceExtractUnstructured.h>
#include <KerrinMesh/KbDataSet.h>
#include <KerrinMesh/KbMeshFile.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>

namespace {

std::string dataDirectory() {
  const char* fromEnvironment = std::getenv("KERRIN_DATA_DIR");
  return fromEnvironment ? fromEnvironment : KERRIN_DATA_DIR;
}

const nlohmann::json& references() {
  static const nlohmann::json all = [] {
    std::ifstream file(dataDirectory() + "/reference.json");
    return file ? nlohmann::json::parse(file) : nlohmann::json();
  }();
  return all;
}

/// A polygon that is not flat has an area only as triangles: the least and the greatest over its fans.
struct Measures {
  double leastArea = 0.0;
  double greatestArea = 0.0;
  std::size_t numTriangles = 0;
};

Measures measure(const KeXSurfaceMeshUnstructured& mesh) {
  Measures m;
  for (std::size_t c = 0; c < mesh.getTopology().getNumCells(); ++c) {
    const KiSurfaceCell* cell = mesh.getTopology().getCell(c);
    const auto at = [&](std::size_t i) { return mesh.getGeometry().getCoord(cell->getNodeIndex(i)); };
    const std::size_t n = cell->getNumNodes();
    double least = std::numeric_limits<double>::infinity();
    double greatest = 0.0;
    for (std::size_t first = 0; first < n; ++first) {
      double area = 0.0;
      for (std::size_t i = first + 1; i + 1 < first + n; ++i)
        area += 0.5 * (at(i % n) - at(first)).cross(at((i + 1) % n) - at(first)).length();
      least = std::min(least, area);
      greatest = std::max(greatest, area);
    }
    m.leastArea += least;
    m.greatestArea += greatest;
    m.numTriangles += cell->getNumNodes() - 2;
  }
  return m;
}

void expectArea(const Measures& ours, double area, double tolerance) {
  EXPECT_LE(ours.leastArea, area + tolerance);
  EXPECT_GE(ours.greatestArea, area - tolerance);
}

/// Calls `visit(mesh)` with the mesh's own interface; false for kinds that this test does not know.
template <class Visit>
bool visitStructured(const KiMesh* mesh, const Visit& visit) {
  const auto visitAs = [&](const auto* typed) {
    if (!typed) return false;
    visit(*typed);
    return true;
  };
  return visitAs(dynamic_cast<const KiVolumeMeshRegular*>(mesh)) ||
         visitAs(dynamic_cast<const KiVolumeMeshRectilinear*>(mesh)) ||
         visitAs(dynamic_cast<const KiVolumeMeshCurvilinear*>(mesh));
}

/// The length of a vector set, as a scalar set.
std::vector<double> lengthsOf(const KiDataSetI<KbVec3<double>>& set) {
  std::vector<double> lengths(set.getSize());
  for (std::size_t i = 0; i < lengths.size(); ++i)
    lengths[i] = set.get(i).length();
  return lengths;
}

class SurfaceCutPeer : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    if (references().is_null()) GTEST_SKIP() << "no reference.json in " << dataDirectory();
    reference = references()["datasets"][GetParam()];
    ASSERT_FALSE(reference.is_null());
    file = KbReadMesh(dataDirectory() + "/" + GetParam());
    ASSERT_TRUE(file) << file.getError();
  }
  bool isOfTetrahedra() const {
    return reference["facts"]["cell_types"].size() == 1 && reference["facts"]["cell_types"].contains("Tetra");
  }

  nlohmann::json reference;
  KbMeshFile file;
};

TEST_P(SurfaceCutPeer, IsosurfacesHaveTheAreas) {
  for (const nlohmann::json& iso : reference["isosurfaces"]) {
    const std::string name = iso["scalar"];
    const double value = iso["value"];
    SCOPED_TRACE(name + " at " + std::to_string(value));
    Measures ours;
    if (const auto* mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh())) {
      const std::unique_ptr<KiIsosurfExtractUnstructured> extractor(
          KiIsosurfExtractUnstructured::getNewInstance(*mesh, true, nullptr));
      if (name.front() == '|') {
        const auto* vectors = file.getSet<KiDataSetI<KbVec3<double>>>(name.substr(1, name.size() - 2));
        ASSERT_NE(vectors, nullptr);
        const std::vector<double> lengths = lengthsOf(*vectors);
        ours = measure(extractor->extract(value, KbScalarSetI(name, DataBinding::PER_NODE, lengths), nullptr));
      } else if (name == "(radius)") { // distance of the nodes from the origin
        std::vector<double> radius(mesh->getTopology().getEndNodeId());
        for (std::size_t n = 0; n < radius.size(); ++n)
          radius[n] = mesh->getGeometry().getCoord(n).length();
        ours = measure(extractor->extract(value, KbScalarSetI(name, DataBinding::PER_NODE, radius), nullptr));
      } else {
        const auto* set = file.getSet<KiDataSetI<double>>(name, DataBinding::PER_NODE);
        ASSERT_NE(set, nullptr);
        ours = measure(extractor->extract(value, *set, nullptr));
      }
    } else {
      const auto* set = file.getSet<KiDataSetIjk<double>>(name, DataBinding::PER_NODE);
      ASSERT_NE(set, nullptr);
      ASSERT_TRUE(visitStructured(file.getMesh(), [&](const auto& grid) {
        const std::unique_ptr<KiIsosurfExtractIjk> extractor(KiIsosurfExtractIjk::getNewInstance(grid, true, nullptr));
        ours = measure(extractor->extract(value, *set, nullptr));
      }));
    }
    const double area = iso["area"];
    if (isOfTetrahedra()) {
      expectArea(ours, area, 1e-4 * area);
      EXPECT_EQ(ours.numTriangles, iso["triangles"].get<std::size_t>());
      continue;
    }
    // The gap is the part of the answer that depends on how a hexahedron is contoured.
    const double gap =
        iso.contains("area_tetrahedralised") ? std::abs(area - iso["area_tetrahedralised"].get<double>()) : 0.0;
    expectArea(ours, area, std::max(0.01 * area, 1.5 * gap));
  }
}

TEST_P(SurfaceCutPeer, PlaneSlicesHaveTheAreas) {
  const std::string kind = reference["facts"]["class"];
  const bool isExact = isOfTetrahedra() || kind == "vtkImageData" || kind == "vtkRectilinearGrid";
  const double tolerance = std::string(GetParam()) == "hex_can.vtu" ? 7e-2 : isExact ? 1e-5 : 2e-3;
  for (const nlohmann::json& slice : reference["slices"]) {
    SCOPED_TRACE(slice["plane"].get<std::string>());
    const KbVec3<double> normal(slice["normal"][0], slice["normal"][1], slice["normal"][2]);
    const KbVec3<double> origin(slice["origin"][0], slice["origin"][1], slice["origin"][2]);
    const double distance = normal.normalized().dot(origin);
    Measures ours;
    if (const auto* mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh())) {
      const std::unique_ptr<KiPlaneSliceExtractUnstructured> extractor(
          KiPlaneSliceExtractUnstructured::getNewInstance(*mesh, true, nullptr));
      ours = measure(extractor->extract(normal, distance, nullptr));
    } else {
      ASSERT_TRUE(visitStructured(file.getMesh(), [&](const auto& grid) {
        const std::unique_ptr<KiPlaneSliceExtractIjk> extractor(
            KiPlaneSliceExtractIjk::getNewInstance(grid, true, nullptr));
        ours = measure(extractor->extract(normal, distance, nullptr));
      }));
    }
    const double area = slice["area"];
    expectArea(ours, area, tolerance * area);
  }
}

TEST_P(SurfaceCutPeer, FencesInThePlanesHaveTheAreas) {
  // A straight fence with joints inside of the mesh covers the whole section of its plane.
  const std::string kind = reference["facts"]["class"];
  const bool isExact = isOfTetrahedra() || kind == "vtkImageData" || kind == "vtkRectilinearGrid";
  const double tolerance = std::string(GetParam()) == "hex_can.vtu" ? 7e-2 : isExact ? 1e-5 : 2e-3;
  for (const nlohmann::json& slice : reference["slices"]) {
    SCOPED_TRACE(slice["plane"].get<std::string>());
    const KbVec3<double> normal =
        KbVec3<double>(slice["normal"][0], slice["normal"][1], slice["normal"][2]).normalized();
    const KbVec3<double> origin(slice["origin"][0], slice["origin"][1], slice["origin"][2]);
    const auto cut = [&](const auto& mesh, auto* made) {
      const std::unique_ptr<std::remove_pointer_t<decltype(made)>> extractor(made);
      KbVec3<double> low = mesh.getGeometry().getMin();
      const double size = (mesh.getGeometry().getMax() - low).length();
      const KbVec3<double> across = std::abs(normal[0]) < 0.8 ? KbVec3<double>(1, 0, 0) : KbVec3<double>(0, 1, 0);
      const KbVec3<double> direction = normal.cross(across) + across.cross(normal).cross(normal) * 0.3;
      const KbVec3<double> along = normal.cross(direction).normalized() * size;
      // The inside of a fence is to its left, that of a plane against its normal.
      return measure(extractor->extract(
          direction, {origin + along, origin + along * 0.0123, origin - along * 0.117, origin - along}, nullptr));
    };
    Measures ours;
    if (const auto* mesh = dynamic_cast<const KiVolumeMeshUnstructured*>(file.getMesh()))
      ours = cut(*mesh, KiFenceSliceExtractUnstructured::getNewInstance(*mesh, true, nullptr));
    else
      ASSERT_TRUE(visitStructured(file.getMesh(), [&](const auto& grid) {
        ours = cut(grid, KiFenceSliceExtractIjk::getNewInstance(grid, true, nullptr));
      }));
    const double area = slice["area"];
    expectArea(ours, area, tolerance * area);
  }
}

// Without the ocean, whose numbers are for the cells with valid nodes only, and the corner-point grids, which have a
// test of their own.
INSTANTIATE_TEST_SUITE_P(Meshes, SurfaceCutPeer,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"),
                         [](const auto& parameter) {
                           const std::string name = parameter.param;
                           return name.substr(0, name.find('.'));
                         });

} // namespace
