// SPDX-License-Identifier: BSD-3-Clause
// Skins of real meshes against the faces that VTK counted.
#include "extractor/PickTestTools.h"

#include <KerrinExtractor/KiSkinExtractIjk.h>
#include <KerrinExtractor/KiSkinExtractUnstructured.h>
#include <KerrinExtractor/KxTimeStamp.h>
#include <KerrinMesh/KbMeshFile.h>

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fstream>
#include <memory>

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

/// Accepts the cells whose nodes all hold 1.
class ValidNodes final : public KiCellFilterIjk {
public:
  explicit ValidNodes(const KiDataSetIjk<double>& valid)
      : m_valid(valid) {}
  std::size_t getTimeStamp() const override { return m_stamp; }
  bool acceptCell(std::size_t i, std::size_t j, std::size_t k) const override {
    for (std::size_t n = 0; n < 8; ++n)
      if (m_valid.get(i + (n & 1), j + (n >> 1 & 1), k + (n >> 2)) != 1.0) return false;
    return true;
  }

private:
  const KiDataSetIjk<double>& m_valid;
  std::size_t m_stamp = KxTimeStamp::getTimeStamp();
};

class SkinOfFile : public testing::TestWithParam<const char*> {
protected:
  void SetUp() override {
    if (references().is_null()) GTEST_SKIP() << "no reference.json in " << dataDirectory();
    file = KbReadMesh(dataDirectory() + "/" + GetParam());
    ASSERT_TRUE(static_cast<bool>(file)) << file.getError();
  }
  const nlohmann::json& reference() const { return references()["datasets"][GetParam()]; }

  const KeXSurfaceMeshUnstructured& extract(const KiCellFilterIjk* filter = nullptr) {
    const KiMesh* mesh = file.getMesh();
    const auto take = [&](const auto* structured) {
      if (structured) m_ijk.reset(KiSkinExtractIjk::getNewInstance(*structured, true, nullptr));
    };
    take(dynamic_cast<const KiVolumeMeshVertexHexahedronIjk*>(mesh));
    take(dynamic_cast<const KiVolumeMeshRegular*>(mesh));
    take(dynamic_cast<const KiVolumeMeshRectilinear*>(mesh));
    take(dynamic_cast<const KiVolumeMeshCurvilinear*>(mesh));
    if (m_ijk) return m_ijk->extract(filter);
    m_flat.reset(
        KiSkinExtractUnstructured::getNewInstance(dynamic_cast<const KiVolumeMeshUnstructured&>(*mesh), true, nullptr));
    return m_flat->extract(nullptr);
  }

  KbMeshFile file;

private:
  std::unique_ptr<KiSkinExtractIjk> m_ijk;
  std::unique_ptr<KiSkinExtractUnstructured> m_flat;
};

/// Both ways to cut a quadrangle into triangles are compared at once, since it is open which corner comes first.
void expectArea(const pick::Surface& s, const nlohmann::json& skin) {
  double sum = 0.0;
  for (const std::vector<std::size_t>& ids : s.polygons)
    for (const std::size_t first : {0u, 1u})
      for (std::size_t c = 1; c + 1 < ids.size(); ++c) {
        const auto at = [&](std::size_t i) { return s.vertices[ids[(first + i) % ids.size()]]; };
        sum += 0.5 * (at(c) - at(0)).cross(at(c + 1) - at(0)).length();
      }
  const double expected = skin["area_diagonal_02"].get<double>() + skin["area_diagonal_13"].get<double>();
  EXPECT_NEAR(sum, expected, 1e-4 * expected);
}

TEST_P(SkinOfFile, HasTheFacesOfTheReference) {
  const auto* valid = file.getSet<KiDataSetIjk<double>>("valid");
  const std::unique_ptr<ValidNodes> filter(valid ? new ValidNodes(*valid) : nullptr);
  const pick::Surface s(extract(filter.get()));
  const nlohmann::json& skin = reference()["skin"];
  std::size_t numTriangles = 0;
  for (const auto& p : s.polygons)
    numTriangles += p.size() == 3;
  EXPECT_EQ(s.polygons.size(), skin["polygons"].get<std::size_t>());
  EXPECT_EQ(numTriangles, skin["plain_triangles"].get<std::size_t>());
  expectArea(s, skin);
}

INSTANTIATE_TEST_SUITE_P(Volumes, SkinOfFile,
                         testing::Values("image_carotid.vtk", "image_ironprot.vtk", "image_vase.vti", "rect_ocean.vtk",
                                         "rect_rectgrid2.vtk", "curv_combustor.vtk", "curv_office.vtk",
                                         "curv_samplegrid.vtk", "tet_cylinder.vtk", "tet_layers.inp", "hex_airfoil.vtk",
                                         "hex_can.vtu", "hex_mug.vtk", "wedge_stack.inp", "hexpyr_sector.vtk",
                                         "mixed_combustor_clip.vtk", "quad_notch.vtk"));

class SkinOfCorners : public SkinOfFile {};

TEST_P(SkinOfCorners, HasTheFacesOfTheReference) {
  const pick::Surface s(extract());
  const nlohmann::json& skin = reference()["skin_of_active_cells"];
  // The reference counts collapsed faces too, which the skin leaves out.
  EXPECT_EQ(s.polygons.size(), skin["faces"].get<std::size_t>() - skin["faces_without_area"].get<std::size_t>());
  expectArea(s, skin);
}

INSTANTIATE_TEST_SUITE_P(CornerPoints, SkinOfCorners,
                         testing::Values("cpgrid_dome.grdecl", "cpgrid_emerald_hole.grdecl", "cpgrid_pillar.grdecl"));

} // namespace
